#include "TuvoMemory/LeakReport.h"

#include "TuvoMemory/LeakFiles.h"
#include "TuvoMemory/MemoryState.h"
#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <iterator>

namespace {

using leaks::CallFrame;
using leaks::CallStack;
using leaks::Record;
using leaks::ReportFiles;

// Indexed by the memory mode; the other modes are not named.
constexpr const char* ReportNames[] = {"Fast Check ", "Accurate Check ", "", "Check with double pass ", ""};

constexpr char SelectorFunction[] = "CRukEntitySelector";
constexpr char SelectorFile[] = "rukentityselect";

bool AreCallStacksOn()
{
    return memory::g_state.second != 0;
}

void WriteBoth(const ReportFiles& files, const char* text)
{
    files.report.Write(text);
    if (files.append != nullptr)
        files.append->Write(text);
}

// ---- What reports leave out ----------------------------------------------------------------------------------------

// Entity selectors live as long as the process.
bool IsSelectorFrame(const CallFrame& frame)
{
    return frame.line != leaks::UnknownLine &&
           std::strncmp(frame.function, SelectorFunction, std::strlen(SelectorFunction)) == 0;
}

bool IsSelectorFile(const char* file)
{
    for (const char* expected = SelectorFile; *expected != '\0'; ++expected, ++file)
        if (BuToLower(*file) != *expected)
            return false;
    return true;
}

bool IsLeftOut(const Record& record)
{
    if (!AreCallStacksOn())
        return IsSelectorFile(record.file);
    const CallStack stack = record.Stack();
    if (stack.depth < leaks::OwnFrames)
        return true;
    for (std::size_t i = leaks::OwnFrames; i < stack.depth; ++i)
        if (IsSelectorFrame(stack[i]))
            return true;
    return false;
}

// ---- Lines ---------------------------------------------------------------------------------------------------------

void WriteFrame(leaks::OutputFile& file, const CallFrame& frame)
{
    constexpr int functionLength = sizeof frame.function;
    constexpr int fileLength = sizeof frame.file;
    char text[160];
    if (frame.line == leaks::UnknownLine)
        std::snprintf(text, sizeof text, "    %.*s - NO_INFO -\n", functionLength, frame.function);
    else
        std::snprintf(text, sizeof text, "    %.*s at %d in %.*s\n", functionLength, frame.function, frame.line,
                      fileLength, frame.file);
    file.Write(text);
}

void WriteStack(leaks::OutputFile& file, const CallStack& stack)
{
    file.Write("  called from\n");
    for (std::size_t i = leaks::OwnFrames; i < stack.depth; ++i)
        WriteFrame(file, stack[i]);
}

void WriteRecord(const ReportFiles& files, const Record& record)
{
    const bool isFromFactory = record.kind == 1;
    char text[256];
    std::snprintf(text, sizeof text,
                  "%d bytes [%d times] allocated %sin %s at %d is not freed: Sequence index = %d\n%s",
                  static_cast<int>(record.size), static_cast<int>(record.repetitions),
                  isFromFactory ? "through CreateObject " : "", record.file, static_cast<int>(record.line),
                  record.sequence, isFromFactory ? "\n" : "");
    WriteBoth(files, text);
    if (AreCallStacksOn() && files.append != nullptr)
        WriteStack(*files.append, record.Stack());
}

}  // namespace

void leaks::WriteReportHead(const ReportFiles& files)
{
    WriteBoth(files, "----Memory leak information -- ");
    WriteBoth(files, ReportNames[memory::g_state.mode]);
    platform::LocalTime now = {};
    platform::ToLocalTime(std::time(nullptr), now);
    char text[96];
    std::snprintf(text, sizeof text, "Reported at %.2d:%.2d on %.2d-%.2d-%.4d\n", now.hour, now.minute, now.day,
                  now.month, now.year);
    WriteBoth(files, text);
}

std::int64_t leaks::WriteRecords(const ReportFiles& files, RecordTable& records)
{
    std::int64_t total = 0;
    for (const Record& record : records.Compacted()) {
        if (IsLeftOut(record))
            continue;
        WriteRecord(files, record);
        total += std::int64_t{record.size} * record.repetitions;
    }
    char text[64];
    std::snprintf(text, sizeof text, "===> Total of %zd bytes leaked\n", static_cast<std::ptrdiff_t>(total));
    WriteBoth(files, text);
    return total;
}
