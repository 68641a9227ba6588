// What the checker does with each allocation and release that tracked allocation tells of.
//
// Messages come first: whoever receives one may allocate and free, so nothing is half done then, and what the message
// may have changed is asked again afterwards.

#include "TuvoMemory/LeakTracking.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Messages.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuMessage.h>

#include <algorithm>
#include <cstring>

namespace {

using memory::BlockHeader;
using memory::g_state;

constexpr int SeverityInformation = 1;
constexpr int SeverityError = 2;

struct Allocation
{
    void* block;  // the start of the header when there is one
    std::size_t size;
    const char* file;
    int line;
    int kind;
    std::int32_t sequence;
};

// ---- Messages ------------------------------------------------------------------------------------------------------

[[gnu::cold]] void TellProgress(std::int64_t bytes)
{
    const std::int64_t kilobytes = bytes / 1000;
    const std::int64_t megabytes = bytes / leaks::Progress::Megabyte;
    BuString text;
    // Kept: kilobytes are never told of, since a megabyte has 1000 of them.
    if (kilobytes >= 2 && kilobytes <= 999)
        text.Format(BuLocalizeStringExW(L"MemLeakChecker:   Allocated memory in use = %zd KB\n", 0), kilobytes);
    else if (megabytes >= 1000)
        text.Format(BuLocalizeStringExW(L"MemLeakChecker:   Allocated memory in use = %zd GB\n", 0),
                    bytes / 1'000'000'000);
    else
        text.Format(BuLocalizeStringExW(L"MemLeakChecker:   Allocated memory in use = %zd MB\n", 0), megabytes);
    BuOutputMessage(SeverityInformation, text.GetText());
}

bool IsWatched(const Allocation& allocation)
{
    const leaks::Watch& watch = leaks::TheState().watch;
    if (watch.sequence == allocation.sequence)
        return true;
    if (watch.file == nullptr || watch.line != allocation.line)
        return false;
    const char* const separator = std::strrchr(allocation.file, '\\');
    return std::strcmp(watch.file, separator != nullptr ? separator : allocation.file) == 0;
}

[[gnu::cold]] void TellIfWatched(const Allocation& allocation)
{
    if (!IsWatched(allocation))
        return;
    BuString text;
    text.Format(
        BuLocalizeStringExW(L"MemLeakChecker:    Memory being allocated from the following will not be freed\n\n"
                            L"    Called from file %s at line no. %d, sequence ind = %d\n\n"
                            L" Please call 'Break All' in VC++ and debug line by line to check leak",
                            0),
        BuString(allocation.file).GetText(), allocation.line, allocation.sequence);
    BuOutputMessage(SeverityError, text.GetText());
}

[[gnu::cold]] void TellFreedAgain(const char* file, int line)
{
    BuString text;
    text.Format(BuLocalizeStringExW(L"MemLeakChecker: Freed memory is being freed again! File %s at line %d", 0),
                BuString(file).GetText(), line);
    BuOutputMessage(SeverityError, text.GetText());
}

[[gnu::cold]] void TellInvalidPointer(const char* file, int line)
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING,
                            BuLocalizeStringExW(L"MemLeakChecker: Invalid ptr in VxFree!! This memory might have been "
                                                L"freed already or is not allocated using VxMalloc! Called from file "
                                                L"%s at line %d",
                                                0),
                            BuString(file).GetText(), line);
}

// ---- Allocations ---------------------------------------------------------------------------------------------------

// The index of a new slot; NoIndex when memory is exhausted, or the provider has ended the check.
std::int32_t AddSlot(BlockHeader& header, const Allocation& allocation)
{
    leaks::State& state = leaks::TheState();
    leaks::CallStack stack = leaks::CaptureStack();
    if (!memory::LaysHeaders() || !state.tally.slots.MakeRoom()) {
        leaks::FreeStack(stack);
        return memory::NoIndex;
    }
    const std::int32_t index = g_state.slotCount;
    const char* const name = g_state.mode == 4 ? state.names.Find(allocation.file) : nullptr;
    leaks::AddSlot(header, name, allocation.line, allocation.sequence);
    state.tally.slots.SetStack(index, stack);
    return index;
}

// The header is written whatever happens to the slot: the caller's bytes begin behind it.
void TrackByHeader(const Allocation& allocation)
{
    auto* const header = static_cast<BlockHeader*>(allocation.block);
    const std::size_t size = allocation.size - memory::HeaderSize;
    std::memset(header + 1, 1, size);
    leaks::LayHeader(*header, size, AddSlot(*header, allocation), allocation.kind);
}

