// What the library does when the system loads and unloads it. A pinned library is never unloaded on its own, so the
// warning can be had from this function only.

#include "platform/LibraryEntry.h"
#include "support/ChildProcess.h"
#include "support/RecordingUpdater.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

using platform::LibraryEvent;

CHILD_SCENARIO(LibraryEvents)
{
    RecordingUpdater updater;
    bool succeeded = true;
    for (const bool explicitUnload : {false, true})
        for (const auto event : {LibraryEvent::ProcessAttach, LibraryEvent::ThreadAttach, LibraryEvent::ThreadDetach,
                                 LibraryEvent::ProcessDetach, LibraryEvent(99)})
            succeeded = platform::OnLibraryEvent(event, explicitUnload) == 1 && succeeded;
    for (const std::string& line : updater.TakeLines())
        std::printf("%s\n", line.c_str());
    return succeeded ? 0 : 1;
}

TEST(LibraryEvent, WarnsOfAnExplicitUnloadWhenAskedTo)
{
    for (const bool isAsked : {false, true}) {
        const std::optional<std::wstring> value = isAsked ? std::optional<std::wstring>(L"1") : std::nullopt;
        const ChildResult result = RunChild("LibraryEvents", {{L"QD_ENABLE_DLL_UNLOAD_WARNING", value}});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.output,
                  isAsked ? "console 0: 'TuvoUtil' dll is getting unloaded with application still running!\n" : "");
    }
}

}  // namespace
