#pragma once

namespace tov {
namespace utils {

template <typename Key, typename Creator>
CreatorAbstractFactory<Key, Creator>::~CreatorAbstractFactory()
{
    for (auto& entry : creators) {
        TOV_DELETE(entry.second);
    }
    creators.clear();
}

template <typename Key, typename Creator>
bool CreatorAbstractFactory<Key, Creator>::isRegistered(const Key& key) const
{
    return creators.find(key) != creators.end();
}

template <typename Key, typename Creator>
template <typename Derived>
bool CreatorAbstractFactory<Key, Creator>::registerCreator(const Key& key, AbstractLogger* logger)
{
    if (isRegistered(key)) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "A creator is already registered for " << key << ".");
        return false;
    }
    creators[key] = TOV_NEW Derived();
    return true;
}

template <typename Key, typename Creator>
bool CreatorAbstractFactory<Key, Creator>::unregisterCreator(const Key& key, AbstractLogger* logger)
{
    const auto found = creators.find(key);
    if (found == creators.end()) {
        TOV_LOG_ERROR(logger, error::invalidArgument, "No creator already registered for " << key << ".");
        return false;
    }
    TOV_DELETE(found->second);
    creators.erase(found);
    return true;
}

template <typename Key, typename Creator>
Creator& CreatorAbstractFactory<Key, Creator>::getCreator(const Key& key)
{
    const auto found = creators.find(key);
    return found == creators.end() ? defaultCreator : *found->second;
}

} // namespace utils
} // namespace tov
