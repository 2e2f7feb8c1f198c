#pragma once
// BuilderContextVisitor: writes the content that a frame shows into an object builder, as the answer of
// the debugger's resource for one context. Private to the library.
//   BuilderContextVisitor visitor(builder);
//   context->accept(visitor);   // builder received begin, the object, end

#include <tov/utils/debugger/AbstractContextVisitor.h>

namespace tov {
namespace utils {

class AbstractObjectBuilder;

namespace debugger {
namespace impl {

class BuilderContextVisitor : public AbstractContextVisitor {
public:
    explicit BuilderContextVisitor(AbstractObjectBuilder& builder);

    // A failed write leaves the document short; the caller answers all the same.
    void visit(const DynamicObject& content) override;

private:
    AbstractObjectBuilder& builder;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
