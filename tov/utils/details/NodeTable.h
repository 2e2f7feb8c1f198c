#pragma once
// NodeTable: nodes by handle, as DynamicObject::nodeAt finds them, from its block table read once. A loop
// that takes a step per node and writes bytes meanwhile, which the compiler must suppose may change the
// object, then need not read the table and the block size again at every step.
//   const details::NodeTable nodes = object.getNodeTable();   // in a friend of DynamicObject
//   for (const DynamicObjectNode* node = nodes.at(handle); node != nullptr; node = nodes.at(node->trie.equal)) ...

#include <tov/utils/details/DynamicObjectNode.h>

namespace tov {
namespace utils {
namespace details {

class NodeTable {
public:
    NodeTable(DynamicObjectNode* const* blocks, unsigned int blockCount, unsigned int blockSize)
        : blocks(blocks), blockCount(blockCount), blockSize(blockSize),
          shift((blockSize & (blockSize - 1)) == 0 ? __builtin_ctz(blockSize) : -1)
    {
    }

    // Null for 0 and for a handle beyond the blocks.
    DynamicObjectNode* at(unsigned int handle) const
    {
        const unsigned int index = handle - 1;
        const unsigned int block = shift >= 0 ? index >> shift : index / blockSize;
        const unsigned int slot = shift >= 0 ? index & (blockSize - 1) : index % blockSize;
        return handle != 0 && block < blockCount ? blocks[block] + slot : nullptr;
    }

    // at(`to`) for a step from the node at `from`: a node in the same block is found from the one in
    // hand, sparing the read of the table on the way from node to node.
    const DynamicObjectNode* step(const DynamicObjectNode* node, unsigned int from, unsigned int to) const
    {
        if (shift >= 0 && to != 0 && ((from - 1) ^ (to - 1)) >> shift == 0) {
            return node + (static_cast<int>(to) - static_cast<int>(from));
        }
        return at(to);
    }

    // Whether the node of `to` lies right after that of `from` in one block, as the nodes of a key's
    // characters, added one after the other, mostly do. A walk down a chain that takes the node after the
    // one in hand when this holds need not wait for the link's value to read it: the test is a branch that
    // the processor predicts, not an address that it computes from the link.
    bool follows(unsigned int from, unsigned int to) const
    {
        return __builtin_expect(to == from + 1, 1) && shift >= 0 && (from & (blockSize - 1)) != 0;
    }

    // step for a walk down a chain, guessing by `follows`.
    const DynamicObjectNode* stepDown(const DynamicObjectNode* node, unsigned int from, unsigned int to) const
    {
        return follows(from, to) ? node + 1 : step(node, from, to);
    }

private:
    DynamicObjectNode* const* blocks;
    unsigned int blockCount;
    unsigned int blockSize;
    // Of the block size, a power of two as the default 128 is; -1 for another size.
    int shift;
};

} // namespace details
} // namespace utils
} // namespace tov
