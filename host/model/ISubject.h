#pragma once

#include "host/host_export.h"

#include <vector>

class ISubject;

/// Is told when a subject that it is attached to has changed.
struct HOST_EXPORT IObserver
{
    virtual ~IObserver() = default;

    virtual void subjectChanged(const ISubject& subject) = 0; ///< Must not destroy the subject.
};

/// Something that observers can watch. Observers belong to the object, not to its value: a copy has none, and
/// assignment leaves those of the target as they are.
class HOST_EXPORT ISubject
{
public:
    ISubject();
    ISubject(const ISubject& other);            ///< The copy has no observers.
    ISubject& operator=(const ISubject& other); ///< The observers stay with their subjects.
    virtual ~ISubject();

    /// Adds an observer (not owned). One that is attached already, and null, are ignored. The observer must
    /// detach itself before it dies.
    void attach(IObserver* observer);
    void detach(IObserver* observer); ///< An observer that is not attached is ignored.

    /// Tells every observer, in the order of attachment. Observers may attach and detach while they are told.
    void notify() const;

private:
    std::vector<IObserver*> observers;
};
