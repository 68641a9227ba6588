#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>

#include <new>
#include <string>

namespace {

struct DirectorySettings
{
    BuString user;
    BuString temporary;
};

// Made on first use and never destroyed: hosts ask from their static constructors and destructors.
DirectorySettings& Settings()
{
    alignas(DirectorySettings) static unsigned char place[sizeof(DirectorySettings)];
    static DirectorySettings* const settings = new (place) DirectorySettings;
    return *settings;
}

}  // namespace

void VEnvSetUserDirectory(const wchar_t* directory)
{
    if (directory != nullptr)
        Settings().user = directory;
}

const wchar_t* VEnvGetUserDirectory()
{
    return Settings().user;
}

void VEnvSetTempPath(const wchar_t* path)
{
    if (path != nullptr)
        Settings().temporary = path;
}

void VEnvGetTempPath(BuString& path)
{
    path = BuString(Settings().temporary);  // moved in, so that exhausted memory leaves no other path there
    if (Settings().temporary.IsEmpty())
        path = platform::Guarded(BuString(), [] { return BuString(platform::TemporaryDirectory().c_str()); });
}

BuString TuvoGetAppDirectory()
{
    static const char addressInThisLibrary = 0;
    return platform::Guarded(BuString(), [] {
        std::wstring path = platform::ModuleFile(&addressInThisLibrary);
        path.resize(path.rfind(platform::Separator()) + 1);
        return BuString(path.c_str());
    });
}
