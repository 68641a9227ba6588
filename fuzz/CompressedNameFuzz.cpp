#include "VUtlMisc/CompressedName.h"

#include <cstdint>
#include <cstdlib>

namespace {

// How many words the shell of Windows makes of a line, -1 when a quote is left open.
int CountWords(std::string_view line)
{
    int count = 0;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        isQuoted = isQuoted != (line[i] == '"');
        count += !isQuoted && std::string_view(" ,;=").find(line[i]) != std::string_view::npos && line[i - 1] != ' ';
    }
    return isQuoted ? -1 : count + 1;
}

}  // namespace

// The input is a path. Laws: a path that may stand in a command is one word of it; a name is the end of its path, and an
// unpacked name the start of that, shorter by a suffix that is known or not at all.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view path(reinterpret_cast<const char*>(data), size);
    const compressed::Unpacker* const unpacker = compressed::FindUnpacker(path);
    const std::string_view name = compressed::BaseName(path, '/');
    const std::string_view unpacked = compressed::UnpackedName(name);
    bool isLawful = path.ends_with(name) && name.find_first_of("/\\") == name.npos && name.starts_with(unpacked) &&
                    unpacked.empty() == name.empty() && (unpacked == name || unpacker != nullptr);
    if (unpacker != nullptr && compressed::IsHarmlessInCommand(path))
        isLawful = isLawful && CountWords(compressed::CopyCommand(path, path)) == 3 &&
                   CountWords(compressed::UnpackCommand(*unpacker, "-df", path)) == 3;
    if (!isLawful)
        std::abort();
    return 0;
}
