// Progress of long operations: whoever does the work tells how far it is, and any number of listeners hear of it.
//
//   class Log : public ProgressListener { ... };   // writes down what it is told
//   Log log;
//   ProgressManager::AddListener(&log);
//   double done = 0.0;
//   int stop = 0;
//   ProgressManager::InvokeListeners(25.0, L"meshing", done, stop);   // 0: log and all others were called
//   ProgressManager::RemoveListener(&log);
//
// The list belongs to the process and is not locked: register and report on one thread. It may be used from static
// constructors and destructors.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuArrayTempl.h>
#include <basutl/BuString.h>

#include <cstdint>

// What a host derives from to hear of progress. It has no virtual destructor: listeners are never deleted here.
class TUVOUTIL_API ProgressListener
{
public:
    // There is nothing to copy or move but what a host adds.
    ProgressListener() = default;
    ProgressListener(const ProgressListener&) = default;
    ProgressListener(ProgressListener&&) = default;
    ProgressListener& operator=(const ProgressListener&) = default;
    ProgressListener& operator=(ProgressListener&&) = default;

    // Receives the arguments of ProgressManager::InvokeListeners. What progress, value and flag mean is agreed within an
    // application: percent, for instance, the amount that is done, and a wish to stop. The result is ignored.
    virtual int OnProgress(const double& progress, const BuString& message, double& value, int& flag) = 0;

protected:
    ~ProgressListener() = default;
};

// The listeners of the process, in the order in which they were added. Pointers are kept, not copied and not freed: remove
// a listener before it ends.
class TUVOUTIL_API ProgressManager
{
public:
    // Adds a listener at the end; one that was added twice is called twice. Null is kept in the list, but not called.
    // Always 0, also when memory is exhausted and nothing was added.
    static int AddListener(ProgressListener* listener);

    // Removes the first entry of a listener; the order of the others stays. Always 0, also when there is none.
    static int RemoveListener(ProgressListener* listener);

    // Calls every listener with the same four arguments, each with what those before it left in `value` and `flag`; 0. 1
    // when none is registered. Listeners may be added and removed meanwhile: an added one is called as well, and the one
    // behind a listener that removed itself, or one before it, is not, this time. A listener may throw; those behind it
    // are not called then.
    static int InvokeListeners(const double& progress, const BuString& message, double& value, int& flag);

    // An instance has a list of its own that nothing uses, copied as it is; empty when memory is exhausted.
    ProgressManager() noexcept = default;
    ProgressManager(const ProgressManager& other);
    ProgressManager& operator=(const ProgressManager& other);
    ~ProgressManager();

private:
    BuArrayTempl<ProgressListener*> m_listeners;
    [[maybe_unused]] std::intptr_t m_reserved = 0;
};
