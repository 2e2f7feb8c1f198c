#include <tov/allocator/Allocator.h>
#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>

#include "support/AssertionGuard.h"
#include "support/RecordingAssertions.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

using namespace tov::utils;

namespace {

class UriAssertions : public tov::testing::AssertionTest {};

std::string textOf(const Uri& uri)
{
    std::vector<char> buffer(uri.computeStringLength() + 1, '\x7f');
    uri.computeString(buffer.data());
    EXPECT_EQ(uri.computeStringLength(), std::strlen(buffer.data()));
    return buffer.data();
}

std::string segmentsOf(const Uri& uri)
{
    std::string joined;
    for (unsigned int i = 0; i < uri.countPathSegments(); ++i) {
        joined += (i == 0 ? "" : "|") + std::string(uri.getPathSegment(i));
    }
    return joined;
}

// Writes what it is sent as a JSON-like text, framed by '<' and '>' for begin and end; a real always has
// a point, so that it differs from an integer.
class QueryRecorder : public AbstractObjectBuilder {
public:
    using AbstractObjectBuilder::objectChild;
    using AbstractObjectBuilder::string;

    bool begin() override { return add("<"); }
    bool end() override { return add(">"); }
    bool beginObject() override
    {
        first = true;
        return add("{");
    }
    bool endObject() override { return add("}") && endObjectResult; }
    // Refuses a key with a dot, as a DynamicObjectBuilder does.
    bool objectChild(const char* key, unsigned int length) override
    {
        const std::string name(key, length);
        if (name.find('.') != std::string::npos) {
            return false;
        }
        add((first ? "\"" : ",\"") + name + "\":");
        first = false;
        return true;
    }
    bool boolean(bool value) override { return add(value ? "true" : "false"); }
    bool integer(long long value) override { return add(std::to_string(value)); }
    bool real(double value) override
    {
        std::ostringstream stream;
        stream << value;
        const std::string text = stream.str();
        return add(text.find_first_of(".e") == std::string::npos ? text + ".0" : text);
    }
    bool string(const char* text, unsigned int length) override { return add("\"" + std::string(text, length) + "\""); }

    std::string written;
    bool endObjectResult = true;

private:
    bool add(const std::string& text)
    {
        written += text;
        return true;
    }

    bool first = true;
};

// Fills every part, so that a setter must move what lies behind its own part.
Uri fullUri()
{
    return Uri::create("tov:agents/forager.behavior?step=3#seek");
}

} // namespace

TEST(Uri, StartsEmptyKeepsEachPartBehindItsOwnTerminatorAndClearsBackToEmpty)
{
    Uri uri;
    EXPECT_TRUE(uri.empty());
    EXPECT_EQ("", textOf(uri));
    EXPECT_EQ(0u, uri.countPathSegments());
    EXPECT_STREQ("", uri.getPathSegment(0));
    EXPECT_EQ(4u, uri.getRawStringLength());
    EXPECT_FALSE(uri.hasScheme() || uri.hasPath() || uri.hasExtension() || uri.hasQuery() || uri.hasFragment());
    const Uri parts = Uri::create("a:b/c.d?e#f");
    ASSERT_EQ(11u, parts.getRawStringLength());
    EXPECT_EQ(0, std::memcmp("a\0b\0c\0d\0e\0f", parts.getRawString(), 12));
    EXPECT_FALSE(Uri::create("a").empty());
    Uri other = fullUri();
    uri.swap(other);
    EXPECT_EQ(fullUri(), uri);
    EXPECT_TRUE(other.empty());
    uri.clear();
    EXPECT_EQ(Uri(), uri);
}

