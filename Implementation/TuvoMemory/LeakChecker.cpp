#include <TuvoUtil/LeakChecker.h>

#include "Diagnostics/FileTracker.h"
#include "TuvoMemory/LeakDataFile.h"
#include "TuvoMemory/LeakFiles.h"
#include "TuvoMemory/LeakReport.h"
#include "TuvoMemory/LeakState.h"

#include <TuvoUtil/Messages.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuMessage.h>
#include <basutl/BuVariable.h>

#include <cstdio>
#include <optional>

namespace {

using leaks::ReportFiles;
using leaks::SequenceOf;
using leaks::Tally;
using leaks::TheState;
using memory::g_state;

constexpr int SeverityInformation = 1;
constexpr int SeverityError = 2;
constexpr unsigned int BoxWithErrorIcon = 16;
constexpr unsigned int BoxWithInformationIcon = 64;

// ---- Start ---------------------------------------------------------------------------------------------------------

BuString StartSecondPass(Tally& tally)
{
    const int counter = SequenceOf(tally.counter);
    const int resetCounter = SequenceOf(tally.resetCounter);
    BuString text;
    text.Format(BuLocalizeStringExW(L"MemLeakChecker: 2nd pass: Current malloc counter is = %d, is reset to %d", 0),
                counter, resetCounter);
    std::fprintf(stderr, "MemLeakChecker:  Leak counter is reset to %d from %d\n", resetCounter, counter);
    tally.counter = tally.resetCounter;
    return text;
}

BuString StartFirstPass(const Tally& tally)
{
    const int counter = SequenceOf(tally.counter);
    BuString text;
    text.Format(BuLocalizeStringExW(L"MemLeakChecker: 1st pass: Current malloc counter at start = %d", 0), counter);
    std::fprintf(stderr, "MemLeakChecker: 1st pass: Current malloc counter at start = %d\n", counter);
    return text;
}

BuString StartOnePass(const Tally& tally)
{
    BuString text;
    text.Format(BuLocalizeStringExW(L"MemLeakChecker: Current malloc counter at start = %d", 0),
                SequenceOf(tally.counter));
    return text;
}

BuString StartPass(Tally& tally)
{
    if (g_state.mode == 3)
        return StartSecondPass(tally);
    return g_state.mode == 2 ? StartFirstPass(tally) : StartOnePass(tally);
}

// ---- Report --------------------------------------------------------------------------------------------------------

// Kept: the caption shows its "%s" unfilled, the file is the text.
void TellNotWritten(const char* file)
{
    TuvoPostMessageBox(BoxWithErrorIcon,
                       BuLocalizeStringExW(L"MemLeakChecker: Unable to open file %s to write leak report\n", 0), L"%s",
                       BuString(file).GetText());
}

// Kept: good news under the caption "Error".
void TellNoLeaks()
{
    TuvoPostMessageBox(BoxWithInformationIcon, BuLocalizeStringExW(L"Error", 0), L"%s",
                       BuLocalizeStringExW(L"There are no leaks found! Good job\n", 0));
}

// Closes an incomplete report and leaves nothing of it behind.
void GiveUpReport(leaks::OutputFile& report, const char* reportFile, const char* failedFile)
{
    report.Close();
    leaks::RemoveUnfinished(reportFile);
    TellNotWritten(failedFile);
}

BuString TotalText(std::int64_t total)
{
    const auto bytes = static_cast<double>(total);
    BuString text;
    if (total < 999)
        text.Format(BuLocalizeStringExW(L"Total memory leaked     = %zd Bytes\n", 0), total);
    else if (total < 999'999)
        text.Format(BuLocalizeStringExW(L"Total memory leaked     = %4.2lf KB\n", 0), bytes / 1000);
    else if (total < 999'999'999)
        text.Format(BuLocalizeStringExW(L"Total memory leaked     = %4.2lf MB\n", 0), bytes / 1e6);
    else
        text.Format(BuLocalizeStringExW(L"Total memory leaked     = %4.2lf GB\n", 0), bytes / 1e9);
    return text;
}

// `reportFile` is null when the report could not be written.
void ShowSummary(std::int64_t total, const char* reportFile)
{
    BuString summary = TotalText(total);
    if (reportFile != nullptr) {
        BuString detail;
        detail.Format(BuLocalizeStringExW(L"Detailed report is written to %s\n", 0), BuString(reportFile).GetText());
        summary += detail;
    }
    TuvoPostMessageBox(BoxWithErrorIcon, BuLocalizeStringExW(L"Error", 0), L"%s", summary.GetText());
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, BuLocalizeStringExW(L"Memory in use = %d", 0), MovraGetMemoryInUse());
    if (reportFile != nullptr)
        TuvoWriteConsoleMessage(TUVO_MESSAGE_INFORMATION,
                                BuLocalizeStringExW(L"Detailed report is written to <a>%s</a>\n", 0),
                                BuString(reportFile).GetText());
}

void Report(const char* reportFile, const char* appendFile, int* leakedBytes)
{
    leaks::OutputFile report(reportFile, "w");
    if (!report.IsOpen())
        return TellNotWritten(reportFile);
    leaks::OutputFile append(appendFile, "ab");
    if (appendFile != nullptr && !append.IsOpen())
        return GiveUpReport(report, reportFile, appendFile);
    std::optional<leaks::RecordTable> records = leaks::TakeRecords();
    if (!records)
        return GiveUpReport(report, reportFile, reportFile);

    const ReportFiles files = {report, appendFile != nullptr ? &append : nullptr};
    leaks::WriteReportHead(files);
    leaks::ProcessRecords(*records);
    const std::int64_t total = leaks::WriteRecords(files, *records);
    const bool isAppended = append.Close();
    const bool isComplete = report.Close();
    if (!isComplete)
        GiveUpReport(report, reportFile, reportFile);
    else if (!isAppended)
        TellNotWritten(appendFile);
    ShowSummary(total, isComplete ? reportFile : nullptr);
    if (leakedBytes != nullptr)
        *leakedBytes = static_cast<int>(total);
    leaks::ClearTally();
}

}  // namespace

