#include <TuvoUtil/StringClean.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

// Laws: cleaning in place, and into the middle of the source, gives what two buffers give; doing it again changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static constexpr void (*Functions[])(const char*, char*) = {
        UtlRemoveAllBlanks,
        UtlRemoveAllEmbeddedBlanks,
        UtlRemoveEmbeddedExcessBlanks,
        UtlRemoveEmbeddedExcessTabs,
        UtlRemoveLeadingBlanks,
        UtlRemoveQuotes,
        UtlRemoveCtrlCharacters,
        [](const char* source, char* target) { UtlRemoveBlanksBesideDelimiter(source, target, ','); },
    };
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string text(input.substr(0, input.find('\0')));
    const std::size_t middle = text.size() / 2;
    for (const auto clean : Functions) {
        std::string target(text.size(), '\0'), inPlace = text, inside = text + std::string(middle, '\0');
        clean(text.c_str(), target.data());
        clean(inPlace.data(), inPlace.data());
        clean(inside.data(), inside.data() + middle);
        if (std::strcmp(target.c_str(), inPlace.c_str()) != 0 || std::strcmp(target.c_str(), &inside[middle]) != 0)
            std::abort();
        clean(target.data(), target.data());
        if (std::strcmp(target.c_str(), inPlace.c_str()) != 0)
            std::abort();
    }
    return 0;
}