TEST(Uri, SplitsTextIntoPartsAndWritesItBackReadingASchemeOnPastTheGivenLengthOnly)
{
    struct Case {
        const char* text;
        const char* scheme;
        const char* segments;
        const char* extension;
        const char* query;
        const char* fragment;
        const char* written;
    };
    const Case cases[] = {
        {"tov:simulation", "tov", "simulation", "", "", "", "tov:simulation"},
        {"tov://x/y", "tov", "x|y", "", "", "", "tov:x/y"},
        {"tov:agents/forager.behavior?step=3#seek", "tov", "agents|forager", "behavior", "step=3", "seek",
         "tov:agents/forager.behavior?step=3#seek"},
        {"a.b/c.d", "", "a.b|c", "d", "", "", "a.b/c.d"},
        {":x", "", ":x", "", "", "", ":x"},
        {"1a:b", "", "1a:b", "", "", "", "1a:b"},
        {"+a:b", "+a", "b", "", "", "", "+a:b"},
        {"a?b#c?d", "", "a", "", "b", "c?d", "a?b#c?d"},
        {"a#b?c", "", "a", "", "", "b?c", "a#b?c"},
        {"/a//b/", "", "a|b", "", "", "", "a/b"},
        {"tov:", "tov", "", "", "", "", "tov:"},
        {".txt?#", "", "", "txt", "", "", ".txt"},
        {"x:?q=/?", "x", "", "", "q=/?", "", "x:?q=/?"},
        {"#f/?", "", "", "", "", "f/?", "#f/?"},
        {"S.1-+:@x!$&'()*+,;=~_.y", "S.1-+", "@x!$&'()*+,;=~_", "y", "", "", "S.1-+:@x!$&'()*+,;=~_.y"},
    };
    for (const Case& c : cases) {
        Uri uri;
        BufferLogger log(false, false, false);
        ASSERT_TRUE(uri.set(c.text, &log)) << c.text;
        EXPECT_TRUE(log.getMessages().empty()) << c.text;
        EXPECT_STREQ(c.scheme, uri.getScheme()) << c.text;
        EXPECT_EQ(c.segments, segmentsOf(uri)) << c.text;
        EXPECT_STREQ(c.extension, uri.getExtension()) << c.text;
        EXPECT_STREQ(c.query, uri.getQuery()) << c.text;
        EXPECT_STREQ(c.fragment, uri.getFragment()) << c.text;
        EXPECT_EQ(c.written, textOf(uri)) << c.text;
        EXPECT_EQ(*c.scheme != '\0', uri.hasScheme()) << c.text;
        EXPECT_EQ(*c.segments != '\0', uri.hasPath()) << c.text;
        EXPECT_EQ(*c.query != '\0', uri.hasQuery()) << c.text;
        EXPECT_EQ(Uri::create(c.written), uri) << c.text;
    }
    // A scheme is read on past the given length, but no further.
    Uri uri;
    ASSERT_TRUE(uri.set("tov:abc", 5, nullptr));
    EXPECT_EQ("tov:a", textOf(uri));
    // The scheme scan runs to the ':' behind the length; nothing of the text is left for the other parts.
    ASSERT_TRUE(uri.set("ab:cd", 1, nullptr));
    EXPECT_EQ("ab:", textOf(uri));
    EXPECT_EQ(0u, uri.countPathSegments());
}

TEST(Uri, RefusedTextsLeaveTheUriEmptyAndSayWhere)
{
    struct Case {
        const char* text;
        const char* message;
    };
    const Case cases[] = {
        {"a.b/c", "Unexpected character in the extension definition: '/' #1."},
        {"a%20b", "Unexpected character in the path segment definition: '%' #0,1."},
        {"tov:x/a b", "Unexpected character in the path segment definition: ' ' #1,1."},
        {"a?b c", "Unexpected character in the query definition: ' ' #1."},
        {"a?@", "Unexpected character in the query definition: '@' #0."},
        {"a#b:c", "Unexpected character in the fragment definition: ':' #1."},
        {"a#b#", "Unexpected character in the fragment definition: '#' #1."},
    };
    for (const Case& c : cases) {
        Uri uri = fullUri();
        BufferLogger log(false, false, false);
        EXPECT_FALSE(uri.set(c.text, &log)) << c.text;
        EXPECT_TRUE(uri.empty()) << c.text;
        ASSERT_EQ(1u, log.getMessages().size()) << c.text;
        EXPECT_EQ(c.message, log.getMessages()[0].message);
        EXPECT_EQ(error::invalidArgument, log.getMessages()[0].errorType);
        uri = fullUri();
        EXPECT_FALSE(uri.set(c.text, nullptr)) << c.text;
        EXPECT_TRUE(uri.empty()) << c.text;
    }
    // The five-part set too stops at its first refusal and clears.
    Uri uri = fullUri();
    BufferLogger log(false, false, false);
    EXPECT_FALSE(uri.set("tov", "a b", "e.x", "?", "#", &log));
    EXPECT_TRUE(uri.empty());
    ASSERT_EQ(1u, log.getMessages().size());
    EXPECT_EQ("Unexpected character in the path segment definition: ' ' #0,1.", log.getMessages()[0].message);
}

