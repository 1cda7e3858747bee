#pragma once

#include "host/host_export.h"

#include <memory>

namespace qor {

/// Base of objects that can be watched by a CGuardedPtr. A copy is a new object with guards of its own. Not
/// for use from several threads.
class HOST_EXPORT CGuardedObject
{
public:
    CGuardedObject();
    CGuardedObject(const CGuardedObject& other);            ///< The copy has no guards.
    CGuardedObject& operator=(const CGuardedObject& other); ///< The guards stay with their objects.
    virtual ~CGuardedObject();

private:
    template<class T>
    friend class CGuardedPtr;

    /// True as long as the object lives. Made on first use: most of a model's items are never guarded.
    std::shared_ptr<const bool> getAliveFlag() const;

    mutable std::shared_ptr<bool> aliveFlag;
};

/// Pointer to a CGuardedObject (not owned) that becomes null when the object dies.
template<class T>
class CGuardedPtr
{
public:
    CGuardedPtr() = default;

    /// Points to @p guardedObject, which may be null.
    CGuardedPtr(T* guardedObject)
        : object(guardedObject)
        , aliveFlag(guardedObject ? guardedObject->getAliveFlag() : nullptr)
    {}

    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the flag tells whether the object lives.
    /// Null once the object is destroyed.
    T* get() const { return aliveFlag && *aliveFlag ? object : nullptr; }
    /// As get().
    T* operator->() const { return get(); }
    /// The object must be there.
    T& operator*() const { return *get(); }
    /// Whether the object is there.
    explicit operator bool() const { return get() != nullptr; }

private:
    T* object = nullptr;
    std::shared_ptr<const bool> aliveFlag;
};

} // namespace qor
