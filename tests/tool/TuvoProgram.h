// The built tuvo, run as its users run it.
#pragma once

#include "platform/Platform.h"
#include "support/ChildProcess.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

inline bool OnWindows()
{
    return platform::Separator() == L'\\';
}

// The folder of this test program, which is that of tuvo and of the catalogue too.
inline std::wstring BuildFolder()
{
    static const char anchor = 0;
    const std::wstring file = platform::ModuleFile(&anchor);
    return file.substr(0, file.find_last_of(L"/\\") + 1);
}

// Runs tuvo with the arguments of a line, which blanks divide but where they stand in single quotes.
inline ChildResult Tuvo(const std::string& line, const std::string& input = {}, const ChildVariables& variables = {})
{
    std::vector<std::wstring> all = {BuildFolder() + (OnWindows() ? L"tuvo.exe" : L"tuvo")};
    for (std::size_t at = line.find_first_not_of(' '); at < line.size(); at = line.find_first_not_of(' ', at)) {
        const bool isQuoted = line[at] == '\'';
        const std::size_t start = at + (isQuoted ? 1 : 0);
        const std::size_t end = std::min(line.size(), line.find(isQuoted ? '\'' : ' ', start));
        all.push_back(platform::Widen(line.substr(start, end - start)));
        at = end + (isQuoted ? 1 : 0);
    }
    ChildVariables clean = {{L"TUVO_CATALOGUE", std::nullopt}, {L"BU_LOG_LEVEL", std::nullopt}};
    clean.insert(clean.end(), variables.begin(), variables.end());
    return RunAndCapture(all, clean, input);
}

inline bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
