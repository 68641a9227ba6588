// What an updater does unless a host overrides it, and the services that ask the installed one.

#include <TuvoUtil/Messages.h>

TuvoEnvUpdater::~TuvoEnvUpdater() = default;

void TuvoEnvUpdater::WriteConsoleMessage(_TuvoMessageType, const wchar_t*, bool) {}

void TuvoEnvUpdater::WritePromptMessage(_TuvoMessageType, const wchar_t*, int) {}

_TuvoMsgBoxResponse TuvoEnvUpdater::PostMessageBox(unsigned int, const wchar_t*, const wchar_t*, bool)
{
    return TUVO_RESPONSE_NONE;
}

int TuvoEnvUpdater::CreateProcessWithOption(const char*, const char*, const _ProcessOptions&, void**, int*, bool)
{
    return 0;
}

int TuvoEnvUpdater::GetUserEnvDirectory(BuString&)
{
    return 0;
}

int TuvoEnvUpdater::KillProcess(void*)
{
    return 0;
}

int TuvoEnvUpdater::CheckProcess(void*, int*)
{
    return 0;
}

const wchar_t* TuvoEnvUpdater::GetCopyright()
{
    return nullptr;
}

const wchar_t* TuvoEnvUpdater::GetHomeDirectoryPath()
{
    return nullptr;
}

const wchar_t* TuvoEnvUpdater::GetTempDirectoryPath()
{
    return nullptr;
}

const wchar_t* TuvoEnvUpdater::GetLogDirectoryPath()
{
    return nullptr;
}

int VEnvCreateProcessWithOption(const char* command, const char* arguments, const _ProcessOptions& options,
                                void** processHandle, int* processId, bool flag)
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr
               ? -1
               : updater->CreateProcessWithOption(command, arguments, options, processHandle, processId, flag);
}

int VEnvKillProcess(void* processHandle)
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr ? -1 : updater->KillProcess(processHandle);
}

int VEnvCheckProcess(void* processHandle, int* status)
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr ? -1 : updater->CheckProcess(processHandle, status);
}

// Kept: callers test for 0, and updaters have always answered as they liked.
int VEnvGetUserEnvDirectory(BuString& directory)
{
    if (TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater())
        updater->GetUserEnvDirectory(directory);
    return 0;
}

const wchar_t* VEnvGetCopyright()
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr ? nullptr : updater->GetCopyright();
}

const wchar_t* VEnvGetHomeDirectoryPath()
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr ? nullptr : updater->GetHomeDirectoryPath();
}

const wchar_t* VEnvGetTempDirectoryPath()
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr ? nullptr : updater->GetTempDirectoryPath();
}

const wchar_t* VEnvGetLogDirectoryPath()
{
    TuvoEnvUpdater* const updater = TuvoEnvUpdater::GetUpdater();
    return updater == nullptr ? nullptr : updater->GetLogDirectoryPath();
}
