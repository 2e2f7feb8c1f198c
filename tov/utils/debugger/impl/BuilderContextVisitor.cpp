#include <tov/utils/debugger/impl/BuilderContextVisitor.h>

#include <tov/utils/JsonSerialization.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

BuilderContextVisitor::BuilderContextVisitor(AbstractObjectBuilder& builder) : builder(builder) {}

void BuilderContextVisitor::visit(const DynamicObject& content)
{
    serializeDynamicObject(content, builder);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
