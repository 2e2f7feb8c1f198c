#pragma once
// DynamicObjectNode: one 16-byte cell of a DynamicObject's trie. A cell is either a trie node (a path
// character with its three links; character 0 marks the split node that ends a property's path) or the
// value of a property. Both views keep `isValue` and `splitChar` at the same place, so either may be
// read to tell them apart.
//   const DynamicObjectNode& node = ...;
//   if (node.trie.isValue) { use(node.leaf.type, node.leaf.value.integer); } else { follow(node.trie.equal); }

#include <cstddef>

namespace tov {
namespace utils {
namespace details {

union DynamicObjectNode {
    struct Trie {
        unsigned int greater;  // siblings whose character is above splitChar
        unsigned int equal;    // the next level, or the value node below a split node
        unsigned int less;     // siblings whose character is below splitChar
        unsigned char isValue; // 0
        signed char splitChar;
        unsigned char unused[2];
    };

    struct Leaf {
        // Booleans are stored inverted (0 for true); arrays and objects keep their count of children.
        union {
            long long integer;
            double real;
            unsigned long long bits;
        } value;
        unsigned char type; // a type::Type
        unsigned char unused[3];
        unsigned char isValue; // 1
        signed char splitChar; // 0
        unsigned char unusedTail[2];
    };

    Trie trie;
    Leaf leaf;
};

static_assert(sizeof(DynamicObjectNode) == 16, "trie nodes are 16 bytes");
static_assert(offsetof(DynamicObjectNode::Trie, isValue) == offsetof(DynamicObjectNode::Leaf, isValue),
              "both views must agree on the role byte");
static_assert(offsetof(DynamicObjectNode::Trie, splitChar) == offsetof(DynamicObjectNode::Leaf, splitChar),
              "both views must agree on the character byte");

} // namespace details
} // namespace utils
} // namespace tov
