#pragma once
// Helpers of the dynamic object tests: a fixture that turns assertions into exceptions, the raw trie as
// a map of nodes (read through DynamicObject::visitTrie), and the keys of a walk.

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectIterator.h>

#include "support/AssertionGuard.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace tov {
namespace utils {
namespace testing {

// The assertion fixture of every suite, with the message of the first assertion that a call fails, or ""
// when none fails.
class AssertionTest : public ::tov::testing::AssertionTest {
protected:
    template <typename Call>
    static std::string assertionOf(Call call)
    {
        try {
            call();
        } catch (const std::runtime_error& failure) {
            return failure.what();
        }
        return "";
    }
};

// One node as the trie dump shows it.
struct TrieNode {
    unsigned int handle = 0;
    bool isValue = false;
    int splitChar = 0;
    unsigned int equal = 0;
    unsigned int greater = 0;
    unsigned int less = 0;
    std::string value; // "null", the number, the text, "true"/"false", or "#<count>" for containers
};

// Rebuilds the nodes from the events of visitTrie.
class TrieRecorder : public AbstractObjectBuilder {
public:
    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;

    std::map<unsigned int, TrieNode> nodes;

    bool beginObject() override
    {
        frames.push_back(Frame());
        return true;
    }
    bool objectChild(const char* key, unsigned int length) override
    {
        Frame& frame = frames.back();
        frame.field.assign(key, length);
        if (length == 1) {
            // NOLINTNEXTLINE(bugprone-signed-char-misuse): the trie keeps its split bytes signed, as here.
            frame.node.splitChar = static_cast<signed char>(key[0]);
        }
        return true;
    }
    bool endObject() override
    {
        const TrieNode node = frames.back().node;
        frames.pop_back();
        nodes[node.handle] = node;
        if (!frames.empty()) {
            link(frames.back(), node.handle);
        }
        return true;
    }
    bool null() override
    {
        if (frames.back().field == "value") {
            setValue("null");
        }
        return true;
    }
    bool integer(long long value) override
    {
        Frame& frame = frames.back();
        if (frame.field == "handle") {
            frame.node.handle = static_cast<unsigned int>(value);
        } else if (frame.field == "children count") {
            setValue("#" + std::to_string(value));
        } else {
            setValue(std::to_string(value));
        }
        return true;
    }
    bool real(double value) override
    {
        setValue(std::to_string(value));
        return true;
    }
    bool boolean(bool value) override
    {
        setValue(value ? "true" : "false");
        return true;
    }
    bool string(const char* text, unsigned int length) override
    {
        setValue(std::string(text, length));
        return true;
    }

private:
    struct Frame {
        TrieNode node;
        std::string field;
    };

    void setValue(const std::string& value)
    {
        frames.back().node.isValue = true;
        frames.back().node.value = value;
    }
    static void link(Frame& parent, unsigned int handle)
    {
        if (parent.field == "greater") {
            parent.node.greater = handle;
        } else if (parent.field == "less") {
            parent.node.less = handle;
        } else {
            parent.node.equal = handle;
        }
    }

    std::vector<Frame> frames;
};

// The nodes reachable from `start`, by handle.
inline std::map<unsigned int, TrieNode> snapshotTrie(const DynamicObject& object, unsigned int start)
{
    TrieRecorder recorder;
    object.visitTrie(start, recorder);
    return recorder.nodes;
}

// The keys of a walk, in order.
inline std::vector<std::string> walkKeys(const DynamicObject& object, unsigned int property,
                                         unsigned int maxDepth = 0xFFFFFFFFu)
{
    std::vector<std::string> keys;
    for (DynamicObjectIterator it(object, property, maxDepth); !it.end(); it.next()) {
        keys.emplace_back(it.getKey(), it.getKeyLength());
    }
    return keys;
}

} // namespace testing
} // namespace utils
} // namespace tov
