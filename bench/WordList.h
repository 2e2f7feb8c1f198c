#pragma once
// A fixed list of distinct, word-like texts (3 to 14 letters), the same in every run, so that the
// library and its peers are measured on the same data.

#include <cstdint>
#include <string>
#include <vector>

namespace tov {
namespace bench {

inline std::vector<std::string> makeWords(std::size_t count)
{
    static const char* const syllables[] = {"ka", "lo",  "mi",  "ne", "ru",  "sta", "ven", "tor",
                                            "al", "qui", "ber", "do", "gra", "phi", "ux",  "zel"};
    std::vector<std::string> words;
    words.reserve(count);
    std::uint32_t state = 12345;
    while (words.size() < count) {
        state = state * 1664525u + 1013904223u;
        std::string word;
        const unsigned int parts = 2 + (state >> 28) % 4;
        for (unsigned int i = 0; i < parts; ++i) {
            state = state * 1664525u + 1013904223u;
            word += syllables[(state >> 24) % 16];
        }
        word += std::to_string(words.size()); // keeps every word distinct
        words.push_back(word);
    }
    return words;
}

} // namespace bench
} // namespace tov
