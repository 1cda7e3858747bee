#include "host/model/ISubject.h"

#include <algorithm>

ISubject::ISubject() = default;

ISubject::ISubject(const ISubject& /*other*/)
{}

ISubject& ISubject::operator=(const ISubject& /*other*/)
{
    return *this;
}

ISubject::~ISubject() = default;

void ISubject::attach(IObserver* observer)
{
    if (observer && std::find(observers.begin(), observers.end(), observer) == observers.end())
        observers.push_back(observer);
}

void ISubject::detach(IObserver* observer)
{
    observers.erase(std::remove(observers.begin(), observers.end(), observer), observers.end());
}

void ISubject::notify() const
{
    const std::vector<IObserver*> attached = observers;
    for (IObserver* observer : attached) {
        // One that has been told before may have detached it, and destroyed it.
        if (std::find(observers.begin(), observers.end(), observer) != observers.end())
            observer->subjectChanged(*this);
    }
}
