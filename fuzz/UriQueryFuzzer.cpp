// Uri::parseQuery on any bytes, read only up to their size: into a DynamicObject, as the HTTP side does,
// without an assertion (which would end the host), and into a builder that checks the call sequence.
#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/Uri.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace tov::utils;

namespace {

void abortOnAssertion(const char* file, unsigned int line, const char* message)
{
    std::fprintf(stderr, "%s(%u): [assertion failed] %s\n", file, line, message);
    std::abort();
}

// Expects begin, beginObject, (objectChild scalar)*, endObject, end; aborts on anything else.
class SequenceChecker : public AbstractObjectBuilder {
public:
    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;

    bool begin() override { return step(0, 1); }
    bool beginObject() override { return step(1, 2); }
    bool objectChild(const char* key, unsigned int length) override
    {
        require(key != nullptr && length != 0);
        // Refusing every third key exercises the path where its value is held back.
        const bool accepted = ++keys % 3 != 0;
        step(2, accepted ? 3 : 2);
        return accepted;
    }
    bool boolean(bool value) override { return value ? step(3, 2) : fail(); }
    bool integer(long long) override { return step(3, 2); }
    bool real(double) override { return step(3, 2); }
    bool string(const char* text, unsigned int length) override
    {
        return text != nullptr && length != 0 ? step(3, 2) : fail();
    }
    bool endObject() override { return step(2, 4); }
    bool end() override { return step(4, 5); }
    bool null() override { return fail(); }
    bool beginArray() override { return fail(); }
    bool arrayChild() override { return fail(); }
    bool endArray() override { return fail(); }

    bool isComplete() const { return state == 5; }

private:
    static void require(bool condition)
    {
        if (!condition) {
            std::abort();
        }
    }
    bool fail()
    {
        std::abort();
        return false;
    }
    bool step(int expected, int next)
    {
        require(state == expected);
        state = next;
        return true;
    }

    int state = 0;
    unsigned int keys = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setAssertionFailedFunction(&abortOnAssertion);
    const char* query = reinterpret_cast<const char*>(data);
    const unsigned int length = static_cast<unsigned int>(size);

    SequenceChecker checker;
    const bool parsed = Uri::parseQuery(query, length, checker);
    if (!checker.isComplete()) {
        std::abort();
    }

    DynamicObject object;
    DynamicObjectBuilder builder(object);
    if (Uri::parseQuery(query, length, builder) != parsed) {
        std::abort();
    }
    return 0;
}
