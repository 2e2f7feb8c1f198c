// The JSON and saved texts of fixed documents, pinned by a checksum: the readers and writers may get
// faster, but what they read and write must stay the same bytes.
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectSerialization.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/Memory.h>

#include "support/MemoryText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

using namespace tov::utils;
using tov::testing::memoryWith;
using tov::testing::textOf;

namespace {

// FNV-1a over 64 bits.
std::uint64_t checksum(const std::string& text)
{
    std::uint64_t hash = 14695981039346656037ull;
    for (unsigned char c : text) {
        hash = (hash ^ c) * 1099511628211ull;
    }
    return hash;
}

struct Outputs {
    std::uint64_t json;
    std::uint64_t saved;
};

Outputs outputsOf(const DynamicObject& object)
{
    tov::utils::MemoryInputOutput json;
    EXPECT_TRUE(serializeDynamicObjectToJson(object, json, nullptr));
    unsigned int size = 0;
    char* saved = serializeDynamicObject(size, object, nullptr);
    const std::string savedText = saved == nullptr ? std::string() : std::string(saved, size);
    TOV_DELETE_ARRAY(saved);
    return {checksum(textOf(json)), checksum(savedText)};
}

Outputs outputsOfJson(const std::string& text)
{
    DynamicObject object;
    tov::utils::MemoryInputOutput in = memoryWith(text);
    EXPECT_TRUE(deserializeDynamicObjectFromJson(object, in, nullptr));
    return outputsOf(object);
}

// A world as a simulation host keeps it: agents with positions, counters, flags and names, reals of
// every awkward kind among them.
void buildWorld(DynamicObject& world)
{
    world.setInt("tick", 42);
    world.setString("name", "forager world \"one\"\n\t\\");
    world.setBool("running", true);
    world.resetProperty("paused");
    const double reals[] = {0.1,           -0.0,    1.0,
                            1e300,         5e-324,  2.2250738585072014e-308,
                            123456789.125, -7.5e-7, std::numeric_limits<double>::max(),
                            1.0 / 3.0};
    for (int i = 0; i < 10; ++i) {
        const std::string agent = "agents[" + std::to_string(i) + "]";
        world.setString((agent + ".name").c_str(), ("forager-" + std::to_string(i)).c_str());
        world.setInt((agent + ".id").c_str(), i - 5);
        world.setReal((agent + ".pos.x").c_str(), reals[i]);
        world.setReal((agent + ".pos.y").c_str(), i * 10.25);
        world.setBool((agent + ".alive").c_str(), i % 3 != 0);
        world.setInt((agent + ".meals").c_str(), i == 9 ? std::numeric_limits<long long>::min() : i * 1000003);
    }
    world.setInt("grid[3][2]", 1);
    world.setString("grid[0][0]", "");
}

std::string readDocument(const char* name)
{
    std::ifstream file(std::string(TOV_SHARED_DATA_DIR) + "/json/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

TEST(OutputChecksum, AWorldBuiltInPlaceAndNumbersAtTheEdgesWriteTheSameTexts)
{
    DynamicObject world;
    buildWorld(world);
    const Outputs built = outputsOf(world);
    EXPECT_EQ(0xf3ec689c24a2f332ull, built.json);
    EXPECT_EQ(0x17a777ebc8012d13ull, built.saved);
    // Each text stops at its first number out of range; what was read before stays.
    const struct {
        const char* text;
        std::uint64_t json;
        std::uint64_t saved;
    } cases[] = {
        {R"([0.1,-0.0,1E5,1e-5,2.2250738585072011e-308,4.9e-324,1e-400,1.7976931348623157e308,12.5e1])",
         0xd4b821234ef0dbabull, 0xdabd970b1a0cf1afull},
        {R"([9223372036854775807,-9223372036854775807,0,-0,1e400,3])", 0x9bafe3fdfc9f9e5eull, 0x36c3c4af82700763ull},
        {R"({"a":1,"b":123456789012345678901234567890,"c":2})", 0xefe6f52b57e38cc6ull, 0x33dd52f8eab97034ull},
        {R"({"a":-9223372036854775808})", 0x73c0f5330a0bc211ull, 0xbbb31ecbd4359008ull},
        {R"([0.30000000000000004441, 100000000000000000000000.0, -1e-310, 18446744073709551615e0])",
         0x8c7cf6cfa09a6b3full, 0x634ca49e4758164aull},
    };
    for (const auto& c : cases) {
        const Outputs outputs = outputsOfJson(c.text);
        EXPECT_EQ(c.json, outputs.json) << c.text;
        EXPECT_EQ(c.saved, outputs.saved) << c.text;
    }
}

TEST(OutputChecksum, ThePublicDocumentsWriteTheSameTexts)
{
    const struct {
        const char* name;
        std::uint64_t json;
        std::uint64_t saved;
    } documents[] = {
        {"canada.json", 0xbf7f445d570069f2ull, 0xdf4b5a0b912d7d56ull},
        {"citm_catalog.json", 0x5ac8b12ce25a21bbull, 0x6ad64f66fe46902dull},
        {"twitter.json", 0xa99a0f044ab3039eull, 0x4b94c48096942ae3ull},
    };
    for (const auto& document : documents) {
        const std::string text = readDocument(document.name);
        if (text.empty()) {
            GTEST_SKIP() << document.name << " not found under " << TOV_SHARED_DATA_DIR << "/json";
        }
        const Outputs outputs = outputsOfJson(text);
        EXPECT_EQ(document.json, outputs.json) << document.name;
        EXPECT_EQ(document.saved, outputs.saved) << document.name;
    }
}
