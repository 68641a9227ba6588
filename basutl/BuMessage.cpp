#include <basutl/BuMessage.h>

#include "platform/Platform.h"

#include <basutl/BuLogger.h>

namespace {

constexpr int ErrorLevel = 2;

void OutputToDebuggerAndLog(int severity, const wchar_t* text)
{
    platform::WriteDebugOutput(text);
    BuLogger::GetInstance().LogText(severity, text);
}

void LogAssertion(int code, const char* file, int line)
{
    BuLogger::GetInstance().Log(ErrorLevel, L"Assertion failed at %S:%d (code %d)\n", file, line, code);
}

constinit BuOutputHandler g_outputHandler = &OutputToDebuggerAndLog;
constinit BuAssertHandler g_assertHandler = &LogAssertion;

}  // namespace

void BuOutputMessage(int severity, const wchar_t* text)
{
    g_outputHandler(severity, text != nullptr ? text : L"");
}

void BuAssert(int code, const char* file, int line)
{
    g_assertHandler(code, file != nullptr ? file : "", line);
}

void BuSetOutputHandler(BuOutputHandler handler) noexcept
{
    g_outputHandler = handler != nullptr ? handler : &OutputToDebuggerAndLog;
}

void BuSetAssertHandler(BuAssertHandler handler) noexcept
{
    g_assertHandler = handler != nullptr ? handler : &LogAssertion;
}