TEST(Uri, RefusingPartSettersChangeNothing)
{
    const char* const segments[] = {"ok", "a/b"};
    const unsigned int lengths[] = {2, 3};
    struct Case {
        std::function<bool(Uri&, AbstractLogger*)> set;
        const char* message;
    };
    const Case cases[] = {
        {[](Uri& u, AbstractLogger* l) { return u.setScheme("1a", l); },
         "Unexpected character in the scheme definition: '1' #0."},
        {[](Uri& u, AbstractLogger* l) { return u.setScheme("a1_", l); },
         "Unexpected character in the scheme definition: '_' #2."},
        {[](Uri& u, AbstractLogger* l) { return u.setPath("//a/b c", l); },
         "Unexpected character in the path segment definition: ' ' #1,1."},
        {[&](Uri& u, AbstractLogger* l) { return u.setPathSegments(segments, lengths, 2, l); },
         "Unexpected character in the path segment definition: '/' #1,1."},
        {[](Uri& u, AbstractLogger* l) { return u.setExtension("t.x", l); },
         "Unexpected character in the extension definition: '.' #1."},
        {[](Uri& u, AbstractLogger* l) { return u.setQuery("a#", l); },
         "Unexpected character in the query definition: '#' #1."},
        {[](Uri& u, AbstractLogger* l) { return u.setFragment("%41", l); },
         "Unexpected character in the fragment definition: '%' #0."},
    };
    for (const Case& c : cases) {
        Uri uri = fullUri();
        BufferLogger log(false, false, false);
        EXPECT_FALSE(c.set(uri, &log)) << c.message;
        EXPECT_EQ(fullUri(), uri) << c.message;
        ASSERT_EQ(1u, log.getMessages().size()) << c.message;
        EXPECT_EQ(c.message, log.getMessages()[0].message);
        EXPECT_FALSE(c.set(uri, nullptr)) << c.message;
    }
}

TEST(Uri, PartSettersReplaceTheirPartAndKeepTheOthers)
{
    const char* const segments[] = {"", "b"};
    const unsigned int lengths[] = {0, 1};
    struct Case {
        std::function<bool(Uri&)> set;
        unsigned int segments;
        const char* written;
    };
    const Case cases[] = {
        {[](Uri& u) { return u.setScheme("simulation", nullptr); }, 2,
         "simulation:agents/forager.behavior?step=3#seek"},
        {[](Uri& u) { return u.setScheme("", nullptr); }, 2, "agents/forager.behavior?step=3#seek"},
        {[](Uri& u) { return u.setPath("x/long-segment-name/z", nullptr); }, 3,
         "tov:x/long-segment-name/z.behavior?step=3#seek"},
        {[](Uri& u) { return u.setPath("", nullptr); }, 0, "tov:.behavior?step=3#seek"},
        {[](Uri& u) { return u.setPath("///", nullptr); }, 0, "tov:.behavior?step=3#seek"},
        {[](Uri& u) { return u.setPathSegments(nullptr, nullptr, 0, nullptr); }, 0, "tov:.behavior?step=3#seek"},
        // An empty first segment reads as no path, though its separator is written.
        {[&](Uri& u) { return u.setPathSegments(segments, lengths, 2, nullptr); }, 0, "tov:/b.behavior?step=3#seek"},
        {[](Uri& u) { return u.setExtension("b", nullptr); }, 2, "tov:agents/forager.b?step=3#seek"},
        {[](Uri& u) { return u.setExtension("", nullptr); }, 2, "tov:agents/forager?step=3#seek"},
        {[](Uri& u) { return u.setQuery("step=30&x", nullptr); }, 2, "tov:agents/forager.behavior?step=30&x#seek"},
        {[](Uri& u) { return u.setQuery("", nullptr); }, 2, "tov:agents/forager.behavior#seek"},
        {[](Uri& u) { return u.setFragment("seek/and?find", nullptr); }, 2,
         "tov:agents/forager.behavior?step=3#seek/and?find"},
        {[](Uri& u) { return u.setFragment("", nullptr); }, 2, "tov:agents/forager.behavior?step=3"},
        {[](Uri& u) { return u.set("a", "b/c", "d", "e", "f", nullptr); }, 2, "a:b/c.d?e#f"},
        {[](Uri& u) { return u.set("xy", 1, "z/w", 1, "ee", 1, "", 0, "f", 1, nullptr); }, 1, "x:z.e#f"},
    };
    for (const Case& c : cases) {
        Uri uri = fullUri();
        ASSERT_TRUE(c.set(uri)) << c.written;
        EXPECT_EQ(c.written, textOf(uri));
        EXPECT_EQ(c.segments, uri.countPathSegments()) << c.written;
        EXPECT_EQ(c.segments != 0, uri.hasPath()) << c.written;
        EXPECT_EQ(c.written, textOf(Uri(uri)));
    }
}

