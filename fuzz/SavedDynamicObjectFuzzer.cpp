// The saved text form from outside into a DynamicObject, with the default assertion function left in
// place, so that any path from such input to an assertion ends the run as a finding. An object that
// loads is saved and loaded again.
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectSerialization.h>
#include <tov/utils/Memory.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tov::utils::DynamicObject object;
    if (!tov::utils::deserializeDynamicObject(reinterpret_cast<const char*>(data), static_cast<unsigned int>(size),
                                              object, nullptr)) {
        return 0;
    }
    unsigned int savedSize = 0;
    char* saved = tov::utils::serializeDynamicObject(savedSize, object, nullptr);
    if (saved != nullptr) {
        tov::utils::DynamicObject again;
        // Read again for the crashes and assertions it may meet; the result is no finding of its own.
        static_cast<void>(tov::utils::deserializeDynamicObject(saved, savedSize, again, nullptr));
        TOV_DELETE_ARRAY(saved);
    }
    return 0;
}
