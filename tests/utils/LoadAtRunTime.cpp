// A host that loads the library with dlopen instead of linking it: the memory service's per-thread record
// lives in the static TLS block, which such a late library must still get. The program links nothing of
// the library, so both shared objects come in by dlopen, and it allocates on this thread and on another.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <thread>

namespace {

int fail(const char* what)
{
    const char* reason = dlerror();
    std::fprintf(stderr, "%s: %s\n", what, reason != nullptr ? reason : "no reason given");
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s PATH_OF_LIBTOV_UTILS\n", argv[0]);
        return 2;
    }
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return fail("dlopen");
    }
    using Version = const char* (*)();
    using LifeStep = bool (*)(void*);
    const auto version = reinterpret_cast<Version>(dlsym(library, "getVersionTOV_UTILS"));
    const auto initialize =
        reinterpret_cast<LifeStep>(dlsym(library, "_ZN3tov5utils10initializeEPNS0_14AbstractLoggerE"));
    const auto terminate = reinterpret_cast<LifeStep>(dlsym(library, "_ZN3tov5utils9terminateEPNS0_14AbstractLoggerE"));
    if (version == nullptr || initialize == nullptr || terminate == nullptr) {
        return fail("dlsym");
    }
    bool other = false;
    std::thread([&] { other = initialize(nullptr) && terminate(nullptr); }).join();
    const bool here = initialize(nullptr) && terminate(nullptr);
    if (!other || !here || std::strcmp(version(), "0.4.0") != 0) {
        std::fprintf(stderr, "the loaded library did not run: %d %d %s\n", other, here, version());
        return 1;
    }
    return dlclose(library) == 0 ? 0 : fail("dlclose");
}
