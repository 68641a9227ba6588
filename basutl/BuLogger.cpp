#include <basutl/BuLogger.h>

#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuNumber.h>
#include <basutl/BuString.h>

#include <cstdio>

namespace {

struct Sink
{
    BuLogSink function = nullptr;
    void* context = nullptr;
};
constinit Sink g_sink;

// Whether the default sink writes texts of a level.
bool IsLevelWritten(int level) noexcept
{
    return platform::Guarded(false, [=] {
        const auto lowest = platform::EnvironmentValue(L"BU_LOG_LEVEL");
        return lowest && level >= BuReadInt(platform::Narrow(*lowest).c_str());
    });
}

bool IsWanted(int level) noexcept
{
    return g_sink.function != nullptr || IsLevelWritten(level);
}

void Write(int level, const wchar_t* text) noexcept
{
    if (g_sink.function != nullptr)
        g_sink.function(level, text, g_sink.context);
    else
        platform::Guarded(0, [=] { return std::fputs(platform::Narrow(text).c_str(), stderr); });
}

}  // namespace

BuLogger& BuLogger::GetInstance() noexcept
{
    static constinit BuLogger instance;
    return instance;
}

void BuLogger::Log(int level, const wchar_t* format, ...) noexcept
{
    va_list arguments;
    va_start(arguments, format);
    LogV(level, format, arguments);
    va_end(arguments);
}

void BuLogger::LogV(int level, const wchar_t* format, va_list arguments) noexcept
{
    BuString text;
    if (IsWanted(level) && text.FormatV(format, arguments) >= 0)
        Write(level, text);
}

void BuLogger::LogWithoutArguments(int level, const wchar_t* format) noexcept
{
    BuString text;
    if (IsWanted(level) && text.FormatWithoutArguments(format) >= 0)
        Write(level, text);
}

void BuLogger::LogText(int level, const wchar_t* text) noexcept
{
    if (IsWanted(level))
        Write(level, text != nullptr ? text : L"");
}

void BuLogger::SetSink(BuLogSink sink, void* context) noexcept
{
    g_sink = {sink, context};
}