TEST(Uri, SettersTakeTextsFromTheSameUri)
{
    Uri uri = Uri::create("s:p.e?q#a-fragment-long-enough-to-outgrow-the-buffer");
    ASSERT_TRUE(uri.setScheme(uri.getFragment(), nullptr));
    EXPECT_EQ("a-fragment-long-enough-to-outgrow-the-buffer:p.e?q#a-fragment-long-enough-to-outgrow-the-buffer",
              textOf(uri));
    ASSERT_TRUE(uri.setPath(uri.getScheme(), nullptr));
    ASSERT_TRUE(uri.setQuery(uri.getPathSegment(0), nullptr));
    ASSERT_TRUE(uri.setFragment(uri.getExtension(), nullptr));
    EXPECT_STREQ("a-fragment-long-enough-to-outgrow-the-buffer", uri.getQuery());
    EXPECT_STREQ("e", uri.getFragment());
    const Uri copy = uri;
    ASSERT_TRUE(uri.set(uri.getQuery(), nullptr));
    EXPECT_EQ("a-fragment-long-enough-to-outgrow-the-buffer", textOf(uri));
    ASSERT_TRUE(uri.set(copy.getScheme(), copy.getPathSegment(0), "e", uri.getPathSegment(0), "", nullptr));
    EXPECT_STREQ("a-fragment-long-enough-to-outgrow-the-buffer", uri.getQuery());
}

TEST(Uri, GettersAndComparisonsDoNotAllocateAndHandedOutTextsComeFromTheMemoryService)
{
    const Uri uri = fullUri();
    const Uri other = Uri::create("tov:agents/forager.behavior?step=4#seek");
    char buffer[64];
    unsigned int offset = 0;
    unsigned int length = 0;
    const tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long before = memory.getAllocationCount();
    const bool parts = uri.hasScheme() && uri.hasPath() && uri.hasExtension() && uri.hasQuery() && uri.hasFragment();
    const char* texts[] = {uri.getScheme(), uri.getPathSegment(1), uri.getExtension(),
                           uri.getQuery(),  uri.getFragment(),     uri.getRawString()};
    const unsigned int sizes =
        uri.countPathSegments() + uri.getRawStringLength() + uri.computeStringLength() + uri.computePathStringLength();
    uri.computeString(buffer);
    uri.computePathString(buffer + 48);
    const bool order = uri < other && uri != other && !(uri == other) && !uri.empty();
    const bool found = Uri::retrieveFirstPathSegment("/api/debug/entities", 19, offset, length);
    EXPECT_EQ(before, memory.getAllocationCount());
    EXPECT_TRUE(parts && order && found);
    EXPECT_STREQ("forager", texts[1]);
    EXPECT_EQ(2u + 39 + 39 + 14, sizes);
    EXPECT_STREQ("tov:agents/forager.behavior?step=3#seek", buffer);
    EXPECT_STREQ("agents/forager", buffer + 48);

    const unsigned long long blocks = memory.getLiveBlocks();
    char* text = uri.computeString();
    EXPECT_STREQ("tov:agents/forager.behavior?step=3#seek", text);
    EXPECT_EQ(blocks + 1, memory.getLiveBlocks());
    TOV_DELETE_ARRAY(text);
    EXPECT_EQ(blocks, memory.getLiveBlocks());
    std::ostringstream stream;
    stream << uri << '|' << Uri();
    EXPECT_EQ("tov:agents/forager.behavior?step=3#seek|", stream.str());
    EXPECT_EQ(blocks, memory.getLiveBlocks());
}

