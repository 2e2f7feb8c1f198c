#pragma once
// StringPool: keeps emptied Strings for reuse, so that getting one again allocates neither the object
// nor its buffer. Strings longer than the maximum length are destroyed rather than kept.
//   tov::utils::StringPool pool;
//   tov::utils::String* text = pool.obtain(); ...; pool.recycle(text);

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {

class TOV_UTILS_API StringPool {
public:
    StringPool();
    StringPool(unsigned int initialCount, unsigned int maximumLength);
    // Copies the maximum length only. Sharing the pooled strings, as a copy of the list of pointers
    // would, destroys each of them twice when both pools go.
    StringPool(const StringPool& other);
    StringPool& operator=(const StringPool&) = delete;
    ~StringPool();

    // The most recently recycled string, or a new one; the caller owns it.
    String* obtain();
    // Takes `string` back (it must not be null).
    void recycle(String* string);
    unsigned int size() const;

private:
    unsigned int maximumLength;
    Deque<String*> strings;
};

} // namespace utils
} // namespace tov
