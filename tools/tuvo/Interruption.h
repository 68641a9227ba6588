// Ctrl-C and the like while there is something to clean up.
//
//   const InterruptionScope scope;
//   for (...) {
//       ThrowIfInterrupted();   // what is half done is cleaned up by the destructors on the way out
//       ...
//   }
#pragma once

namespace tool {

// While one lives, SIGINT and SIGTERM (and SIGHUP, where there is one) no longer end the program but are noted, unless
// they were ignored. A second one of a kind does end it. For one thread.
class InterruptionScope
{
public:
    InterruptionScope();
    ~InterruptionScope();
    InterruptionScope(const InterruptionScope&) = delete;
    InterruptionScope& operator=(const InterruptionScope&) = delete;
};

// Throws Failure when a signal was noted; the exit code is 128 and its number, as shells have it. Costs next to nothing.
void ThrowIfInterrupted();

}  // namespace tool