[[gnu::noinline]] void TrackByRecord(const Allocation& allocation)
{
    leaks::Tally& tally = leaks::TheState().tally;
    if (tally.records.Count() >= tally.reconciliationThreshold) {
        tally.reconciliationThreshold += leaks::ReconciliationStep;
        leaks::Reconcile();
    }
    leaks::CallStack stack = leaks::CaptureStack();
    leaks::Record record = {};
    record.SetStack(stack);
    record.sequence = allocation.sequence;
    std::memcpy(record.file, leaks::NameOfSource(allocation.file).text, sizeof record.file);
    record.block = allocation.block;
    record.size = static_cast<std::uint32_t>(allocation.size);
    record.line = static_cast<std::uint32_t>(allocation.line);
    record.kind = static_cast<std::uint32_t>(allocation.kind);
    if (!tally.records.Add(record)) {
        leaks::FreeStack(stack);
        return;
    }
    tally.bytesAllocated += record.size;
    tally.bytesInUse += record.size;
    tally.peakBytes = std::max(tally.peakBytes, tally.bytesInUse);
}

// ---- Releases ------------------------------------------------------------------------------------------------------

bool ReleaseWithHeader(BlockHeader* header, const char* file, int line)
{
    leaks::Tally& tally = leaks::TheState().tally;
    const std::int32_t index = header->index;
    if (index >= g_state.slotCount) {
        TellFreedAgain(file, line);
        return false;
    }
    if (index >= 0) {
        if (tally.slots[static_cast<std::size_t>(index)].block != header + 1) {
            TellInvalidPointer(file, line);
            return false;
        }
        std::memset(header + 1, 1, static_cast<std::size_t>(header->size));
        leaks::CallStack stack = {0, tally.slots[static_cast<std::size_t>(index)].frames};
        leaks::FreeStack(stack);
        tally.bytesInUse -= header->size;
        tally.slots.Remove(index);
    }
    memory::MarkReleased(*header);
    return true;
}

void ReleaseRecord(const void* block)
{
    leaks::Tally& tally = leaks::TheState().tally;
    const std::int64_t size = tally.records.Remove(block);
    if (size < 0)
        return;
    tally.bytesInUse -= size;
    tally.bytesFreed += size;
}

void NoteFreedBlock(const void* block)
{
    leaks::Tally& tally = leaks::TheState().tally;
    if (tally.freedBlocks.Append(block))
        return;
    leaks::Reconcile();
    leaks::RemoveFreed(block);
}

// What is noted as freed belongs to records that are gone.
void FreeRecordTable()
{
    leaks::TheState().tally.records.Clear();
    leaks::TheState().tally.freedBlocks.Clear();
}

}  // namespace

void leaks::OnAllocation(void* block, std::size_t size, const char* file, int line, int kind)
{
    if (!memory::IsActive())
        return;
    State& state = TheState();
    if (g_state.headerSuppression == 1) {
        ++state.tally.countedOnly;
        return;
    }
    const Allocation allocation = {block, size, FileOrDefault(file), line, kind, SequenceOf(state.tally.counter++)};
    if (block == nullptr)  // memory is exhausted
        return;
    const bool hasHeader = memory::LaysHeaders();
    if (state.tally.progress.TakeStep(state.tally.bytesInUse))
        TellProgress(state.tally.bytesInUse);
    if (g_state.mode == 3 && !state.tally.expected.Take(allocation.sequence))
        return;
    if (state.watch.IsSet() && g_state.mode >= 2)
        TellIfWatched(allocation);
    if (hasHeader)
        TrackByHeader(allocation);
    else if (!memory::IsHeaderMode())
        TrackByRecord(allocation);
}

bool leaks::OnRelease(void* block, const char* file, int line)
{
    if (g_state.releaseHasHeader)
        return ReleaseWithHeader(static_cast<BlockHeader*>(block), FileOrDefault(file), line);
    if (!memory::IsActive() || block == nullptr)
        return true;
    if (g_state.mode == 0)
        NoteFreedBlock(block);
    else if (g_state.mode == 1)
        ReleaseRecord(block);
    return true;
}

void leaks::InstallHooks()
{
    g_state.allocationHook = OnAllocation;
    g_state.releaseHook = OnRelease;
    g_state.freeRecordTable = FreeRecordTable;
    memory::DropShortcut();
}
