#include <tov/utils/FileUtils.h>

#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/String.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace tov {
namespace utils {

bool fileExists(const char* path)
{
    std::ifstream stream(path, std::ios::in);
    return stream.good();
}

bool openFileForReading(const char* path, ScopedPtr<std::basic_istream<char>>& stream, AbstractLogger* logger)
{
    TOV_ASSERT(path != nullptr, "null pointer parameter is not allowed - unable to load file");
    if (path == nullptr) {
        return false;
    }
    ScopedPtr<std::basic_istream<char>> opened(TOV_NEW std::ifstream(path, std::ios::in | std::ios::binary));
    if (opened->fail()) {
        TOV_LOG_ERROR(logger, error::fileNotFound,
                      "Could not open file '" << path << "' (error code '" << static_cast<int>(opened->rdstate())
                                              << "')");
        return false;
    }
    stream.swap(opened);
    return true;
}

bool openFileForWriting(const char* path, ScopedPtr<std::basic_ostream<char>>& stream, AbstractLogger* logger)
{
    ScopedPtr<std::basic_ostream<char>> opened(
        TOV_NEW std::ofstream(path, std::ios::out | std::ios::binary | std::ios::trunc));
    if (!opened->good()) {
        TOV_LOG_ERROR(logger, error::fileNotFound, "Unable to open resource from '" << path << "' for writing");
        return false;
    }
    stream.swap(opened);
    return true;
}

char* loadFile(const char* path, unsigned int& size, AbstractLogger* logger)
{
    ScopedPtr<std::basic_istream<char>> stream;
    if (!openFileForReading(path, stream, logger)) {
        return nullptr;
    }
    OStringStream content;
    content << stream->rdbuf(); // an empty file sets the fail state, so it fails here too
    if (content.fail()) {
        TOV_LOG_ERROR(logger, error::ioProblem,
                      "Could not be read file '" << path << "' (error code '" << static_cast<int>(content.rdstate())
                                                 << "')");
        return nullptr;
    }
    const String text = content.str();
    char* buffer = TOV_NEW_ARRAY(static_cast<unsigned int>(text.size()));
    std::copy(text.begin(), text.end(), buffer);
    size = static_cast<unsigned int>(text.size());
    return buffer;
}

bool saveToFile(const char* path, const char* buffer, unsigned int size, AbstractLogger* logger)
{
    ScopedPtr<std::basic_ostream<char>> stream;
    if (!openFileForWriting(path, stream, logger)) {
        return false;
    }
    stream->write(buffer, size);
    stream->flush();
    if (stream->fail()) {
        TOV_LOG_ERROR(logger, error::ioProblem,
                      "Unable to write the given buffer to '" << path << "' (error code '"
                                                              << static_cast<int>(stream->rdstate()) << "')");
        return false;
    }
    return true;
}

bool eraseFile(const char* path, AbstractLogger* logger)
{
    const int result = std::remove(path);
    if (result == 0) {
        return true;
    }
    // QUIRK(erase-file-result): the result of remove itself is reported (and compared with 2), not
    // errno, so a missing file reads as an I/O problem; kept as hosts know the message and category.
    TOV_LOG_ERROR(logger, result == 2 ? error::fileNotFound : error::ioProblem,
                  "Unable to remove resource from '" << path << "'. Errno: " << result);
    return false;
}

} // namespace utils
} // namespace tov
