// The log: numbered levels, one sink for the process.
//
//   BuLogger::GetInstance().Log(2, L"cannot read %s\n", path);
//
// Levels used here: 0 information, 1 warning, 2 error, 3 fatal error, 6 benchmark reports. Without an installed sink,
// texts go to standard error, as narrow text, when the environment variable BU_LOG_LEVEL is set to a number, from that
// level on (a text without a number is 0); nothing is written when it is not set. The variable is read at each call. A
// text is dropped when memory is exhausted. Not locked: install a sink at start-up, log from one thread at a time.
#pragma once

#include <basutl/Export.h>

#include <cstdarg>

// Receives each formatted text as it is, without an added line end. `context` is what was given with it. It must not
// throw.
using BuLogSink = void (*)(int level, const wchar_t* text, void* context);

class BASUTL_API BuLogger
{
public:
    // The log of the process.
    static BuLogger& GetInstance() noexcept;

    // Formats as BuString::Format does and hands the text to the sink. A null format or text logs an empty text.
    void Log(int level, const wchar_t* format, ...) noexcept;
    void LogV(int level, const wchar_t* format, va_list arguments) noexcept;

    // For a text that is its own format: "%%" becomes "%", other conversions vanish, no argument is read.
    void LogWithoutArguments(int level, const wchar_t* format) noexcept;

    // For a text that is not a format at all.
    void LogText(int level, const wchar_t* text) noexcept;

    // Installs a sink; null brings the default one back.
    void SetSink(BuLogSink sink, void* context) noexcept;

private:
    BuLogger() noexcept = default;
};
