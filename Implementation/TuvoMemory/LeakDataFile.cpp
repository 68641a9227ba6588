#include "TuvoMemory/LeakDataFile.h"

#include "TuvoMemory/LeakFiles.h"
#include "TuvoMemory/LeakState.h"
#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

namespace {

// The next number of a text, and the text goes on behind it; nothing when none stands there.
std::optional<long long> TakeNumber(const char*& text)
{
    const char* end = nullptr;
    const long long number = BuReadInteger(text, &end);
    if (end == text)
        return std::nullopt;
    text = end;
    return number;
}

// The sequence indices of all leaks, ascending; false when memory is exhausted. What was allocated long before checking
// was started is left out.
bool CollectIndices(HeapArray<std::int32_t>& indices)
{
    const leaks::Tally& tally = leaks::TheState().tally;
    const std::int64_t first = std::int64_t{leaks::SequenceOf(tally.startCounter)} - 1;
    if (!indices.Reserve(tally.slots.Count()))
        return false;
    for (const leaks::Slot& slot : tally.slots)
        if (slot.number.sequence >= first)
            indices.Append(slot.number.sequence);
    std::sort(indices.begin(), indices.end());
    return true;
}

bool WriteIndices(const char* path, const HeapArray<std::int32_t>& indices, std::int32_t startCounter)
{
    leaks::OutputFile file(path, "w");
    if (!file.IsOpen())
        return false;
    char text[48];
    std::snprintf(text, sizeof text, "%zu %d\n", indices.Size(), startCounter);
    file.Write(text);
    for (const std::int32_t index : indices) {
        std::snprintf(text, sizeof text, "%d ", index);
        file.Write(text);
    }
    if (file.Close())
        return true;
    leaks::RemoveUnfinished(path);
    return false;
}

}  // namespace

leaks::DataFileContent leaks::ParseDataFile(const char* text) noexcept
{
    DataFileContent content;
    const auto count = TakeNumber(text);
    const auto start = count ? TakeNumber(text) : std::nullopt;
    if (!start)
        return content;
    content.startCounter = static_cast<std::uint32_t>(*start);
    for (long long i = 0; i < *count; ++i) {
        const auto index = TakeNumber(text);
        if (!index || !content.indices.Append(static_cast<std::int32_t>(*index)))
            break;
    }
    return content;
}

bool leaks::LoadDataFile()
{
    const std::optional<std::string> text = ReadUserFile(DataFileName);
    if (!text)
        return false;
    platform::RemoveOneFile(UserFile(DataFileName));
    DataFileContent content = ParseDataFile(text->c_str());
    Tally& tally = TheState().tally;
    tally.records.Clear();
    tally.expected.indices = std::move(content.indices);
    tally.expected.position = 0;
    tally.resetCounter = content.startCounter;
    return true;
}

leaks::DataFileResult leaks::WriteDataFile(const char* path)
{
    Tally& tally = TheState().tally;
    if (tally.slots.Count() == 0)
        return DataFileResult::NoLeaks;
    const std::int32_t startCounter = SequenceOf(tally.startCounter);
    HeapArray<std::int32_t> indices;
    if (!CollectIndices(indices) || !WriteIndices(path, indices, startCounter)) {
        TuvoPostMessageBox(16, BuLocalizeStringExW(L"Error", 0), L"%s",
                           BuLocalizeStringExW(L"Unable to open file to write temporary leak data\n", 0));
        return DataFileResult::Failed;
    }
    std::fprintf(stderr, "Num leaks - %zu Started at index %d\n", indices.Size(), SequenceOf(tally.startCounter - 1));
    tally.slots.Clear();
    TuvoPostMessageBox(16, BuLocalizeStringExW(L"Error", 0),
                       BuLocalizeStringExW(L"MemLeakChecker: Information of %zd leaks are recorded. Please run "
                                           L"exactly\n the same path again to get leak report",
                                           0),
                       indices.Size());
    return DataFileResult::Written;
}
