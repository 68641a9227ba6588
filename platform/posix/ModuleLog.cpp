#include "platform/posix/ModuleLog.h"

#include "platform/Guard.h"
#include "platform/Platform.h"

#include <link.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <deque>
#include <new>
#include <utility>
#include <vector>

namespace {

using platform::LoggedModule;

// How often the loader has loaded and unloaded.
struct LoaderCounts
{
    unsigned long long loads = 0;
    unsigned long long unloads = 0;

    bool operator==(const LoaderCounts&) const = default;
};

struct ModuleLog
{
    std::mutex mutex;
    std::deque<LoggedModule> modules;  // the program first
    LoaderCounts counts;
    std::uint32_t state = 0;
};

// Made on first use and never destroyed: static destructors allocate too.
ModuleLog& Log()
{
    alignas(ModuleLog) static unsigned char place[sizeof(ModuleLog)];
    static ModuleLog* const log = new (place) ModuleLog;
    return *log;
}

int TakeCounts(dl_phdr_info* info, std::size_t, void* data)
{
    *static_cast<LoaderCounts*>(data) = {info->dlpi_adds, info->dlpi_subs};
    return 1;  // the first module tells
}

LoaderCounts CountsNow()
{
    LoaderCounts counts;
    dl_iterate_phdr(TakeCounts, &counts);
    return counts;
}

std::string AbsolutePath(const char* name)
{
    char resolved[PATH_MAX];
    const char* const path = name == nullptr || *name == '\0' ? "/proc/self/exe" : name;
    return realpath(path, resolved) != nullptr ? resolved : path;
}

LoggedModule Describe(const dl_phdr_info& info)
{
    LoggedModule module;
    module.bias = info.dlpi_addr;
    module.begin = UINTPTR_MAX;
    for (int i = 0; i < info.dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = info.dlpi_phdr[i];
        if (segment.p_type != PT_LOAD)
            continue;
        module.begin = std::min<std::uintptr_t>(module.begin, info.dlpi_addr + segment.p_vaddr);
        module.end = std::max<std::uintptr_t>(module.end, info.dlpi_addr + segment.p_vaddr + segment.p_memsz);
    }
    return module;
}

struct Listing
{
    std::vector<std::pair<LoggedModule, std::string>> modules;  // with the loader's name
    bool isComplete = true;
};

// A callback of C code: no exception may leave it.
int TakeModule(dl_phdr_info* info, std::size_t, void* data)
{
    Listing& listing = *static_cast<Listing*>(data);
    listing.isComplete = platform::Guarded(false, [&] {
        listing.modules.emplace_back(Describe(*info), info->dlpi_name != nullptr ? info->dlpi_name : "");
        return true;
    });
    return listing.isComplete ? 0 : 1;
}

bool IsSamePlace(const LoggedModule& left, const LoggedModule& right)
{
    return left.bias == right.bias && left.begin == right.begin && left.end == right.end;
}

// Ends the modules that are gone and adds the new ones, as those of a new state.
void Update(ModuleLog& log, Listing& listing)
{
    const std::uint32_t state = log.state + 1;
    for (auto& [module, name] : listing.modules) {
        module.path = AbsolutePath(name.c_str());
        if (stat(module.path.c_str(), &module.file) != 0)
            module.file = {};
        module.from = state;
    }
    std::vector<LoggedModule*> gone;
    for (LoggedModule& known : log.modules) {
        const auto isKnown = [&known](const auto& listed) {
            return IsSamePlace(listed.first, known) && listed.first.path == known.path;
        };
        const auto found = std::find_if(listing.modules.begin(), listing.modules.end(), isKnown);
        if (!known.IsLoaded())
            continue;
        if (found == listing.modules.end())
            gone.push_back(&known);
        else
            listing.modules.erase(found);
    }
    for (auto& [module, name] : listing.modules)
        log.modules.push_back(std::move(module));
    for (LoggedModule* const module : gone)
        module->until = state;
    log.state = state;
}

}  // namespace

bool platform::LoggedModule::HasSameFile() const noexcept
{
    struct stat now = {};
    return stat(path.c_str(), &now) == 0 && now.st_dev == file.st_dev && now.st_ino == file.st_ino &&
           now.st_mtim.tv_sec == file.st_mtim.tv_sec && now.st_mtim.tv_nsec == file.st_mtim.tv_nsec;
}

std::mutex& platform::ModuleLogMutex() noexcept
{
    return Log().mutex;
}

platform::LoggedModule* platform::FindLoggedModule(std::uintptr_t address, std::uint32_t state) noexcept
{
    for (LoggedModule& module : Log().modules)
        if (address >= module.begin && address < module.end && state >= module.from && state < module.until)
            return &module;
    return nullptr;
}

std::uintptr_t platform::ProgramBias() noexcept
{
    return Log().modules.empty() ? 0 : Log().modules.front().bias;
}

platform::ModulePlace platform::FindModulePlace(const void* address, std::uint32_t modules)
{
    const std::lock_guard lock(Log().mutex);
    const auto place = reinterpret_cast<std::uintptr_t>(address);
    const LoggedModule* const module = FindLoggedModule(place, modules);
    if (module == nullptr)
        return {};
    return {Widen(module->path), place - module->bias};
}

std::uint32_t platform::NoteLoadedModules() noexcept
{
    return Guarded(std::uint32_t{0}, [] {
        ModuleLog& log = Log();
        const std::lock_guard lock(log.mutex);
        const LoaderCounts counts = CountsNow();
        if (counts == log.counts)
            return log.state;
        Guarded(false, [&] {
            Listing listing;
            dl_iterate_phdr(TakeModule, &listing);
            if (listing.isComplete) {
                Update(log, listing);
                log.counts = counts;
            }
            return true;
        });
        return log.state;
    });
}
