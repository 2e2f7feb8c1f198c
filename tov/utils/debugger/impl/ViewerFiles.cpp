#include <tov/utils/debugger/impl/ViewerFiles.h>

#include <tov/utils/Assertion.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

// Generated from the viewer's folder at build time (cmake/EmbedViewerFiles.cmake).
extern const ViewerFile viewerFileTable[];
extern const unsigned int viewerFileCount;

namespace {

const char* const folderDocument = "index.html";

} // namespace

bool ViewerFiles::find(const char* path, unsigned int length, ViewerFile& file)
{
    if (path == nullptr) {
        return false;
    }
    if (length == 0) {
        path = folderDocument;
        length = static_cast<unsigned int>(std::strlen(folderDocument));
    }
    // A handful of files: a walk is as fast as any index and needs nothing built.
    for (unsigned int i = 0; i < viewerFileCount; ++i) {
        const ViewerFile& candidate = viewerFileTable[i];
        if (std::strlen(candidate.path) == length && std::memcmp(candidate.path, path, length) == 0) {
            file = candidate;
            return true;
        }
    }
    return false;
}

bool ViewerFiles::find(const char* path, ViewerFile& file)
{
    return find(path, path == nullptr ? 0u : static_cast<unsigned int>(std::strlen(path)), file);
}

unsigned int ViewerFiles::count()
{
    return viewerFileCount;
}

const ViewerFile& ViewerFiles::get(unsigned int index)
{
    TOV_ASSERT(index < viewerFileCount, "No viewer file #" << index << ".");
    return viewerFileTable[index < viewerFileCount ? index : 0];
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
