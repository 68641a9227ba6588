// The memory mode, and what hosts set for the leak checker.

#include "TuvoMemory/MemoryState.h"

#include <TuvoUtil/Memory.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuMessage.h>
#include <basutl/BuVariable.h>

using memory::g_state;

namespace {

constexpr wchar_t NoVariableWarning[] =
    L"Warning: Env variable MOVRA_MEM_DEBUG is not set! Good to set this variable and run for stable leak checking. If "
    L"you want to do that, please keep the following 2 lines in the script which runs Quenda then run\n"
    L"      set DISABLE_VX_HEAP=1\n"
    L"      set MOVRA_MEM_DEBUG=1\n";

int KnownMode(int mode)
{
    if (mode < 0)
        return 0;
    return mode > 4 ? 2 : mode;
}

}  // namespace

int VMemoryGetMode()
{
    return g_state.mode;
}

int VMemorySetMode(int mode, int second)
{
    if ((mode == 2 || mode == 3) && BuVariableGetValue("MOVRA_MEM_DEBUG") == nullptr)
        BuOutputMessage(1, BuLocalizeStringExW(NoVariableWarning, 0));
    if (g_state.mode == 4 && mode == 0)
        return 1;
    const int previous = g_state.mode;
    g_state.second = second;
    g_state.mode = KnownMode(mode);
    memory::DropShortcut();
    // Kept: compared with the mode asked for, so asking for 7 drops the records although the mode stays 2.
    if (previous != mode && g_state.freeRecordTable != nullptr)
        g_state.freeRecordTable();
    return previous;
}

int MovraIsMemCheckActive()
{
    return memory::IsActive() ? 1 : 0;
}

int VMemSetGetFuncInfoPtr(int (*provider)(int* depth, char*** frames))
{
    g_state.callStackProvider = provider;
    memory::DropShortcut();
    return 0;
}

int VMemoryGetCallStack(char*** frames)
{
    if (g_state.callStackProvider == nullptr)
        return 0;
    int depth = -1;
    g_state.callStackProvider(&depth, frames);
    return depth;
}

int VMemoryResolveCallStack(int depth, char*** frames)
{
    if (g_state.callStackProvider == nullptr || depth < 1 || frames == nullptr)
        return depth;
    int newDepth = depth;
    char** newFrames = *frames;
    g_state.callStackProvider(&newDepth, &newFrames);
    *frames = newFrames;
    return newDepth;
}

void VMemLeakChkSetFile(const char* file)
{
    g_state.defaultFile = file;
}
