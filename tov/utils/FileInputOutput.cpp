#include <tov/utils/FileInputOutput.h>

#include <tov/utils/Logging.h>

#include <fstream>

namespace tov {
namespace utils {

FileInputOutput::FileInputOutput(const char* fileName) : fileName(fileName) {}

FileInputOutput::~FileInputOutput() = default;

bool FileInputOutput::openForReading(AbstractLogger* logger)
{
    if (isWritable()) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't open the io on " << fileName << " for reading, it is already open for writing.");
        return false;
    }
    if (isReadable()) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't open the io on " << fileName << " for reading, it is already open for reading.");
        return false;
    }
    // Replaces, and so closes, a stream left here after it reached the end of the file.
    input.reset(TOV_NEW std::ifstream(fileName.c_str(), std::ios::in | std::ios::binary));
    if (input->fail()) {
        // QUIRK(eror-message): "eror" is the wording this message has always had; hosts match on it.
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't open the io on " << fileName << " for reading, unable to get a valid stream (eror code '"
                                              << static_cast<int>(input->rdstate()) << "').");
        // The stream that failed to open is dropped; closing it has nothing to report.
        static_cast<void>(close(nullptr));
        return false;
    }
    return true;
}

bool FileInputOutput::openForWriting(AbstractLogger* logger)
{
    if (isWritable()) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't open the io on " << fileName << " for writing, it is already open for writing.");
        return false;
    }
    if (isReadable()) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't open the io on " << fileName << " for writing, it is already open for reading.");
        return false;
    }
    output.reset(TOV_NEW std::ofstream(fileName.c_str(), std::ios::out | std::ios::binary | std::ios::trunc));
    if (!output->good()) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't open the io on " << fileName << " for writing, unable to get a valid stream (error code '"
                                              << static_cast<int>(output->rdstate()) << "').");
        // The stream that failed to open is dropped; closing it has nothing to report.
        static_cast<void>(close(nullptr));
        return false;
    }
    return true;
}

bool FileInputOutput::isOpen() const
{
    return isWritable() || isReadable();
}

bool FileInputOutput::close(AbstractLogger* logger)
{
    if (!input && !output) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Can't close the io on " << fileName << ", it is not open.");
        return false;
    }
    input.reset();
    output.reset();
    return true;
}

bool FileInputOutput::isWritable() const
{
    return output && output->good();
}

bool FileInputOutput::write(const char* buffer, unsigned int size, AbstractLogger* logger)
{
    if (!isWritable()) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't write to the io on " << fileName << ", it is not currently writable.");
        return false;
    }
    output->write(buffer, size);
    if (!output->good()) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Can't write to the io on " << fileName << ".");
        return false;
    }
    return true;
}

bool FileInputOutput::isReadable() const
{
    return input && input->good();
}

bool FileInputOutput::read(char* buffer, unsigned int& size, AbstractLogger* logger)
{
    // QUIRK(read-unopened): reading with nothing open is the null owner's assertion. Should the
    // assertion function return, the read fails, the smallest safe thing, instead of following the null
    // pointer.
    std::basic_istream<char>* stream = input.operator->();
    if (stream == nullptr) {
        size = 0;
        return false;
    }
    if (!isReadable() && !stream->eof()) {
        size = 0;
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "Can't read the io on " << fileName << ", it is not currently readable.");
        return false;
    }
    stream->read(buffer, size);
    if (stream->eof()) {
        size = static_cast<unsigned int>(stream->gcount());
        return true;
    }
    if (isReadable()) {
        return true;
    }
    size = 0;
    TOV_LOG_ERROR(logger, error::invalidOperation, "Can't read the io on " << fileName << ".");
    return false;
}

} // namespace utils
} // namespace tov
