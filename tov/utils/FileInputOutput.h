#pragma once
// FileInputOutput: a file as an AbstractDataInputOutput, open for reading or for writing, never both.
//   tov::utils::FileInputOutput file("save.txt");
//   if (file.openForReading(logger)) { char chunk[4096]; unsigned int size = sizeof chunk; file.read(chunk, size, logger); }

#include <tov/utils/AbstractDataInputOutput.h>
#include <tov/utils/Export.h>
#include <tov/utils/ScopedPtr.h>
#include <tov/utils/String.h>

#include <iosfwd>

namespace tov {
namespace utils {

class TOV_UTILS_API FileInputOutput : public AbstractDataInputOutput {
public:
    explicit FileInputOutput(const char* fileName);
    virtual ~FileInputOutput();
    FileInputOutput(const FileInputOutput&) = delete;
    FileInputOutput& operator=(const FileInputOutput&) = delete;

    [[nodiscard]] bool openForReading(AbstractLogger* logger = nullptr);
    // Empties the file.
    [[nodiscard]] bool openForWriting(AbstractLogger* logger = nullptr);
    // False once a read reached the end of the file, although the file is still held: close stays valid.
    bool isOpen() const;
    [[nodiscard]] bool close(AbstractLogger* logger = nullptr);

    bool isWritable() const override;
    [[nodiscard]] bool write(const char* buffer, unsigned int size, AbstractLogger* logger) override;
    bool isReadable() const override;
    [[nodiscard]] bool read(char* buffer, unsigned int& size, AbstractLogger* logger) override;

private:
    String fileName;
    ScopedPtr<std::basic_istream<char>> input;
    ScopedPtr<std::basic_ostream<char>> output;
};

} // namespace utils
} // namespace tov
