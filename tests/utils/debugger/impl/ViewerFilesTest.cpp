// The web viewer's files as the build compiled them into the library: each one is found under its path
// with the bytes of the folder, the content type a browser needs for it and an entity tag of its own,
// and nothing outside the folder's own names is ever found.

#include <tov/utils/debugger/impl/ViewerFiles.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

using tov::utils::debugger::impl::ViewerFile;
using tov::utils::debugger::impl::ViewerFiles;

namespace {

std::string contentOf(const ViewerFile& file)
{
    return std::string(reinterpret_cast<const char*>(file.bytes), file.size);
}

TEST(ViewerFiles, EveryFileOfTheFolderIsCompiledInWithItsBytesAndATagOfItsOwn)
{
    const std::filesystem::path folder(TOV_VIEWER_DIR);
    unsigned int onDisk = 0;
    std::set<std::string> tags;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        // The build leaves out hidden files and editors' leftovers.
        if (!entry.is_regular_file() || name[0] == '.' || name.back() == '~') {
            continue;
        }
        ++onDisk;
        const std::string path = std::filesystem::relative(entry.path(), folder).generic_string();
        ViewerFile file{};
        ASSERT_TRUE(ViewerFiles::find(path.c_str(), file)) << path;
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::string expected((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        EXPECT_EQ(expected, contentOf(file)) << path;
        EXPECT_EQ('"', file.etag[0]) << path;
        EXPECT_TRUE(tags.insert(file.etag).second) << path << " shares its tag";
    }
    EXPECT_EQ(onDisk, ViewerFiles::count());
}

TEST(ViewerFiles, ContentTypesFollowTheExtensionAndTheFolderItselfIsItsPage)
{
    const struct {
        const char* path;
        const char* type;
    } cases[] = {
        {"index.html", "text/html; charset=utf-8"},
        {"main.js", "text/javascript; charset=utf-8"},
        {"viewer.css", "text/css; charset=utf-8"},
        {"favicon.svg", "image/svg+xml"},
    };
    for (const auto& expected : cases) {
        ViewerFile file{};
        ASSERT_TRUE(ViewerFiles::find(expected.path, file)) << expected.path;
        EXPECT_STREQ(expected.type, file.type) << expected.path;
    }
    // The folder itself is its page.
    ViewerFile folder{};
    ViewerFile page{};
    ASSERT_TRUE(ViewerFiles::find("", folder));
    ASSERT_TRUE(ViewerFiles::find("index.html", page));
    EXPECT_EQ(page.bytes, folder.bytes);
    EXPECT_EQ(0, contentOf(page).rfind("<!doctype html>", 0));
}

TEST(ViewerFiles, OnlyTheExactNamesOfTheFolderAreFound)
{
    const char* const refused[] = {"/index.html",
                                   "index.html/",
                                   "./index.html",
                                   "../CMakeLists.txt",
                                   "%2e%2e/api.js",
                                   "INDEX.HTML",
                                   "index.htm",
                                   "main.js?v=1",
                                   "main",
                                   "debug/index.html",
                                   "/"};
    for (const char* path : refused) {
        ViewerFile file{};
        EXPECT_FALSE(ViewerFiles::find(path, file)) << path;
        EXPECT_EQ(nullptr, file.path) << path;
    }
    ViewerFile file{};
    EXPECT_FALSE(ViewerFiles::find(nullptr, 3, file));
    // The length bounds the path: what follows it is not read.
    ASSERT_TRUE(ViewerFiles::find("main.js?v=1", 7, file));
    EXPECT_STREQ("main.js", file.path);
}

} // namespace
