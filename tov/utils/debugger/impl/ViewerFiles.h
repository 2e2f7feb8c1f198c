#pragma once
// ViewerFiles: the web viewer's files (tov/utils/debugger/viewer/), compiled into the library at build
// time, so that a host serves the page at /ui/ with no file on disk. Private to the library.
//   ViewerFile file;
//   if (ViewerFiles::find("main.js", 7, file)) reply(200, file.type, file.etag, file.bytes, file.size);
// The page names its files relatively (main.js, viewer.css) and the API absolutely (/api/...): served at
// /ui/, with /ui sent on to /ui/, it needs nothing else from the server. tests/viewer/devserver.mjs
// shows the headers that go with a file (no-cache with the tag, 304 for a matching If-None-Match).

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

// One file, as the build compiled it in; every pointer lives as long as the library.
struct ViewerFile {
    const char* path;           // below the viewer's folder: "index.html", "main.js"
    const unsigned char* bytes; // the content, size bytes (followed by a zero that is not counted)
    unsigned int size;
    const char* type; // the Content-Type: "text/javascript; charset=utf-8"
    const char* etag; // the ETag, quoted as the header wants it: "\"1f3a...\""
};

class ViewerFiles {
public:
    // The file at a path below /ui/: "" (the folder itself) gives index.html. The path is compared as
    // it is, with no decoding and no "." or ".." steps, so only the files of the folder are ever found.
    // Not terminated at length. False, and the file untouched, when there is no such file.
    static bool find(const char* path, unsigned int length, ViewerFile& file);
    static bool find(const char* path, ViewerFile& file);

    static unsigned int count();
    // The index-th file, in the order of their paths; index below count().
    static const ViewerFile& get(unsigned int index);
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
