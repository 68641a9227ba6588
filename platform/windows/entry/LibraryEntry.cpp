#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include "platform/LibraryEntry.h"

#include <windows.h>

// `reserved` is null when the library was freed, not null when the process ends.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID reserved)
{
    const bool explicitUnload = reason == DLL_PROCESS_DETACH && reserved == nullptr;
    return platform::OnLibraryEvent(static_cast<platform::LibraryEvent>(reason), explicitUnload);
}
