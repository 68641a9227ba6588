#include <TuvoUtil/DebugConfig.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <utility>
#include <vector>

// Law: a file is read as fgets reads it in pieces of 1023 bytes, and each piece is split at its first colon. Carriage
// returns are left out, which the systems take differently.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static const std::string path =
        (std::filesystem::temp_directory_path() / std::to_string(std::random_device{}())).string();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    for (std::size_t i = 0; i < size; ++i)
        if (data[i] != '\r')
            std::putc(data[i], file);
    file = std::freopen(path.c_str(), "r", file);
    std::vector<std::pair<BuString, BuString>> expected;
    for (char line[1024]; std::fgets(line, sizeof line, file) != nullptr;) {
        line[std::strcspn(line, "\n")] = '\0';
        char* const colon = std::strchr(line, ':');
        const char* const value = colon != nullptr ? colon + 1 + std::strspn(colon + 1, " \t\v\f") : "";
        if (*line == '#' || *value == '\0')
            continue;
        for (char* end = colon; (*end = '\0', end > line) && end[-1] == ' ';)
            --end;
        const auto hasName = [&](const auto& parameter) { return parameter.first == BuString(line); };
        const auto same = std::find_if(expected.begin(), expected.end(), hasName);
        (same != expected.end() ? *same : expected.emplace_back()) = {line, value};
    }
    std::fclose(file);
    UtlParamInfo parameters;
    BuTemplateArray<BuString> names, values;
    const int result =
        parameters.ReadParamsWithValues(L"M", path.c_str(), 0, 0) + parameters.GetModuleInfo(L"M", names, values);
    bool isSame = result == 0 && static_cast<std::size_t>(names.GetCount()) == expected.size();
    for (int i = 0; isSame && i < names.GetCount(); ++i)
        isSame = std::pair(names[i], values[i]) == expected[static_cast<std::size_t>(i)];
    if (std::remove(path.c_str()) != 0 || !isSame)
        std::abort();
    return 0;
}
