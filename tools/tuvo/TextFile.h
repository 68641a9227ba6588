// Whole texts from files and standard input.
#pragma once

#include <optional>
#include <string>

namespace tool {

// The text of a file; "-" means standard input. Throws Failure when it cannot be read.
std::string ReadText(const std::string& path);

// The same for a file that need not be there.
std::optional<std::string> ReadTextIfExists(const std::string& path);

// What a path is called in messages.
std::string SourceName(const std::string& path);

// Tells that a file could not be read, and why the system's last call failed.
[[noreturn]] void FailToRead(const std::string& path);

}  // namespace tool
