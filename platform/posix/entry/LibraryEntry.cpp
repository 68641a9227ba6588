#include "platform/LibraryEntry.h"

namespace {

[[gnu::constructor]] void OnLoad()
{
    platform::OnLibraryEvent(platform::LibraryEvent::ProcessAttach, false);
}

// A library linked with -z nodelete runs this at the end of the process only.
[[gnu::destructor]] void OnUnload()
{
    platform::OnLibraryEvent(platform::LibraryEvent::ProcessDetach, false);
}

}  // namespace
