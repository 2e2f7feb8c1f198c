#pragma once

namespace tov {
namespace utils {

// Reached only through the exported statics of the class that uses it (Facilities::instance ...),
// so the library holds the one pointer.
template <typename T>
T* Singleton<T>::instance = nullptr;

template <typename T>
void Singleton<T>::assertUnset()
{
    TOV_ASSERT(instance == nullptr, "trying to overwrite singleton instance");
}

template <typename T>
void Singleton<T>::set(T* newInstance)
{
    instance = newInstance;
}

template <typename T>
T& Singleton<T>::get()
{
    TOV_ASSERT(instance != nullptr, "accessing uninitialized singleton");
    return *instance;
}

template <typename T>
bool Singleton<T>::isSet()
{
    return instance != nullptr;
}

template <typename T>
void Singleton<T>::destroy()
{
    // The instance is still reachable while it is destroyed: its members may look it up on the way out.
    TOV_DELETE(instance);
    instance = nullptr;
}

} // namespace utils
} // namespace tov
