#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/FileInputOutput.h>
#include <tov/utils/FileUtils.h>

#include "support/AssertionGuard.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

using namespace tov::utils;

namespace {

class Files : public tov::testing::AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        char pattern[] = "/tmp/tov_files_XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(pattern));
        folder = pattern;
    }

    void TearDown() override
    {
        std::system(("rm -rf " + folder).c_str());
        AssertionTest::TearDown();
    }

    std::string path(const char* name) const { return folder + "/" + name; }

    std::string lastMessage() const { return log.getMessages().back().message.c_str(); }

    std::string folder;
    BufferLogger log{false, false, false};
};

} // namespace

TEST_F(Files, SaveLoadAndEraseAWholeFile)
{
    const std::string file = path("data.bin");
    const char content[] = {'a', '\0', 'b', '\n'};
    ASSERT_TRUE(saveToFile(file.c_str(), content, sizeof content, &log));
    EXPECT_TRUE(fileExists(file.c_str()));

    const unsigned long long liveBytes = tov::allocator::Allocator::instance().getLiveBytes();
    unsigned int size = 99;
    char* loaded = loadFile(file.c_str(), size, &log);
    ASSERT_NE(nullptr, loaded);
    EXPECT_EQ(sizeof content, size);
    EXPECT_EQ(0, std::memcmp(content, loaded, size));
    TOV_DELETE_ARRAY(loaded);
    EXPECT_EQ(liveBytes, tov::allocator::Allocator::instance().getLiveBytes());

    EXPECT_TRUE(eraseFile(file.c_str(), &log));
    EXPECT_FALSE(fileExists(file.c_str()));
    EXPECT_TRUE(log.getMessages().empty());
}

TEST_F(Files, WholeFileFailuresGiveNullOrFalseWithTheirMessage)
{
    const std::string missing = path("missing.txt");
    unsigned int size = 7;
    EXPECT_EQ(nullptr, loadFile(missing.c_str(), size, &log));
    EXPECT_EQ(7u, size);
    EXPECT_EQ("Could not open file '" + missing + "' (error code '4')", lastMessage());
    EXPECT_EQ(error::fileNotFound, log.getMessages().back().errorType);

    const std::string empty = path("empty.txt");
    ASSERT_TRUE(saveToFile(empty.c_str(), "", 0, &log));
    EXPECT_EQ(nullptr, loadFile(empty.c_str(), size, &log));
    EXPECT_EQ(0u, lastMessage().find("Could not be read file '" + empty + "' (error code '"));
    EXPECT_EQ(error::ioProblem, log.getMessages().back().errorType);

    EXPECT_FALSE(saveToFile(path("no/such/folder").c_str(), "x", 1, &log));
    EXPECT_EQ("Unable to open resource from '" + path("no/such/folder") + "' for writing", lastMessage());

    EXPECT_FALSE(eraseFile(missing.c_str(), &log)); // remove gives -1, reported as it is
    EXPECT_EQ("Unable to remove resource from '" + missing + "'. Errno: -1", lastMessage());
    EXPECT_EQ(error::ioProblem, log.getMessages().back().errorType);

    ScopedPtr<std::basic_istream<char>> stream;
    EXPECT_ASSERTION(static_cast<void>(openFileForReading(nullptr, stream, &log)),
                     "null pointer parameter is not allowed - unable to load file");
}

TEST_F(Files, ReadingStopsAtAShortReadAndReopensFromTheStart)
{
    const std::string file = path("text.txt");
    ASSERT_TRUE(saveToFile(file.c_str(), "hello", 5, &log));
    FileInputOutput io(file.c_str());
    ASSERT_TRUE(io.openForReading(&log));
    EXPECT_TRUE(io.isOpen());
    char buffer[8];
    unsigned int size = 3;
    ASSERT_TRUE(io.read(buffer, size, &log));
    EXPECT_EQ(3u, size);
    size = 8;
    ASSERT_TRUE(io.read(buffer, size, &log));
    EXPECT_EQ(2u, size);
    EXPECT_EQ(0, std::memcmp("lo", buffer, 2));
    for (int i = 0; i < 2; ++i) { // past the end: true with nothing, again and again
        size = 8;
        EXPECT_TRUE(io.read(buffer, size, &log));
        EXPECT_EQ(0u, size);
    }
    EXPECT_FALSE(io.isOpen()); // the stream left its good state, the file is still held

    ASSERT_TRUE(io.openForReading(&log));
    size = 8;
    ASSERT_TRUE(io.read(buffer, size, &log));
    EXPECT_EQ(5u, size);
    EXPECT_TRUE(io.close(&log));
    EXPECT_FALSE(io.close(&log));
    EXPECT_EQ("Can't close the io on " + file + ", it is not open.", lastMessage());
    EXPECT_EQ(error::invalidOperation, log.getMessages().back().errorType);
}

TEST_F(Files, StateRulesOfAFileStream)
{
    const std::string file = path("state.txt");
    FileInputOutput io(file.c_str());
    ASSERT_TRUE(io.openForWriting(&log));
    EXPECT_FALSE(io.openForWriting(&log));
    EXPECT_EQ("Can't open the io on " + file + " for writing, it is already open for writing.", lastMessage());
    EXPECT_FALSE(io.openForReading(&log));
    EXPECT_EQ("Can't open the io on " + file + " for reading, it is already open for writing.", lastMessage());
    char buffer[4];
    unsigned int size = 4;
    EXPECT_TRUE(io.write("data", 4, &log));
    ASSERT_TRUE(io.close(&log));

    ASSERT_TRUE(io.openForReading(&log));
    EXPECT_FALSE(io.write("x", 1, &log));
    EXPECT_EQ("Can't write to the io on " + file + ", it is not currently writable.", lastMessage());
    EXPECT_FALSE(io.openForWriting(&log));
    EXPECT_EQ("Can't open the io on " + file + " for writing, it is already open for reading.", lastMessage());
    ASSERT_TRUE(io.read(buffer, size, &log));
    EXPECT_EQ(0, std::memcmp("data", buffer, 4));
    EXPECT_TRUE(io.close(&log));

    FileInputOutput missing(path("missing").c_str());
    EXPECT_FALSE(missing.openForReading(&log));
    EXPECT_EQ("Can't open the io on " + path("missing") + " for reading, unable to get a valid stream (eror code '4').",
              lastMessage());
    EXPECT_FALSE(missing.isOpen());
    EXPECT_FALSE(missing.close(nullptr)); // already closed again
    EXPECT_ASSERTION(static_cast<void>(missing.read(buffer, size, &log)), "accessing a null scoped ptr");
}
