#include <TuvoUtil/StringClean.h>

#include "tests/support/Texts.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// The input is a length and a path. Laws: a path cut short has at most that many bytes and loses no more than it must; a
// name without invalid characters stays as it is, and none are left.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t room = size > 0 ? data[0] : 0;
    const std::string_view rest = input.substr(std::min<std::size_t>(1, size));
    const std::string path(rest.substr(0, rest.find('\0')));
    const std::string cut = Taken(UtlCutShortFileName(path.c_str(), static_cast<int>(room)));
    if (path.size() <= room ? cut != path : cut.size() > room || cut.size() + 3 < room)
        std::abort();
    const std::string name = Taken(UtlReplaceInvalidCharsInFileName(path.c_str(), '_'));
    if (name.size() != path.size() || name.find_first_of("<>:\"/\\|?*\n") != std::string::npos ||
        Taken(UtlReplaceInvalidCharsInFileName(name.c_str(), '\0')) != name)
        std::abort();
    return 0;
}
