// A host as small as can be: start the library, intern a text, release a buffer, stop.
#include <tov/utils/All.h>

#include <cstdio>
#include <cstring>

int main()
{
    const unsigned long long liveBefore = tov::allocator::Allocator::instance().getLiveBytes();
    if (!tov::utils::initialize(nullptr)) {
        return 1;
    }
    tov::utils::StringTable& table = tov::utils::Facilities::instance().getStringTable();
    const unsigned long long hash = table.add("speed", nullptr);
    if (std::strcmp(table.retrieve(hash, ""), "speed") != 0) {
        return 2;
    }
    char* buffer = TOV_NEW_ARRAY(16);
    TOV_DELETE_ARRAY(buffer);
    tov::utils::terminate(nullptr);
    if (tov::allocator::Allocator::instance().getLiveBytes() != liveBefore) {
        return 3;
    }
    std::printf("consumer ran against %s\n", getVersionTOV_UTILS());
    return 0;
}
