#pragma once
// PropertyHolder: accessors of one property with the owner and the value behind untyped pointers, so that
// a Property reaches them without knowing the classes. Property checks the types before it calls.
//   const double* x = static_cast<const double*>(holder.get(&position));

#include <tov/utils/Export.h>
#include <tov/utils/details/AbstractPropertyHolder.h>

namespace tov {
namespace utils {
namespace details {

class TOV_UTILS_API PropertyHolder : public AbstractPropertyHolder {
public:
    // `accessors` is a bit set of Property::accessors_Get, accessors_MutableGet and accessors_Set.
    explicit PropertyHolder(unsigned char accessors);
    ~PropertyHolder() override;

    PropertyHolder* clone() const override = 0;
    // `owner` points to the owner type and the results and `value` to the value type of the holder.
    virtual const void* get(const void* owner) const = 0;
    virtual void* mutableGet(void* owner) const = 0;
    virtual void set(void* owner, const void* value) const = 0;

    unsigned char getAccessors() const;

protected:
    PropertyHolder(const PropertyHolder&) = default;
    PropertyHolder& operator=(const PropertyHolder&) = default;

private:
    unsigned char accessors;
};

} // namespace details
} // namespace utils
} // namespace tov
