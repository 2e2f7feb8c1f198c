#pragma once
// FrameReader: cuts the byte stream of a Debug Adapter Protocol peer into message bodies, each announced
// by a "Content-Length: N" header and an empty line. It never gives up on a stream: a header without a
// usable length, bytes that are no header, and a length that is wrong either way are reported as a
// problem and the reader finds the next header.
//   FrameReader reader;  reader.append(bytes, count);
//   FrameReader::Frame frame;
//   while (reader.next(frame)) { if (frame.problem.empty()) handle(frame.body); else log(frame.problem); }

#include <cstddef>
#include <string>

namespace tov {
namespace dap {

class FrameReader {
public:
    // A body with an empty problem, or a problem with the body (possibly empty) that it concerns.
    struct Frame {
        std::string body;
        std::string problem;
    };

    // Bodies longer than this are refused: a peer that announces gigabytes gets no buffer for them.
    static const std::size_t maximumBody = 16u << 20;

    void append(const char* bytes, std::size_t count);
    // False when no complete frame or problem is buffered yet.
    bool next(Frame& frame);
    // Whatever is left at the end of the stream, as a problem; false when nothing is left.
    bool finish(Frame& frame);

private:
    // Where the header that announces a body begins at or after `from`, npos if none is buffered.
    std::size_t findHeader(std::size_t from) const;
    // Reads the header at the front; false with a problem when it announces no usable length.
    bool readHeader(Frame& frame);
    bool readBody(Frame& frame);
    // Where the blank line that ends the header at `start` ends, npos while it is not buffered.
    std::size_t findHeaderEnd(std::size_t start) const;

    std::string buffer;
    bool inBody = false;
    std::size_t bodyLength = 0;
};

} // namespace dap
} // namespace tov
