// The same small jobs twice, with the C library alone and with this one: a program that moves over may do it job by job.
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Messages.h>
#include <TuvoUtil/StringBreak.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

namespace {

// ---- The numbers of a line -----------------------------------------------------------------------------------------

int ReadPlainly(char* line, double* values, int room)
{
    int count = 0;
    for (char* field = std::strtok(line, ", ;"); field != nullptr && count < room; field = std::strtok(nullptr, ", ;"))
        values[count++] = std::atof(field);  // a locale with a decimal comma reads 2.5 as 2
    return count;
}

int Read(char* line, double* values, int room)
{
    char** fields = nullptr;
    const int count = std::min(UtlBreakStringIntoStringsDbg(line, &fields, ", ;", __FILE__, __LINE__), room);
    for (int i = 0; i < count; ++i)
        values[i] = BuReadDouble(fields[i]);
    VBU_FREE(fields, __FILE__, __LINE__);
    return count;
}

// ---- A text of parts -----------------------------------------------------------------------------------------------

char* MakeTitlePlainly(const char* part, double mass)
{
    const std::size_t size = std::strlen(part) + 32;  // is that enough for every mass?
    auto* const title = static_cast<char*>(std::malloc(size));
    if (title != nullptr)
        std::snprintf(title, size, "%s: %.3f kg", part, mass);
    return title;
}

BuString MakeTitle(const char* part, double mass)
{
    BuString title;
    title.Format(L"%S: %.3f kg", part, mass);  // as long as it has to be, always with a point
    return title;
}

// ---- A failure with its reason -------------------------------------------------------------------------------------

int CheckPlainly(int nodeCount)
{
    if (nodeCount >= 2)
        return 0;
    std::fprintf(stderr, "an element has %d nodes\n", nodeCount);  // who shows that in a window?
    return -1;
}

const BuErrObj* Check(int nodeCount)
{
    if (nodeCount >= 2)
        return nullptr;
    BuString reason;
    reason.Format(L"an element has %d nodes", nodeCount);
    return BuSetError(17, reason);
}

// A host that shows messages; a program with windows has another one.
class ConsoleHost : public TuvoEnvUpdater
{
public:
    void WriteConsoleMessage(_TuvoMessageType, const wchar_t* text, bool) override
    {
        std::printf("host: %s\n", BuString(text).ToNarrow().c_str());
    }
};

}  // namespace

int main()
{
    char line[] = "210000, 0.3; 7.85e-9", copy[] = "210000, 0.3; 7.85e-9";
    double before[4] = {}, after[4] = {};
    const bool isCountEqual = ReadPlainly(line, before, 4) == Read(copy, after, 4);
    std::printf("numbers: %s\n", isCountEqual && std::equal(before, std::end(before), after) ? "the same" : "others");

    char* const title = MakeTitlePlainly("bracket", 1.25);
    std::printf("title: %s\n",
                title != nullptr && MakeTitle("bracket", 1.25) == BuString(title) ? "the same" : "another");
    std::free(title);

    ConsoleHost host;
    TuvoEnvUpdater::SetUpdater(&host);
    const BuErrObj* const error = Check(1);
    std::printf("failure: %d, %d\n", CheckPlainly(1), VGetErrorID(error));
    VEnvPostError(error);
    TuvoEnvUpdater::SetUpdater(nullptr);
}
