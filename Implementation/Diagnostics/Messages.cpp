#include <TuvoUtil/Messages.h>

#include <cstdarg>

constinit TuvoEnvUpdater* TuvoEnvUpdater::m_pEnvUpdater = nullptr;

namespace {

constinit ITuvoConsoleMsgHandler* g_consoleHandler = nullptr;
constinit int g_promptsBlocked = 0;

constexpr unsigned int StyleErrorIcon = 0x10;

BuString Formatted(const wchar_t* format, va_list arguments)
{
    BuString text;
    text.FormatV(format, arguments);
    return text;
}

void WriteConsole(_TuvoMessageType type, const wchar_t* format, va_list arguments)
{
    const BuString text = Formatted(format, arguments);
    TuvoEnvUpdater::GetUpdater()->WriteConsoleMessage(type, text, false);
}

_TuvoMsgBoxResponse PostBox(unsigned int style, const wchar_t* caption, const wchar_t* format, va_list arguments,
                            bool forced)
{
    const BuString text = Formatted(format, arguments);
    return TuvoEnvUpdater::GetUpdater()->PostMessageBox(style, caption, text, forced);
}

}  // namespace

TuvoEnvUpdater* TuvoEnvUpdater::GetUpdater()
{
    return m_pEnvUpdater;
}

void TuvoEnvUpdater::SetUpdater(TuvoEnvUpdater* updater)
{
    m_pEnvUpdater = updater;
}

ITuvoConsoleMsgHandler* TuvoGetConsoleMessageHandler()
{
    return g_consoleHandler;
}

void TuvoSetConsoleMessageHandler(ITuvoConsoleMsgHandler* handler)
{
    g_consoleHandler = handler;
}

void TuvoEnvBlockPrompts()
{
    g_promptsBlocked = 1;
}

void TuvoEnvUnBlockPrompts()
{
    g_promptsBlocked = 0;
}

int TuvoEnvIsPromptsBlocked()
{
    return g_promptsBlocked;
}

TuvoBlockAllPrompts::TuvoBlockAllPrompts()
{
    TuvoEnvBlockPrompts();
}

// Kept: the state before is not restored, since hosts count on prompts coming back with the first guard that ends.
TuvoBlockAllPrompts::~TuvoBlockAllPrompts()
{
    TuvoEnvUnBlockPrompts();
}

void TuvoWriteConsoleMessage(_TuvoMessageType type, const wchar_t* format, ...)
{
    if (TuvoEnvUpdater::GetUpdater() == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    WriteConsole(type, format, arguments);
    va_end(arguments);
}

void TuvoWriteConsoleLinkMessage(_TuvoMessageType type, const wchar_t* format, ...)
{
    if (TuvoEnvUpdater::GetUpdater() == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    WriteConsole(type, format, arguments);
    va_end(arguments);
}

void TuvoWritePromptMessage(_TuvoMessageType type, const wchar_t* format, ...)
{
    if (TuvoEnvIsPromptsBlocked() != 0 || TuvoEnvUpdater::GetUpdater() == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    const BuString text = Formatted(format, arguments);
    va_end(arguments);
    TuvoEnvUpdater::GetUpdater()->WritePromptMessage(type, text, 1);
}

_TuvoMsgBoxResponse TuvoPostMessageBox(unsigned int style, const wchar_t* caption, const wchar_t* format, ...)
{
    if (TuvoEnvUpdater::GetUpdater() == nullptr)
        return TUVO_RESPONSE_NONE;
    va_list arguments;
    va_start(arguments, format);
    const _TuvoMsgBoxResponse response = PostBox(style, caption, format, arguments, false);
    va_end(arguments);
    return response;
}

_TuvoMsgBoxResponse TuvoPostForcedMessageBox(unsigned int style, const wchar_t* caption, const wchar_t* format, ...)
{
    if (TuvoEnvUpdater::GetUpdater() == nullptr)
        return TUVO_RESPONSE_NONE;
    va_list arguments;
    va_start(arguments, format);
    const _TuvoMsgBoxResponse response = PostBox(style, caption, format, arguments, true);
    va_end(arguments);
    return response;
}

void TuvoPostDiagnosticMessage(_TuvoMessageType type, const wchar_t* format, ...)
{
    if (!TuvoIsDvpWarningEnabled() || TuvoEnvUpdater::GetUpdater() == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    if (type == TUVO_MESSAGE_ERROR)
        PostBox(StyleErrorIcon, L"Error", format, arguments, true);
    else
        WriteConsole(type, format, arguments);
    va_end(arguments);
}