void MovraInitMemory()
{
    leaks::InstallHooks();
    if (BuVariableGetValue("MOVRA_MEM_DEBUG") == nullptr && !memory::IsActive())
        return;
    memory::SetActive(true);
    // Kept: any value means mode 4, which has no second pass, so that no data file is looked for here.
    g_state.mode = 4;
    g_state.second = 1;
    TheState().tally.counter = 0;
    TheState().tally.expected.position = 0;
    MovraStartMemoryLeakCheck();
}

int MovraStartSecondPass()
{
    leaks::InstallHooks();
    const bool isLoaded = leaks::LoadDataFile();
    g_state.mode = isLoaded ? 3 : 2;
    if (isLoaded) {
        std::fputs("==> Intermediate data found. Memory mode is set to 3\n", stderr);
    } else {
        TheState().tally.expected = {};  // what an earlier second pass has left
        std::fputs("No data found. Memory mode is set to 2\n", stderr);
    }
    MovraStartMemoryLeakCheck();
    return isLoaded ? 0 : 1;
}

void MovraStartMemoryLeakCheck()
{
    Tally& tally = TheState().tally;
    if (g_state.mode == 2 && !tally.expected.indices.IsEmpty())
        g_state.mode = 3;
    memory::SetActive(true);
    tally.startCounter = tally.counter;
    const BuString text = StartPass(tally);
    StartFileTracker();
    BuOutputMessage(SeverityInformation, text);
}

void MovraStopMemoryLeakCheck()
{
    // Kept: file tracking ends also when checking cannot.
    StopFileTracker();
    if (g_state.mode != 4) {
        memory::SetActive(false);
        return;
    }
    BuOutputMessage(SeverityError,
                    BuLocalizeStringExW(L"MemLeakChecker: Cannot stop mem-leak check and continue in this mode! Please "
                                        L"exit and restart OR continue checking leak",
                                        0));
}

int MovraGetMemoryInUse()
{
    return static_cast<int>(TheState().tally.bytesInUse);
}

// Kept: the caption is spelled like this.
void MovraPrintMemoryUsage()
{
    if (!memory::IsActive())
        return;
    const Tally& tally = TheState().tally;
    TuvoPostMessageBox(0, BuLocalizeStringExW(L"Memmory Usage", 0),
                       BuLocalizeStringExW(L"Memory in use               : %d\nMax memory used          : %d\n"
                                           L"Total memory allocated  : %d\nTotal memory freed       : %d\n"
                                           L"Number of Blocks          : %d\n",
                                           0),
                       static_cast<int>(tally.bytesInUse), static_cast<int>(tally.peakBytes),
                       static_cast<int>(tally.bytesAllocated), static_cast<int>(tally.bytesFreed),
                       static_cast<int>(leaks::RecordCount()));
    PostOpenFileStatistics();
}

void MovraPrintMemoryLeak(char* reportFile, char* appendFile, char* tmpDataFile, int* leakedBytes)
{
    if (leakedBytes != nullptr)
        *leakedBytes = 0;
    if (!memory::IsActive())
        return;
    std::fprintf(stderr, " Leak counter at the end is %d, num leaks = %zu\n", SequenceOf(TheState().tally.counter),
                 leaks::RecordCount());
    PostOpenFileStatistics();
    if (g_state.mode == 2) {
        leaks::WriteDataFile(tmpDataFile);
        return;
    }
    if (g_state.mode == 0)
        leaks::Reconcile();
    if (leaks::RecordCount() == 0)
        TellNoLeaks();
    else
        Report(reportFile, appendFile, leakedBytes);
}
