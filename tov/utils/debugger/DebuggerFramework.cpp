#include <tov/utils/debugger/DebuggerFramework.h>

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/debugger/AbstractContext.h>
#include <tov/utils/debugger/ExecutionController.h>
#include <tov/utils/debugger/impl/BuilderContextVisitor.h>
#include <tov/utils/debugger/impl/InspectionFrameworkImpl.h>
#include <tov/utils/debugger/impl/LocationText.h>
#include <tov/utils/debugger/impl/PathSegment.h>


namespace tov {
namespace utils {
namespace debugger {

using impl::PathSegment;

DebuggerFramework::DebuggerFramework(impl::InspectionFrameworkImpl& framework)
    : AbstractEngine("debug", false), framework(framework)
{
}

DebuggerFramework::~DebuggerFramework() = default;

ExecutionController& DebuggerFramework::getExecutionController()
{
    return framework.getExecutionController();
}

const ExecutionController& DebuggerFramework::getExecutionController() const
{
    return framework.getExecutionController();
}

unsigned int DebuggerFramework::countEntities() const
{
    return framework.countEntities();
}

const unsigned int* DebuggerFramework::getEntities() const
{
    return framework.getEntities();
}

unsigned int DebuggerFramework::countContexts(unsigned int entity) const
{
    return framework.countContexts(entity);
}

const AbstractContext* DebuggerFramework::getContext(unsigned int entity, unsigned int index,
                                                     AbstractLogger* logger) const
{
    return framework.getContext(entity, index, logger);
}

bool DebuggerFramework::isSuspended() const
{
    return getExecutionController().isSuspended();
}

bool DebuggerFramework::suspend()
{
    if (isSuspended()) {
        return false;
    }
    framework.suspend();
    return true;
}

bool DebuggerFramework::suspendEntity(unsigned int entity)
{
    if (isSuspended()) {
        return false;
    }
    return framework.suspendEntity(entity);
}

unsigned int DebuggerFramework::getSuspendedEntity() const
{
    if (!isSuspended()) {
        return invalidEntity;
    }
    return framework.getSuspendedEntity();
}

bool DebuggerFramework::resume()
{
    const bool wasSuspended = isSuspended();
    framework.resume();
    return wasSuspended;
}

bool DebuggerFramework::stepIn()
{
    return stepWhileSuspended(&impl::InspectionFrameworkImpl::stepIn);
}

bool DebuggerFramework::stepOut()
{
    return stepWhileSuspended(&impl::InspectionFrameworkImpl::stepOut);
}

bool DebuggerFramework::stepOver()
{
    return stepWhileSuspended(&impl::InspectionFrameworkImpl::stepOver);
}

bool DebuggerFramework::stepWhileSuspended(Step step)
{
    if (!isSuspended()) {
        return false;
    }
    (framework.*step)();
    return true;
}

resources::Status DebuggerFramework::retrieveResource(const char* path, unsigned int length, const DynamicObject*,
                                                      AbstractObjectBuilder& builder) const
{
    // The size of the path decides, not the segment: "/" lists the entities.
    if (length == 0) {
        return retrieveGeneralInfo(builder);
    }
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    if (segment.selects("entities")) {
        return retrieveEntitiesResources(path + segment.rest, length - segment.rest, builder);
    }
    if (segment.selects("resume") || segment.selects("suspend")) {
        return retrieveIsSuspended(builder);
    }
    return resources::NotFound;
}

// The bare path resumes, since an empty segment selects the first command tried.
resources::Status DebuggerFramework::createResource(const char* path, unsigned int length, const DynamicObject* query,
                                                    AbstractObjectBuilder& builder)
{
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    if (segment.selects("resume")) {
        return createNoParametersCommand(builder, &DebuggerFramework::resume);
    }
    if (segment.selects("stepin")) {
        return createNoParametersCommand(builder, &DebuggerFramework::stepIn);
    }
    if (segment.selects("stepout")) {
        return createNoParametersCommand(builder, &DebuggerFramework::stepOut);
    }
    if (segment.selects("stepover")) {
        return createNoParametersCommand(builder, &DebuggerFramework::stepOver);
    }
    if (segment.selects("suspend")) {
        return createSuspendCommand(builder, query);
    }
    return resources::NotFound;
}

resources::Status DebuggerFramework::deleteResource(const char*, unsigned int, const DynamicObject*,
                                                    AbstractObjectBuilder&)
{
    return resources::NotFound;
}

void DebuggerFramework::doDisable(bool& enabled)
{
    framework.resume();
    AbstractEngine::doDisable(enabled);
}

resources::Status DebuggerFramework::retrieveGeneralInfo(AbstractObjectBuilder& builder) const
{
    const bool written = builder.begin() && builder.beginObject() && builder.objectChild("name", 4) &&
                         builder.string("default", 7) && builder.objectChild("description", 11) &&
                         builder.string("", 0) && builder.endObject() && builder.end();
    return written ? resources::Ok : resources::Error;
}

resources::Status DebuggerFramework::retrieveEntitiesResources(const char* path, unsigned int length,
                                                               AbstractObjectBuilder& builder) const
{
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    if (segment.length == 0) {
        return retrieveEntities(builder);
    }
    unsigned int entity = 0;
    if (!segment.readWholeNumber(entity)) {
        return resources::NotFound;
    }
    return retrieveEntityResources(entity, path + segment.rest, length - segment.rest, builder);
}

// QUIRK(entity-ids-dense): the number is taken as the entity's id once it is below the count, not
// looked up in the list: ids are expected dense from 0, as the hosts' rules ask (README, the debugger).
resources::Status DebuggerFramework::retrieveEntityResources(unsigned int entity, const char* path, unsigned int length,
                                                             AbstractObjectBuilder& builder) const
{
    if (entity >= countEntities()) {
        return resources::NotFound;
    }
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    if (segment.length == 0) {
        return retrieveEntity(entity, builder);
    }
    if (segment.selects("contexts")) {
        return retrieveEntityContextsResources(entity, path + segment.rest, length - segment.rest, builder);
    }
    return resources::NotFound;
}

resources::Status DebuggerFramework::retrieveEntityContextsResources(unsigned int entity, const char* path,
                                                                     unsigned int length,
                                                                     AbstractObjectBuilder& builder) const
{
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    if (segment.length == 0) {
        return retrieveEntityContexts(entity, builder);
    }
    unsigned int index = 0;
    if (!segment.readWholeNumber(index)) {
        return resources::NotFound;
    }
    return retrieveEntityContext(entity, index, builder);
}

resources::Status DebuggerFramework::retrieveEntities(AbstractObjectBuilder& builder) const
{
    const unsigned int count = countEntities();
    const unsigned int* entities = getEntities();
    if (!builder.begin() || !builder.beginArray()) {
        return resources::Error;
    }
    for (unsigned int i = 0; i < count; ++i) {
        if (!builder.arrayChild() || !builder.beginObject() || !builder.objectChild("index") ||
            !builder.integer(entities[i]) || !builder.endObject()) {
            return resources::Error;
        }
    }
    return builder.endArray() && builder.end() ? resources::Ok : resources::Error;
}

resources::Status DebuggerFramework::retrieveEntity(unsigned int entity, AbstractObjectBuilder& builder) const
{
    TOV_ASSERT(entity < countEntities(), "No entity #" << entity);
    const bool written = builder.begin() && builder.beginObject() && builder.objectChild("contexts") &&
                         writeContexts(entity, builder) && builder.endObject() && builder.end();
    return written ? resources::Ok : resources::Error;
}

resources::Status DebuggerFramework::retrieveEntityContexts(unsigned int entity, AbstractObjectBuilder& builder) const
{
    TOV_ASSERT(entity < countEntities(), "No entity #" << entity);
    const bool written = builder.begin() && writeContexts(entity, builder) && builder.end();
    return written ? resources::Ok : resources::Error;
}

bool DebuggerFramework::writeContexts(unsigned int entity, AbstractObjectBuilder& builder) const
{
    if (!builder.beginArray()) {
        return false;
    }
    const unsigned int depth = countContexts(entity);
    for (unsigned int i = 0; i < depth; ++i) {
        const AbstractContext* context = getContext(entity, i, nullptr);
        // A factory may have pushed a null frame: it has no location, and the listing stops before it.
        if (context == nullptr) {
            break;
        }
        const impl::LocationText location(context->getLocation());
        if (!builder.arrayChild() || !builder.beginObject() || !builder.objectChild("index") || !builder.integer(i) ||
            !builder.objectChild("location") || !builder.string(location.get(), location.getLength()) ||
            !builder.endObject()) {
            return false;
        }
    }
    return builder.endArray();
}

resources::Status DebuggerFramework::retrieveEntityContext(unsigned int entity, unsigned int index,
                                                           AbstractObjectBuilder& builder) const
{
    TOV_ASSERT(entity < countEntities(), "No entity #" << entity);
    if (index >= countContexts(entity)) {
        return resources::NotFound;
    }
    const AbstractContext* context = getContext(entity, index, nullptr);
    TOV_ASSERT(context != nullptr, "No context for entity #" << entity << " at index " << index);
    if (context == nullptr) {
        return resources::NotFound;
    }
    impl::BuilderContextVisitor visitor(builder);
    context->accept(visitor);
    return resources::Ok;
}

// QUIRK(suspended-entity-stays): the entity is read as it stands, without the lock, so it shows the
// last stop even while running, whatever a command is doing meanwhile.
resources::Status DebuggerFramework::retrieveIsSuspended(AbstractObjectBuilder& builder) const
{
    const bool written = builder.begin() && builder.beginObject() && builder.objectChild("suspended") &&
                         builder.boolean(isSuspended()) && builder.objectChild("entity") &&
                         builder.integer(static_cast<long long>(framework.peekSuspendedEntity())) &&
                         builder.endObject() && builder.end();
    return written ? resources::Ok : resources::Error;
}

resources::Status DebuggerFramework::createNoParametersCommand(AbstractObjectBuilder& builder, Command command)
{
    if (!(this->*command)()) {
        return resources::Error;
    }
    builder.begin();
    builder.null();
    builder.end();
    return resources::Ok;
}

// Only a positive number names an entity, so entity 0 cannot be suspended alone from here.
resources::Status DebuggerFramework::createSuspendCommand(AbstractObjectBuilder& builder, const DynamicObject* data)
{
    unsigned int entity = invalidEntity;
    if (data != nullptr) {
        const unsigned int property = data->getProperty("entity");
        // A null value counts as compatible with an integer but reading it asserts; the body comes from
        // a client, so null is taken as no entity, as any other value that is no number.
        if (property != 0 && data->getType(property) != type::null && data->isTypeCompatible(property, type::integer)) {
            const long long value = data->getInt(property);
            // QUIRK(suspend-entity-zero): zero and negative values name no entity, so entity 0 cannot be
            // suspended alone; {"entity":0} stops every entity, as the README tells clients.
            if (value > 0) {
                entity = static_cast<unsigned int>(value);
            }
        }
    }
    if (entity == invalidEntity) {
        return createNoParametersCommand(builder, &DebuggerFramework::suspend);
    }
    if (!suspendEntity(entity)) {
        return resources::Error;
    }
    builder.begin();
    builder.null();
    builder.end();
    return resources::Ok;
}

} // namespace debugger
} // namespace utils
} // namespace tov
