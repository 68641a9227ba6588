#include "platform/LibraryEntry.h"
#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>
#include <basutl/BuVariable.h>

namespace {

void AddressInThisLibrary() {}

}  // namespace

bool TuvoIsDvpWarningEnabled()
{
    static const bool isEnabled = BuVariableGetBoolean("QD_DVPWARNING_ENABLE", false);
    return isEnabled;
}

bool TuvoIsDLLUnloadWarningEnabled()
{
    static const bool isEnabled = BuVariableGetBoolean("QD_ENABLE_DLL_UNLOAD_WARNING", false);
    return isEnabled;
}

// The library pins itself, at each thread too, which does no harm: code that hosts have registered with it, and texts
// that it has handed out, stay valid until the process ends.
int platform::OnLibraryEvent(LibraryEvent event, bool explicitUnload)
{
    if (event == LibraryEvent::ProcessAttach || event == LibraryEvent::ThreadAttach)
        PinModule(reinterpret_cast<const void*>(&AddressInThisLibrary));
    if (event == LibraryEvent::ProcessDetach && explicitUnload && TuvoIsDLLUnloadWarningEnabled())
        TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"'%s' dll is getting unloaded with application still running!",
                                L"TuvoUtil");
    return 1;
}
