#include <tov/utils/MemoryInputOutput.h>

#include <gtest/gtest.h>

#include <string>

using tov::utils::MemoryInputOutput;

// A reader stops at a short or empty read; rewinding and clearing start the reads over.
TEST(MemoryInputOutput, ReadsInPiecesEndWithAnEmptyReadAndStartOver)
{
    MemoryInputOutput memory(std::string("ab\0c", 4).data(), 4);
    ASSERT_TRUE(memory.write("de", 2, nullptr));
    char piece[4];
    std::string read;
    for (;;) {
        unsigned int size = 3;
        ASSERT_TRUE(memory.read(piece, size, nullptr));
        if (size == 0) {
            break;
        }
        read.append(piece, size);
    }
    EXPECT_EQ(std::string("ab\0cde", 6), read);

    memory.rewind();
    unsigned int size = sizeof piece;
    ASSERT_TRUE(memory.read(piece, size, nullptr));
    EXPECT_EQ(4u, size);

    memory.clear();
    size = sizeof piece;
    ASSERT_TRUE(memory.read(piece, size, nullptr));
    EXPECT_EQ(0u, size);
    EXPECT_TRUE(memory.getText().empty());
}
