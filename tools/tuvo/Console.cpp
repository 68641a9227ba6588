#include "tools/tuvo/Console.h"

#include "platform/Platform.h"
#include "tools/tuvo/ConsoleProgress.h"

#include <basutl/BuLogger.h>
#include <basutl/BuNumber.h>

#include <array>
#include <iostream>

namespace tool {
namespace {

enum Stream : int
{
    OutputStream = 1,
    ErrorStream = 2
};

bool IsSet(const wchar_t* variable)
{
    return !platform::EnvironmentValue(variable).value_or(L"").empty();
}

bool ShowsColours(Stream stream)
{
    return platform::IsTerminal(stream) && IsSet(L"TERM") && platform::EnvironmentValue(L"TERM") != L"dumb" &&
           !IsSet(L"NO_COLOR");
}

std::string Styled(Stream stream, const char* style, const std::string& text)
{
    return ShowsColours(stream) ? "\x1b[" + std::string(style) + "m" + text + "\x1b[0m" : text;
}

void WriteLine(const std::string& beginning, const wchar_t* text)
{
    std::string message = beginning + platform::Narrow(text != nullptr ? text : L"");
    if (!message.ends_with('\n'))
        message += '\n';
    std::cout.flush();
    ConsoleProgress::HideAny();
    std::cerr.write(message.data(), static_cast<std::streamsize>(message.size()));
}

void WriteMessage(const std::string& kind, const wchar_t* text)
{
    WriteLine("tuvo: " + kind, text);
}

int g_shownLevel = -1;

std::string KindText(_TuvoMessageType type)
{
    switch (type) {
        case TUVO_MESSAGE_ERROR:
            return Styled(ErrorStream, "1;31", "error:") + ' ';
        case TUVO_MESSAGE_WARNING:
            return Styled(ErrorStream, "1;33", "warning:") + ' ';
        default:
            return {};
    }
}

void WriteLogEntry(int level, const wchar_t* text, void*)
{
    if (level == g_shownLevel)
        return WriteLine({}, text);
    const int lowest = LogLevel();
    if (lowest >= 0 && level >= lowest)
        WriteMessage("log " + std::to_string(level) + ": ", text);
}

}  // namespace

void ConsoleUpdater::WriteConsoleMessage(_TuvoMessageType type, const wchar_t* text, bool)
{
    WriteMessage(KindText(type), text);
}

void ConsoleUpdater::WritePromptMessage(_TuvoMessageType type, const wchar_t* text, int)
{
    WriteMessage(KindText(type), text);
}

_TuvoMsgBoxResponse ConsoleUpdater::PostMessageBox(unsigned int, const wchar_t* caption, const wchar_t* text, bool)
{
    WriteMessage(caption != nullptr ? platform::Narrow(caption) + ": " : std::string(), text);
    return TUVO_RESPONSE_OK;
}

ConsoleScope::ConsoleScope()
{
    TuvoEnvUpdater::SetUpdater(&m_updater);
    BuLogger::GetInstance().SetSink(WriteLogEntry, nullptr);
}

ConsoleScope::~ConsoleScope()
{
    BuLogger::GetInstance().SetSink(nullptr, nullptr);
    TuvoEnvUpdater::SetUpdater(nullptr);
}

void ShowLogEntries(int level)
{
    g_shownLevel = level;
}

void PostError(const std::string& text)
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, L"%s", platform::Widen(text).c_str());
}

void PostWarning(const std::string& text)
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, L"%s", platform::Widen(text).c_str());
}

int LogLevel()
{
    const std::wstring level = platform::EnvironmentValue(L"BU_LOG_LEVEL").value_or(L"");
    return level.empty() ? -1 : BuReadInt(platform::Narrow(level).c_str());
}

std::string Emphasised(const std::string& text)
{
    return Styled(OutputStream, "1", text);
}

std::string Printable(std::string_view text)
{
    std::string printable(text);
    for (char& c : printable)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f')
            c = '?';
    return printable;
}

std::string Quoted(std::string_view text)
{
    constexpr std::size_t LongestShown = 60;
    return '"' + Printable(text.substr(0, LongestShown)) + (text.size() > LongestShown ? "...\"" : "\"");
}

}  // namespace tool