TEST(Uri, ComparesAndWritesTheStoredPartsWithoutNormalising)
{
    EXPECT_EQ(Uri::create("tov://x/y"), Uri::create("tov:x/y"));
    EXPECT_NE(Uri::create("tov:x"), Uri::create("TOV:x"));
    EXPECT_NE(Uri::create("tov:x?a"), Uri::create("tov:x#a"));
    EXPECT_EQ(Uri::create("tov:x?"), Uri::create("tov:x#")); // an empty part is an absent one
    EXPECT_NE(Uri::create("tov:a/b"), Uri::create("tov:ab"));
    std::vector<Uri> uris = {Uri::create("b:a"), Uri::create("a:b/c"), Uri::create("zzz"),
                             Uri::create("a:b"), Uri::create("a:b.c"), Uri()};
    std::sort(uris.begin(), uris.end());
    std::string order;
    for (const Uri& uri : uris) {
        order += textOf(uri) + " ";
    }
    // Without a scheme the text starts with a terminator; among equal prefixes the shorter text is first.
    EXPECT_EQ(" zzz a:b a:b.c a:b/c b:a ", order);
    EXPECT_FALSE(Uri::create("a:b") < Uri::create("a:b"));
    // The written text reads back as the same URI except in these two shapes, kept as they are.
    EXPECT_EQ("a:b", textOf(Uri::create("/a:b")));
    EXPECT_STREQ("a", Uri::create("a:b").getScheme());
    EXPECT_EQ("a.b", textOf(Uri::create("a.b.")));
    EXPECT_STREQ("b", Uri::create("a.b").getExtension());
}

TEST_F(UriAssertions, NullTextsMissingSegmentsAndUnparsedCreatesBreakTheContract)
{
    Uri uri = fullUri();
    char* none = nullptr;
    EXPECT_ASSERTION(static_cast<void>(uri.set(none, nullptr)), "NULL string given");
    EXPECT_ASSERTION(static_cast<void>(uri.set(none, 3, nullptr)), "NULL string given");
    EXPECT_ASSERTION(static_cast<void>(uri.set(none, none, none, none, none, nullptr)), "NULL scheme given");
    EXPECT_ASSERTION(static_cast<void>(uri.set("", none, none, none, none, nullptr)), "NULL path given");
    EXPECT_ASSERTION(static_cast<void>(uri.set("", "", none, none, none, nullptr)), "NULL extension given");
    EXPECT_ASSERTION(static_cast<void>(uri.set("", "", "", none, none, nullptr)), "NULL query given");
    EXPECT_ASSERTION(static_cast<void>(uri.set("", "", "", "", none, nullptr)), "NULL fragment given");
    EXPECT_ASSERTION(static_cast<void>(uri.setScheme(none, nullptr)), "NULL scheme given");
    EXPECT_ASSERTION(static_cast<void>(uri.setPath(none, nullptr)), "NULL path given");
    EXPECT_ASSERTION(static_cast<void>(uri.setExtension(none, nullptr)), "NULL extension given");
    EXPECT_ASSERTION(static_cast<void>(uri.setQuery(none, nullptr)), "NULL query given");
    EXPECT_ASSERTION(static_cast<void>(uri.setFragment(none, nullptr)), "NULL fragment given");
    EXPECT_ASSERTION(uri.computeString(none), "NULL string given");
    EXPECT_ASSERTION(uri.getPathSegment(2), "No 2th path segment.");
    EXPECT_ASSERTION(Uri().getPathSegment(1), "No 1th path segment.");
    EXPECT_EQ(fullUri(), uri);
    // create asserts on a text that does not parse.
    EXPECT_ASSERTION(Uri::create("tov:a b"), "Unexpected character in the path segment definition: ' ' #0,1.");
    EXPECT_ASSERTION(Uri::create("tov", "a", "e.x", "", ""),
                     "Unexpected character in the extension definition: '.' #1.");
    EXPECT_EQ("tov:a.e", textOf(Uri::create("tov", "a", "e", "", "")));
}

TEST(UriAssertionsThatReturn, CarryOnWithoutReadingTheNullText)
{
    tov::testing::RecordingAssertions recording;
    Uri uri = fullUri();
    EXPECT_FALSE(uri.set(nullptr, nullptr));
    EXPECT_FALSE(uri.setQuery(nullptr, nullptr));
    EXPECT_STREQ("", uri.getPathSegment(7));
    uri.computeString(nullptr);
    EXPECT_EQ(4u, recording.messages().size());
}

