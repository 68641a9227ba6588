#include "TuvoMemory/LeakFiles.h"
#include "TuvoMemory/LeakReport.h"
#include "TuvoMemory/LeakState.h"
#include "TuvoMemory/LeakSuppressions.h"
#include "platform/Guard.h"

#include <basutl/BuLocalize.h>
#include <basutl/BuMessage.h>
#include <basutl/BuString.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace {

using leaks::Record;
using Records = HeapArray<Record>;

// Records between two messages of progress.
constexpr std::size_t ProgressStep = 1000;

void Post(const wchar_t* text)
{
    BuOutputMessage(1, text);
}

void PostProgress(std::size_t done, std::size_t count)
{
    BuString text;
    text.Format(BuLocalizeStringExW(L"MemLeakChecker: %d of %zd is processed", 0), static_cast<int>(done), count);
    Post(text);
}

// ---- Records from slots --------------------------------------------------------------------------------------------

Record MakeRecord(const leaks::Slot& slot)
{
    const memory::BlockHeader& header = *memory::HeaderOf(slot.block);
    Record record = {};
    record.SetStack({slot.frameCount, slot.frames});
    record.sequence = slot.number.sequence;
    if (slot.file != nullptr)
        std::memcpy(record.file, slot.file, sizeof record.file);
    record.block = slot.block;
    record.size = static_cast<std::uint32_t>(header.size);
    record.line = static_cast<std::uint32_t>(slot.number.line);
    record.kind = static_cast<std::uint32_t>(header.tag - memory::TagOfKind0);
    return record;
}

// ---- Order ---------------------------------------------------------------------------------------------------------

int CompareOrigins(const Record& left, const Record& right)
{
    if (const int order = std::strcmp(left.file, right.file); order != 0)
        return order;
    const auto key = [](const Record& record) {
        return std::pair(static_cast<std::int32_t>(record.line), record.size);
    };
    return key(left) == key(right) ? 0 : (key(left) < key(right) ? -1 : 1);
}

void Sort(Records& records)
{
    std::sort(records.begin(), records.end(), [](const Record& left, const Record& right) {
        const int order = CompareOrigins(left, right);
        return order != 0 ? order < 0 : left.sequence < right.sequence;
    });
    for (Record& record : records)
        record.repetitions = 1;
}

// ---- Call stacks ---------------------------------------------------------------------------------------------------

void ResolveFrames(Record& record)
{
    leaks::CallStack stack = record.Stack();
    leaks::ResolveStack(stack);
    record.SetStack(stack);
}

leaks::Suppressions ReadSuppressions()
{
    return platform::Guarded(leaks::Suppressions(), [] {
        return leaks::Suppressions(leaks::ReadUserFile(leaks::SuppressionFileName).value_or(""));
    });
}

void SuppressKnown(Record& record, leaks::Suppressions& suppressions)
{
    if (platform::Guarded(false, [&] { return suppressions.Take(record.Stack()); }))
        leaks::FreeFrames(record);
}

// ---- Merging -------------------------------------------------------------------------------------------------------

std::string_view TextOf(const char* text, std::size_t capacity)
{
    return {text, static_cast<std::size_t>(std::find(text, text + capacity, '\0') - text)};
}

// What has to agree, besides file, line and size, for two records to become one.
std::string OriginOf(const Record& record)
{
    std::string origin = std::to_string(record.kind);
    const leaks::CallStack stack = record.Stack();
    for (std::size_t i = 0; i < stack.depth; ++i)
        origin.append(1, '\n')
            .append(TextOf(stack[i].function, sizeof stack[i].function))
            .append(1, '\t')
            .append(std::to_string(stack[i].line))
            .append(1, '\t')
            .append(TextOf(stack[i].file, sizeof stack[i].file));
    return origin;
}

// Merges records of one file, line and size: the first of each origin counts the others, which get no repetitions.
void MergeRun(Record* begin, Record* end)
{
    if (end - begin < 2)
        return;
    std::unordered_map<std::string, Record*> firsts;
    for (Record* record = begin; record != end; ++record) {
        const auto [first, isNew] = firsts.emplace(OriginOf(*record), record);
        if (!isNew) {
            ++first->second->repetitions;
            record->repetitions = 0;
        }
    }
}

void Merge(Records& records)
{
    platform::Guarded(false, [&] {
        for (Record* begin = records.begin(); begin != records.end();) {
            Record* const end = std::find_if(
                begin, records.end(), [begin](const Record& record) { return CompareOrigins(*begin, record) != 0; });
            MergeRun(begin, end);
            begin = end;
        }
        return true;
    });
    for (Record& record : records)
        if (record.repetitions == 0)
            leaks::FreeFrames(record);
    Record* const end =
        std::remove_if(records.begin(), records.end(), [](const Record& record) { return record.repetitions == 0; });
    records.Truncate(static_cast<std::size_t>(end - records.begin()));
}

}  // namespace

std::optional<leaks::RecordTable> leaks::TakeRecords()
{
    Tally& tally = TheState().tally;
    if (!memory::IsHeaderMode())
        return std::move(tally.records);
    RecordTable records;
    if (!records.Reserve(tally.slots.Count()))
        return std::nullopt;
    for (const Slot& slot : tally.slots)
        records.Add(MakeRecord(slot));
    tally.slots.ClearWithoutFrames();
    return records;
}

void leaks::ProcessRecords(RecordTable& table)
{
    Records& records = table.Compacted();
    Sort(records);
    Post(BuLocalizeStringExW(L"Leak detector is processing info...", 0));
    Suppressions suppressions = ReadSuppressions();
    for (std::size_t i = 0; i < records.Size(); ++i) {
        ResolveFrames(records[i]);
        SuppressKnown(records[i], suppressions);
        if ((i + 1) % ProgressStep == 0 || i + 1 == records.Size())
            PostProgress(i + 1, records.Size());
    }
    Merge(records);
    Post(BuLocalizeStringExW(L"Leak detector: Processing done.", 0));
}
