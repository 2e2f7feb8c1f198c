// tov-dap's FrameReader on any bytes, appended in pieces whose sizes the input chooses, as an editor's
// stream arrives: every body it hands out stays within its maximum, it hands out at most one frame a
// byte (more would be a reader that never moves on), and the end of the stream leaves nothing behind.
#include "apps/dap/FrameReader.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void fail(const char* what)
{
    std::fprintf(stderr, "FrameReader: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    tov::dap::FrameReader reader;
    tov::dap::FrameReader::Frame frame;
    std::size_t appended = 0;
    std::size_t frames = 0;
    // The first byte of a piece gives the length of the piece behind it.
    for (std::size_t at = 0; at < size;) {
        const std::size_t length = std::min<std::size_t>(data[at] + 1u, size - at - 1);
        reader.append(bytes + at + 1, length);
        appended += length;
        at += 1 + length;
        while (reader.next(frame)) {
            if (frame.body.size() > tov::dap::FrameReader::maximumBody) {
                fail("a body longer than the maximum was handed out");
            }
            if (++frames > appended + 1) {
                fail("more frames than bytes: the reader does not move on");
            }
        }
    }
    static_cast<void>(reader.finish(frame));
    if (reader.finish(frame) || reader.next(frame)) {
        fail("something was left after the end of the stream");
    }
    return 0;
}
