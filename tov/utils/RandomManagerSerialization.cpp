#include <tov/utils/RandomManagerSerialization.h>

#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/impl/ProtobufText.h>
#include <tov/utils/impl/Random.pb.h>

#include <cstring>

namespace tov {
namespace utils {

namespace {

// The library's version; a saved form is read only by the very same one.
const unsigned int versionMajor = 0;
const unsigned int versionMinor = 4;
const unsigned int versionPatch = 0;

// A stream is restored by stepping whole rounds from its seed, so the time to restore grows with the
// count. A count from a damaged or hostile text could keep the caller busy for years (and one of 2^63 or
// more would not even fit the signed count), so counts above this one are refused: a stream that far
// along takes about half an hour to restore. Fuzzing builds lower it to keep each run short.
#if defined(FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)
const unsigned long long largestCount = 1ull << 24;
#else
const unsigned long long largestCount = 1ull << 40;
#endif

const char* const serializeFailed = "Unable to serialize the given random manager: ";

struct Texts {
    const char* parseFailed;
    const char* prefix;
    const char* missingProperties;
};
const Texts randomTexts = {
    "Unable to deserialize a random stream: ", "Error while deserializing random: ", "expected field random not found"};
const Texts managerTexts = {"Unable to deserialize a random manager: ", "Error while deserializing random manager: ",
                            "expected field randomManager not found"};
const char* const missingSeed = "expected field seed not found";
const char* const missingCount = "expected field count not found";

void fillVersion(proto::RandomVersion& version)
{
    version.set_major(versionMajor);
    version.set_minor(versionMinor);
    version.set_patch(versionPatch);
}

// Logs and gives false unless the version is exactly the library's.
bool checkVersion(const proto::RandomVersion& version, const Texts& texts, AbstractLogger* logger)
{
    if (version.major() == versionMajor && version.minor() == versionMinor && version.patch() == versionPatch) {
        return true;
    }
    TOV_LOG_ERROR(logger, error::invalidData,
                  texts.prefix << "The file originates from a version, v" << version.major() << "." << version.minor()
                               << "." << version.patch() << ", that is not compatible with the current version, v"
                               << versionMajor << "." << versionMinor << "." << versionPatch << ".");
    return false;
}

// Both saved forms report a failure to print with the manager's sentence.
char* handOut(const google::protobuf::Message& message, unsigned int& size, AbstractLogger* logger)
{
    String text;
    if (!impl::printProtobufText(message, text)) {
        // DebugString is protobuf's std::string; it only passes through the log stream.
        TOV_LOG_ERROR(logger, error::ioProblem, serializeFailed << message.DebugString());
        size = 0;
        return nullptr;
    }
    size = static_cast<unsigned int>(text.size());
    char* buffer = TOV_NEW_ARRAY(size);
    std::memcpy(buffer, text.data(), size);
    return buffer;
}

} // namespace

char* serializeRandomManager(unsigned int& size, const RandomManager& manager, AbstractLogger* logger)
{
    proto::RandomManager message;
    fillVersion(*message.mutable_version());
    message.mutable_randommanager()->set_seed(manager.getSeed());
    return handOut(message, size, logger);
}

bool deserializeRandomManager(const char* buffer, unsigned int size, RandomManager& manager, AbstractLogger* logger)
{
    proto::RandomManager message;
    if (!impl::parseProtobufText(buffer, size, message)) {
        TOV_LOG_ERROR(logger, error::invalidData, managerTexts.parseFailed << message.DebugString());
        return false;
    }
    if (!checkVersion(message.version(), managerTexts, logger)) {
        return false;
    }
    if (!message.has_randommanager()) {
        TOV_LOG_ERROR(logger, error::invalidData, managerTexts.prefix << managerTexts.missingProperties);
        return false;
    }
    if (!message.randommanager().has_seed()) {
        TOV_LOG_ERROR(logger, error::invalidData, managerTexts.prefix << missingSeed);
        return false;
    }
    manager.seed(message.randommanager().seed());
    return true;
}

char* serializeRandom(unsigned int& size, const Random& random, AbstractLogger* logger)
{
    proto::Random message;
    fillVersion(*message.mutable_version());
    message.mutable_random()->set_seed(random.getSeed());
    message.mutable_random()->set_count(static_cast<unsigned long long>(random.getCount()));
    return handOut(message, size, logger);
}

bool deserializeRandom(const char* buffer, unsigned int size, Random& random, AbstractLogger* logger)
{
    proto::Random message;
    if (!impl::parseProtobufText(buffer, size, message)) {
        TOV_LOG_ERROR(logger, error::invalidData, randomTexts.parseFailed << message.DebugString());
        return false;
    }
    if (!checkVersion(message.version(), randomTexts, logger)) {
        return false;
    }
    if (!message.has_random()) {
        TOV_LOG_ERROR(logger, error::invalidData, randomTexts.prefix << randomTexts.missingProperties);
        return false;
    }
    if (!message.random().has_seed()) {
        TOV_LOG_ERROR(logger, error::invalidData, randomTexts.prefix << missingSeed);
        return false;
    }
    Random restored(message.random().seed());
    if (!message.random().has_count()) {
        TOV_LOG_ERROR(logger, error::invalidData, randomTexts.prefix << missingCount);
        return false;
    }
    const unsigned long long count = message.random().count();
    if (count > largestCount) {
        TOV_LOG_ERROR(logger, error::invalidData,
                      randomTexts.prefix << "count " << count << " is beyond the largest that can be restored, "
                                         << largestCount << ".");
        return false;
    }
    restored.advance(static_cast<long long>(count));
    random = restored;
    return true;
}

} // namespace utils
} // namespace tov
