// deserializeRandom and deserializeRandomManager on any text: a refused text leaves the target as it
// was; an accepted one saves again to a text that reads back to the same stream or seed.
#include <tov/utils/BufferLogger.h>
#include <tov/utils/Memory.h>
#include <tov/utils/RandomManagerSerialization.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace tov::utils;

namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

void checkStream(const char* text, unsigned int size)
{
    BufferLogger log(true, true, true);
    Random stream(17);
    Random untouched(17);
    if (!deserializeRandom(text, size, stream, &log)) {
        require(log.getMessages().size() == 1, "a refused stream logs one error");
        require(stream() == untouched(), "a refused stream leaves the target alone");
        return;
    }
    require(log.getMessages().empty(), "an accepted stream logs nothing");
    unsigned int savedSize = 0;
    char* saved = serializeRandom(savedSize, stream, nullptr);
    require(saved != nullptr, "an accepted stream saves again");
    Random again(0);
    require(deserializeRandom(saved, savedSize, again, nullptr), "a saved stream reads back");
    TOV_DELETE_ARRAY(saved);
    for (int i = 0; i < 8; ++i) {
        require(stream() == again(), "a saved stream reads back to the same words");
    }
}

void checkManager(const char* text, unsigned int size)
{
    BufferLogger log(true, true, true);
    RandomManager manager;
    manager.seed(23);
    if (!deserializeRandomManager(text, size, manager, &log)) {
        require(log.getMessages().size() == 1, "a refused manager logs one error");
        require(manager.getSeed() == 23, "a refused manager keeps its seed");
        return;
    }
    unsigned int savedSize = 0;
    char* saved = serializeRandomManager(savedSize, manager, nullptr);
    require(saved != nullptr, "an accepted manager saves again");
    RandomManager again;
    require(deserializeRandomManager(saved, savedSize, again, nullptr), "a saved manager reads back");
    require(again.getSeed() == manager.getSeed(), "a saved manager reads back to the same seed");
    TOV_DELETE_ARRAY(saved);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A copy of exactly `size` bytes, so that a read past the end is caught.
    const unsigned int length = static_cast<unsigned int>(size);
    char* text = TOV_NEW_ARRAY(length);
    for (unsigned int i = 0; i < length; ++i) {
        text[i] = static_cast<char>(data[i]);
    }
    checkStream(text, length);
    checkManager(text, length);
    TOV_DELETE_ARRAY(text);
    return 0;
}
