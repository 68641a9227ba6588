// How the system tells a shared library that it is loaded and unloaded: the entry in posix/entry or windows/entry,
// linked into the shared library alone, calls what the library defines.
#pragma once

#include <cstdint>

namespace platform {

// With the reason codes of the Windows loader. Linux knows no threads here.
enum class LibraryEvent : std::uint32_t
{
    ProcessDetach = 0,
    ProcessAttach = 1,
    ThreadAttach = 2,
    ThreadDetach = 3
};

// Defined by the library that holds the entry. `explicitUnload` tells a detach while the process goes on from one at
// its end. The result is 1, with which the library stays loaded.
int OnLibraryEvent(LibraryEvent event, bool explicitUnload);

}  // namespace platform
