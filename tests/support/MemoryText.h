#pragma once
// The tests' texts are std::string; these carry them into and out of the library's in-memory stream.
//   utils::MemoryInputOutput in = memoryWith(text);   ...   std::string written = textOf(out);

#include <tov/utils/MemoryInputOutput.h>

#include <string>

namespace tov {
namespace testing {

inline utils::MemoryInputOutput memoryWith(const std::string& text)
{
    return utils::MemoryInputOutput(text.data(), text.size());
}

inline std::string textOf(const utils::MemoryInputOutput& memory)
{
    return std::string(memory.getText().data(), memory.getText().size());
}

} // namespace testing
} // namespace tov
