#pragma once
// AbstractContextVisitor: receives the content of a frame, which a frame hands over as one DynamicObject.
//   class Dump : public AbstractContextVisitor { void visit(const DynamicObject& o) override { serializeDynamicObject(o, b); } };

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class DynamicObject;

namespace debugger {

class TOV_UTILS_API AbstractContextVisitor {
public:
    AbstractContextVisitor() = default;
    AbstractContextVisitor(const AbstractContextVisitor&) = default;
    AbstractContextVisitor& operator=(const AbstractContextVisitor&) = default;
    virtual ~AbstractContextVisitor();

    virtual void visit(const DynamicObject& content) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
