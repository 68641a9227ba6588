// The tool's terminal: results go to std::cout, messages through the library's updater to standard error.
#pragma once

#include <TuvoUtil/Messages.h>

#include <string>

namespace tool {

// Writes the library's messages to standard error, "tuvo: error: TEXT", each in one piece and after all results so far.
class ConsoleUpdater : public TuvoEnvUpdater
{
public:
    ConsoleUpdater() = default;
    void WriteConsoleMessage(_TuvoMessageType type, const wchar_t* text, bool flag) override;
    void WritePromptMessage(_TuvoMessageType type, const wchar_t* text, int flag) override;
    _TuvoMsgBoxResponse PostMessageBox(unsigned int style, const wchar_t* caption, const wchar_t* text,
                                       bool forced) override;
};

// Makes this program the library's host for as long as the object lives: its messages and its log.
class ConsoleScope
{
public:
    ConsoleScope();
    ~ConsoleScope();
    ConsoleScope(const ConsoleScope&) = delete;
    ConsoleScope& operator=(const ConsoleScope&) = delete;

private:
    ConsoleUpdater m_updater;
};

// No message of the library is shown while one lives.
class SilenceScope
{
public:
    SilenceScope() { TuvoEnvUpdater::SetUpdater(nullptr); }
    ~SilenceScope() { TuvoEnvUpdater::SetUpdater(m_updater); }
    SilenceScope(const SilenceScope&) = delete;
    SilenceScope& operator=(const SilenceScope&) = delete;

private:
    TuvoEnvUpdater* m_updater = TuvoEnvUpdater::GetUpdater();
};

// From now on the log entries of this level are shown, as they are, whatever BU_LOG_LEVEL says.
void ShowLogEntries(int level);

void PostError(const std::string& text);
void PostWarning(const std::string& text);

// The lowest level of log entries that are shown (BU_LOG_LEVEL); -1 when none is.
int LogLevel();

// A title as it is shown on standard output: bold on a terminal that knows colours.
std::string Emphasised(const std::string& text);

// A text from outside without control characters: "?" stands for each.
std::string Printable(std::string_view text);

// A text of the user for a message: in double quotes, cut when it is long, printable.
std::string Quoted(std::string_view text);

}  // namespace tool
