#include <tov/utils/ErrorType.h>

namespace tov {
namespace utils {

ErrorType::ErrorType() : caption("no error") {}

ErrorType::ErrorType(const Uuid& id, const char* caption) : id(id), caption(caption) {}

const Uuid& ErrorType::getId() const
{
    return id;
}

const char* ErrorType::getCaption() const
{
    return caption.c_str();
}

bool ErrorType::operator==(const ErrorType& other) const
{
    return id == other.id;
}

bool ErrorType::operator!=(const ErrorType& other) const
{
    return id != other.id;
}

// Built at load in this order.
// QUIRK(error-captions): two captions differ from their names (fileFormatCorrupted, threadError); log
// lines carry the caption, so it stays as hosts have read it.
namespace error {
const ErrorType invalidArgument(Uuid::create("06cb0f65-5199-4c7b-8146-ae6a1d3f97c1"), "invalid argument");
const ErrorType invalidData(Uuid::create("fa72e664-42da-42cb-b468-bc39a17b8169"), "invalid data");
const ErrorType invalidOperation(Uuid::create("522e4231-e0d8-43f5-988b-801f85051f1a"), "invalid operation");
const ErrorType invalidName(Uuid::create("0d6b0120-d8be-4ee2-b9a9-95a352b2b20d"), "invalid name");
const ErrorType invalidConfiguration(Uuid::create("67209d11-51b9-4a8d-b4a3-deaed9cc7c1d"), "invalid configuration");
const ErrorType contractViolation(Uuid::create("2027c763-d428-4c76-811b-44483d87ba11"), "contract violation");
const ErrorType fileNotFound(Uuid::create("8fa76401-b932-4503-8981-43eb7bf0ad17"), "file not found");
const ErrorType fileFormatCorrupted(Uuid::create("e44c0de2-0307-4e93-b7c5-3e9327e0c623"), "corrupted file format");
const ErrorType ioProblem(Uuid::create("a05ee22a-28e0-428d-a592-265a9d02424c"), "io problem");
const ErrorType threadError(Uuid::create("7e916bba-da95-4b5d-bf49-fa4328c4afe9"), "thread problem");
const ErrorType userCodeException(Uuid::create("93823762-6c85-47b2-95fb-4f17cbc8be00"), "user code exception");
const ErrorType stringHashCollision(Uuid::create("eed2b910-e118-424f-81f3-f1316cd7d8c1"), "string hash collision");
const ErrorType unknownError(Uuid::create("f683925c-fe33-4c61-82ca-ac534db1e0d5"), "unknown error");
} // namespace error

} // namespace utils
} // namespace tov
