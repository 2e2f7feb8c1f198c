#pragma once
// CreatorAbstractFactory: a registry of creator objects by key. An unknown key yields a plain Creator,
// whose calls create nothing.
//   factory.registerCreator<WidgetCreator>(widgetId, logger);
//   Widget* widget = factory.getCreator(widgetId)();   // null for an unknown id

#include <tov/utils/Containers.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>

namespace tov {
namespace utils {

template <typename Key, typename Creator>
class CreatorAbstractFactory {
public:
    CreatorAbstractFactory() = default;
    ~CreatorAbstractFactory();
    CreatorAbstractFactory(const CreatorAbstractFactory&) = delete;
    CreatorAbstractFactory& operator=(const CreatorAbstractFactory&) = delete;

    bool isRegistered(const Key& key) const;
    // False, with a message, when the key is taken.
    template <typename Derived>
    [[nodiscard]] bool registerCreator(const Key& key, AbstractLogger* logger);
    // False, with a message, for an unknown key.
    [[nodiscard]] bool unregisterCreator(const Key& key, AbstractLogger* logger);
    Creator& getCreator(const Key& key);

private:
    Map<Key, Creator*> creators;
    Creator defaultCreator;
};

} // namespace utils
} // namespace tov

#include <tov/utils/CreatorAbstractFactory.inl>
