// The modules that were loaded at one time or another since they were first noted.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <mutex>
#include <string>

struct backtrace_state;

namespace platform {

struct LoggedModule
{
    std::string path;  // absolute; of the program too
    std::uintptr_t bias = 0;
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    struct stat file = {};
    std::uint32_t from = 0;  // the states in which it was loaded
    std::uint32_t until = UINT32_MAX;
    backtrace_state* information = nullptr;  // of this file alone, once it was asked for

    bool IsLoaded() const noexcept { return until == UINT32_MAX; }

    // Whether the file is the one that was loaded.
    bool HasSameFile() const noexcept;
};

// Held while a module is looked at.
std::mutex& ModuleLogMutex() noexcept;

// The module that held the address in a noted state; null when none did. It stays where it is.
LoggedModule* FindLoggedModule(std::uintptr_t address, std::uint32_t state) noexcept;

// Where the program was loaded.
std::uintptr_t ProgramBias() noexcept;

}  // namespace platform
