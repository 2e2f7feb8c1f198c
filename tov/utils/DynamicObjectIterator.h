#pragma once
// DynamicObjectIterator: visits a property and the properties below it in trie order (a property before
// its descendants, siblings by the signed bytes of their names, array keys as text: [0] [10] [1] ...),
// down to a depth, in time linear in the nodes visited. The object must stay unchanged meanwhile.
//   for (DynamicObjectIterator it(object, object.getProperty("a"), 0); !it.end(); it.next()) {
//       use(it.getKey(), it.getProperty());   // "" for `a` itself, then the names of its children
//   }

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class DynamicObject;

class TOV_UTILS_API DynamicObjectIterator {
public:
    // `property` 0 stands for the root. Without a depth the walk has no limit; with 0 it gives the
    // property and its children, with 1 also their children, and so on.
    DynamicObjectIterator(const DynamicObject& object, unsigned int property);
    DynamicObjectIterator(const DynamicObject& object, unsigned int property, unsigned int maxDepth);

    bool end() const;
    unsigned int getProperty() const;
    // The path below the start property, terminated; a child's is its plain name.
    const char* getKey() const;
    unsigned int getKeyLength() const;
    const DynamicObject& getDynamicObject() const;
    DynamicObjectIterator& next();

private:
    void initializeTraversal(unsigned int start);
    unsigned int findNextChildFromParent(unsigned int current);

    Vector<unsigned int> stack;
    Vector<char> key;
    const DynamicObject* object;
    unsigned int startProperty;
    unsigned int startValue;
    unsigned int property;
    unsigned int maxDepth;
    unsigned int depth;
};

} // namespace utils
} // namespace tov
