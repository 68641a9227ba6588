#include <TuvoUtil/Progress.h>

#include <algorithm>
#include <new>

namespace {

using ListenerArray = BuArrayTempl<ProgressListener*>;

// Made on first use and never destroyed: hosts remove listeners in their static destructors too.
ListenerArray& Listeners()
{
    alignas(ListenerArray) static unsigned char place[sizeof(ListenerArray)];
    static ListenerArray* const listeners = new (place) ListenerArray;
    return *listeners;
}

}  // namespace

int ProgressManager::AddListener(ProgressListener* listener)
{
    Listeners().Add(listener);
    return 0;
}

int ProgressManager::RemoveListener(ProgressListener* listener)
{
    ListenerArray& listeners = Listeners();
    ProgressListener** const found = std::find(listeners.begin(), listeners.end(), listener);
    if (found != listeners.end())
        listeners.RemoveAt(static_cast<int>(found - listeners.begin()));
    if (listeners.IsEmpty())
        ListenerArray().Swap(listeners);  // gives its memory back
    return 0;
}

int ProgressManager::InvokeListeners(const double& progress, const BuString& message, double& value, int& flag)
{
    ListenerArray& listeners = Listeners();
    if (listeners.IsEmpty())
        return 1;
    for (int i = 0; i < listeners.GetCount(); ++i)
        if (ProgressListener* const listener = listeners[i]; listener != nullptr)
            listener->OnProgress(progress, message, value, flag);
    return 0;
}

ProgressManager::ProgressManager(const ProgressManager& other) = default;
ProgressManager& ProgressManager::operator=(const ProgressManager& other) = default;
ProgressManager::~ProgressManager() = default;
