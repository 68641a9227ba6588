// Error objects and failed assertions as messages and log lines.

#include <TuvoUtil/Messages.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuLogger.h>
#include <basutl/BuMessage.h>

#include <cstdint>

namespace {

constexpr int NoCode = -32768;
constexpr int UserCancelCode = 11;

BuString AsOwnFormat(const BuString& message)
{
    BuString text;
    text.FormatWithoutArguments(message);
    return text;
}

// Kept: the texts of all kinds but information are formats, as their writers have always taken them to be.
void WriteConsole(std::int32_t kind, const BuString& message)
{
    if (kind == BU_ERR_INFORMATION) {
        TuvoWriteConsoleMessage(TUVO_MESSAGE_INFORMATION, L"%s", message.GetText());
        return;
    }
    const _TuvoMessageType type = kind == BU_ERR_WARNING ? TUVO_MESSAGE_WARNING : TUVO_MESSAGE_ERROR;
    TuvoWriteConsoleMessage(type, L"%s", AsOwnFormat(message).GetText());
}

int LogLevel(std::int32_t kind)
{
    const bool isRaised = kind >= BU_ERR_WARNING && kind <= BU_ERR_FATAL;
    return isRaised ? kind - 1 : 0;
}

void LogLine(int level, BuString line)
{
    line.TrimRight();
    BuLogger::GetInstance().LogWithoutArguments(level, line.IsEmpty() ? L" " : line.GetText());
}

}  // namespace

unsigned char VIsError(const BuErrObj* e)
{
    return e != nullptr && e->GetKind() == BU_ERR_FAILURE;
}

unsigned char VIsWarning(const BuErrObj* e)
{
    return e != nullptr && e->GetKind() == BU_ERR_WARNING;
}

unsigned char VIsUserCancelWarning(const BuErrObj* e)
{
    return VIsWarning(e) != 0 && VGetErrorID(e) == UserCancelCode;
}

int VGetErrorID(const BuErrObj* e)
{
    int code = NoCode;
    if (e != nullptr)
        e->GetErrorCode(code);
    return code;
}

const BuErrObj* VGetUserCancelWarning()
{
    return BuSetWarning(UserCancelCode, BuLocalizeStringExW(L"Action cancelled", 0));
}

int VEnvPostError(const BuErrObj* e)
{
    if (e == nullptr)
        return 1;
    const std::int32_t kind = e->GetKind();
    const BuString message = e->GetMessageText();  // a copy, since the host may make errors while it shows this one
    if (message.IsEmpty() || kind < BU_ERR_PLAIN || kind > BU_ERR_FATAL)
        return 1;
    if (kind == BU_ERR_FATAL)
        TuvoPostMessageBox(0, BuLocalizeStringExW(L"Error", 0), L"%s", AsOwnFormat(message).GetText());
    else
        WriteConsole(kind, message);
    return 0;
}

void TuvoWriteConsoleError(const BuErrObj* e)
{
    if (e != nullptr)
        WriteConsole(e->GetKind(), BuString(e->GetMessageText()));
}

void TuvoLogError(const BuErrObj* e)
{
    if (e == nullptr || VIsUserCancelWarning(e) != 0)
        return;
    const int level = LogLevel(e->GetKind());
    const BuString description = BuGetErrorDescription(e);
    int position = 0;
    for (BuString line; description.ExtractLine(position, line);)
        LogLine(level, line);
    BuLogger::GetInstance().LogText(level, L"   \n");
}

void TuvoLogLastError()
{
    TuvoLogError(BuGetLastError());
}

void VAssert(void* const expression, char* file, int line)
{
    const BuString expressionText(static_cast<const char*>(expression));
    const BuString fileText(file);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR, BuLocalizeStringExW(L"Assertion '%s' reached at %s:%d", 0),
                            expressionText.GetText(), fileText.GetText(), line);
    BuAssert(0, file, line);
}
