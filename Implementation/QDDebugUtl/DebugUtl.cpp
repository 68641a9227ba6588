#include <TuvoUtil/DebugConfig.h>

#include "QDDebugUtl/ConfigFile.h"
#include "TuvoMemory/ModuleNames.h"
#include "basutl/PathText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/TrackedFile.h>

#include <new>
#include <string>
#include <utility>

// Ahead of the static constructors of a host that holds the library as an archive: these may set it. Not every compiler
// could make it constinit.
[[gnu::init_priority(101)]] BuString QDDebugUtl::m_sBinDir;

namespace {

using debugconfig::Copy;
using debugconfig::View;

constexpr wchar_t DefaultFile[] = L"MovraDebug.config";
constexpr wchar_t DefaultModule[] = L"Vdb";
constexpr wchar_t SiteDirectory[] = L"../../Site/";  // from the binaries

enum Result : int
{
    OutOfMemory = -1,
    Success = 0,
    ReadBefore = 1,
    FileNotFound = 2
};

struct State
{
    UtlParamInfo parameters;
    BuString userDirectory;
    bool isRead = false;
};

// Made on first use and never destroyed: hosts ask in their static constructors and destructors.
State& Process()
{
    alignas(State) static unsigned char place[sizeof(State)];
    static State* const state = new (place) State;
    return *state;
}

int SetDirectory(BuString& target, const BuString& directory)
{
    return platform::Guarded<int>(OutOfMemory, [&] {
        BuString withSeparator = Copy(JoinPath(View(directory), {}, platform::Separator()));
        std::swap(target, withSeparator);
        return Success;
    });
}

bool CanBeRead(const BuString& path)
{
    std::FILE* const stream = TuvoFOpen(platform::Narrow(View(path)).c_str(), "r", modules::QDDebugUtl, __LINE__);
    if (stream != nullptr)
        TuvoFClose(stream, modules::QDDebugUtl, __LINE__);
    return stream != nullptr;
}

// The path of a configuration file; empty when there is none.
BuString FindFile(const std::wstring& name)
{
    const std::wstring userDirectory(View(Process().userDirectory));
    if (!userDirectory.empty()) {
        BuString path = Copy(userDirectory + name);
        if (CanBeRead(path))
            return path;
    }
    BuString path = Copy(std::wstring(View(QDDebugUtl::m_sBinDir)) + SiteDirectory + name);
    return CanBeRead(path) ? path : BuString();
}

}  // namespace

int QDDebugUtl::ReadConfigInfo(int reread, const BuString& module, const BuString& file, int verbose)
{
    if (reread == 0 && Process().isRead)
        return ReadBefore;
    Process().isRead = true;
    BuString path;
    BuString taker;
    const int result = platform::Guarded<int>(OutOfMemory, [&] {
        path = FindFile(file.IsEmpty() ? DefaultFile : file.GetText());
        taker = Copy(std::wstring(module.IsEmpty() ? DefaultModule : module.GetText()));
        return path.IsEmpty() ? FileNotFound : Success;
    });
    return result == Success ? Process().parameters.ReadParamsWithValues(taker, path, verbose, reread) : result;
}

int QDDebugUtl::SetUserDir(const BuString& directory)
{
    return SetDirectory(Process().userDirectory, directory);
}

int QDDebugUtl::SetBinDir(const BuString& directory)
{
    return SetDirectory(m_sBinDir, directory);
}

int QDDebugUtl::GetCustomConfigInfo(const BuString* module, const BuString& name, int* intValue, double* realValue,
                                    BuString* textValue)
{
    return Process().parameters.GetCustomConfigInfo(module, name, intValue, realValue, textValue);
}

int QDDebugUtl::GetCustomConfigIntVal(const BuString& name)
{
    int value = 0;
    GetCustomConfigInfo(nullptr, name, &value, nullptr, nullptr);
    return value;
}

int QDDebugUtl::GetModuleNames(BuTemplateArray<BuString>& names)
{
    BuTemplateArray<BuString*> files;
    return Process().parameters.GetModuleAndFileNames(names, files);
}

int QDDebugUtl::GetModuleInfo(const BuString& module, BuTemplateArray<BuString>& names,
                              BuTemplateArray<BuString>& values)
{
    return Process().parameters.GetModuleInfo(module, names, values);
}

int QDDebugUtl::IsModuleInitialized()
{
    return Process().parameters.IsModuleInitialized();
}

int QDDebugUtl::CheckAndAddParamWithValue(const BuString* module, const BuString& name, const BuString& value)
{
    return Process().parameters.CheckAndAddParamWithValue(module, name, value);
}

int QDDebugUtl::SetConfigInfo(BuString* module, const BuString& name, const BuString& value)
{
    return Process().parameters.SetConfigInfo(module, name, value);
}

int QDDebugUtl::RemoveParameter(const BuString* module, const BuString& name)
{
    return Process().parameters.RemoveParameter(module, name);
}

int QDDebugUtl::ClearModuleInfo(const BuString& module)
{
    return Process().parameters.ClearModuleInfo(module);
}

int QDDebugUtl::ClearAll()
{
    return Process().parameters.ClearAll();
}

int QDDebugUtl::SetMessageHandler(int (*handler)(int level, const char* text))
{
    return Process().parameters.SetMessageHandler(handler);
}

int QDDebugUtl::WriteInfoToFile(const BuString& module, const BuString* fileName)
{
    return Process().parameters.WriteInfoToFile(module, fileName);
}