TEST(UriFirstPathSegment, FindsTheFirstNonEmptySegmentOrRefusesTheText)
{
    struct Case {
        const char* path;
        bool found;
        unsigned int offset;
        unsigned int length;
        int size = -1; // the text's length when negative
    };
    const Case cases[] = {
        {"", true, 0, 0},         {"/", true, 0, 0, 0},
        {"/abc", true, 1, 2, 3},  {"%41", false, 77, 77, 2}, // nothing is read past the size
        {"a\0b", true, 0, 1, 3},  {"\0", false, 77, 77, 1},
        {"/", true, 1, 0},        {"/abc/def", true, 1, 3},
        {"abc/def", true, 0, 3},  {"abc def", true, 0, 3}, // the rest is not read
        {"a%20b/c", true, 0, 5},  {"/api/debug/entities/0/contexts", true, 1, 3},
        {"//abc", false, 77, 77}, {" abc", false, 77, 77},
        {"%zz", false, 77, 77},   {"%2", false, 77, 77},
        {"/ ", false, 77, 77},
    };
    for (const Case& c : cases) {
        unsigned int offset = 77;
        unsigned int length = 77;
        const unsigned int size = static_cast<unsigned int>(c.size < 0 ? std::strlen(c.path) : c.size);
        EXPECT_EQ(c.found, Uri::retrieveFirstPathSegment(c.path, size, offset, length)) << c.path;
        EXPECT_EQ(c.offset, offset) << c.path;
        EXPECT_EQ(c.length, length) << c.path;
    }
}

TEST(UriQuery, WritesEachPairAsAChildOfOneObjectUnlessTheBuilderRefusesToBeginOrEnd)
{
    const std::string longReal = "0." + std::string(76, '0') + "5";
    struct Case {
        std::string query;
        bool parsed;
        const char* written;
    };
    const Case cases[] = {
        {"a=1&b=2.5&c=x&d", true, "<{\"a\":1,\"b\":2.5,\"c\":\"x\",\"d\":true}>"},
        {"=1", true, "<{}>"},
        {"a=1&", true, "<{\"a\":1}>"},
        {"", true, "<{}>"},
        {"a b", false, "<{\"a\":true}>"},
        {"a=&&b=c=d", true, "<{\"a\":true,\"b\":\"c=d\"}>"},
        {"n=-7&p=+3&e=1e3&h=0x10&i=inf", true, "<{\"n\":-7,\"p\":3,\"e\":1000.0,\"h\":16.0,\"i\":inf.0}>"},
        {"s=12abc&t=%20x&k?/=/?", true, "<{\"s\":\"12abc\",\"t\":\"%20x\",\"k?/\":\"/?\"}>"},
        {"big=99999999999999999999", true, "<{\"big\":9223372036854775807}>"}, // strtol saturates
        {"x=" + longReal, true, "<{\"x\":5e-77}>"},
        {"a.b=1&c=2&d.e", true, "<{\"c\":2}>"}, // no value behind a refused key, and the query goes on
        {"a=%zz", false, "<{\"a\":true}>"},
        {"a#", false, "<{\"a\":true}>"},
    };
    for (const Case& c : cases) {
        QueryRecorder builder;
        EXPECT_EQ(c.parsed, Uri::parseQuery(c.query.data(), static_cast<unsigned int>(c.query.size()), builder))
            << c.query;
        EXPECT_EQ(c.written, builder.written) << c.query;
    }
    QueryRecorder bounded;
    EXPECT_TRUE(Uri::parseQuery("a=12", 3, bounded));
    EXPECT_EQ("<{\"a\":1}>", bounded.written);
    // A builder that refuses to begin or to end fails the query.
    struct Refusing : QueryRecorder {
        bool begin() override { return false; }
    } notBegun;
    EXPECT_FALSE(Uri::parseQuery("a", 1, notBegun));
    EXPECT_EQ("", notBegun.written);
    QueryRecorder notEnded;
    notEnded.endObjectResult = false;
    EXPECT_FALSE(Uri::parseQuery("a", 1, notEnded));
    EXPECT_EQ("<{\"a\":true}>", notEnded.written);
}

TEST(UriQuery, FillsADynamicObject)
{
    const char query[] = "step=3&a.b=1&speed=2.5&name=forager&paused";
    DynamicObject object;
    DynamicObjectBuilder builder(object);
    // The builder refuses a key with a path character: that pair is left out, the others are written.
    EXPECT_TRUE(Uri::parseQuery(query, sizeof query - 1, builder));
    EXPECT_EQ(4u, object.countChildren(object.getRoot()));
    EXPECT_EQ(3, object.getInt("step"));
    EXPECT_EQ(2.5, object.getReal("speed"));
    EXPECT_STREQ("forager", object.getString("name"));
    EXPECT_TRUE(object.getBool("paused"));
}
