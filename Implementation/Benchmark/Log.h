// What all texts for the log share.
#pragma once

#include <basutl/BuLocalize.h>
#include <basutl/BuLogger.h>

namespace tuvo::benchmark {

enum LogLevel : int
{
    LogError = 2,
    LogReport = 6
};

inline constexpr wchar_t Indentation[] = L"   ";

// A text between two dashed lines.
inline void LogHeading(const wchar_t* text) noexcept
{
    constexpr wchar_t dashes[] = L"----------------------------------\n";
    BuLogger& logger = BuLogger::GetInstance();
    logger.LogText(LogReport, dashes);
    logger.LogText(LogReport, BuLocalizeStringExW(text, 0));
    logger.LogText(LogReport, dashes);
}

}  // namespace tuvo::benchmark
