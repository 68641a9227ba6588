// A host that shows the library's messages on its console: the updater, errors as objects, blocked prompts.
#include <TuvoUtil/Messages.h>
#include <basutl/BuErrObj.h>

#include <cstdio>

namespace {

// Only what the host cares about is overridden; all else keeps doing nothing.
class ConsoleHost : public TuvoEnvUpdater
{
public:
    ConsoleHost() = default;

    void WriteConsoleMessage(_TuvoMessageType type, const wchar_t* text, bool) override
    {
        constexpr const char* Kinds[] = {"error", "warning", "information"};
        std::printf("%-11s | %s\n", Kinds[type], BuString(text).ToNarrow().c_str());
    }

    void WritePromptMessage(_TuvoMessageType, const wchar_t* text, int) override
    {
        std::printf("prompt      | %s\n", BuString(text).ToNarrow().c_str());
    }
};

// A function of the application that can fail with a reason.
const BuErrObj* ReadMesh(const wchar_t* file)
{
    BuString reason;
    reason.Format(L"%s: line %d: element %d has no nodes", file, 214, 77);
    return BuSetError(3, reason);
}

}  // namespace

int main()
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_INFORMATION, L"nobody hears this: no updater is installed");

    ConsoleHost host;
    TuvoEnvUpdater::SetUpdater(&host);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_INFORMATION, L"%s: %d nodes, %d elements", L"bracket.inp", 1204, 977);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, L"%d elements are distorted, the worst by %.1f %%", 3, 12.5);

    const BuErrObj* const error = ReadMesh(L"bracket.inp");
    std::printf("code %d, error %d, warning %d\n", VGetErrorID(error), VIsError(error), VIsWarning(error));
    TuvoWriteConsoleError(error);

    TuvoWritePromptMessage(TUVO_MESSAGE_INFORMATION, L"pick a face");
    {
        const TuvoBlockAllPrompts quiet;  // a batch run asks nothing
        TuvoWritePromptMessage(TUVO_MESSAGE_INFORMATION, L"pick another face");
    }
    TuvoEnvUpdater::SetUpdater(nullptr);
}
