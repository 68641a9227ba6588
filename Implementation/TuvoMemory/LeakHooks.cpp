// What the checker does with each allocation and release that tracked allocation tells of.
//
// Messages come first: whoever receives one may allocate and free, so nothing is half done then, and what the message
// may have changed is asked again afterwards.

#include "TuvoMemory/LeakState.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Messages.h>
#include <basutl/BuLocalize.h>
#include <basutl/BuMessage.h>

#include <algorithm>
#include <array>
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

const char* FileOrDefault(const char* file)
{
    if (file != nullptr)
        return file;
    return g_state.defaultFile != nullptr ? g_state.defaultFile : "Unknown";
}

// ---- Messages ------------------------------------------------------------------------------------------------------

constexpr std::int64_t Megabyte = 1'000'000;

std::int64_t ProgressStep(std::int64_t megabytes)
{
    if (megabytes < 30)
        return 5;
    if (megabytes < 100)
        return 10;
    return megabytes < 1000 ? 30 : 50;
}

[[gnu::cold]] void TellProgress(std::int64_t bytes)
{
    const std::int64_t kilobytes = bytes / 1000;
    const std::int64_t megabytes = bytes / Megabyte;
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

[[gnu::noinline]] void TellProgressWhenDue()
{
    leaks::Tally& tally = leaks::TheState().tally;
    const std::int64_t megabytes = tally.bytesInUse / Megabyte;
    const std::int64_t step = ProgressStep(megabytes);
    if (megabytes >= tally.reportedMegabytes - step && megabytes <= tally.reportedMegabytes + step) [[likely]]
        return;
    tally.reportedMegabytes = megabytes;
    TellProgress(tally.bytesInUse);
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

using Ones = std::array<unsigned char, 16>;
constexpr Ones g_ones = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};

// Sets `size` bytes to 1 by so many stores, the last ones on top of each other when fewer would do.
template <std::size_t Stores>
void FillByStores(unsigned char* payload, std::size_t size)
{
    for (std::size_t i = 0; i < Stores; ++i)
        std::memcpy(payload + std::min(i * sizeof(Ones), size - sizeof(Ones)), &g_ones, sizeof(Ones));
}

// Sets the bytes of the caller to 1. Most blocks are small and of ever other sizes, where the branches of memset would be
// guessed wrong.
void FillPayload(BlockHeader* header, std::size_t size)
{
    auto* const payload = reinterpret_cast<unsigned char*>(header + 1);
    if (size < sizeof(Ones) || size > 8 * sizeof(Ones))
        std::memset(payload, 1, size);
    else if (size <= 2 * sizeof(Ones))
        FillByStores<2>(payload, size);
    else
        FillByStores<8>(payload, size);
}

// The index of a new slot for a block with a header; NoIndex when memory is exhausted, or the provider has ended the
// check. Fields are stored one by one: what was put together elsewhere would wait for itself when copied.
std::int32_t AddSlot(const Allocation& allocation)
{
    leaks::State& state = leaks::TheState();
    leaks::CallStack stack = {0, nullptr};
    if (g_state.callStackProvider != nullptr) [[unlikely]]
        stack = leaks::CaptureStack();
    leaks::Slot* const slot = memory::LaysHeaders() ? state.tally.slots.Add() : nullptr;
    if (slot == nullptr) [[unlikely]] {
        leaks::FreeStack(stack);
        return memory::NoIndex;
    }
    slot->block = static_cast<BlockHeader*>(allocation.block) + 1;
    slot->sequence = allocation.sequence;
    slot->file = g_state.mode == 4 ? state.names.Find(allocation.file) : nullptr;
    slot->line = slot->file != nullptr ? allocation.line : leaks::UnknownLine;
    slot->frameCount = stack.depth;
    slot->frames = stack.frames;
    return g_state.slotCount - 1;
}

// The header is written whatever happens to the slot: the caller's bytes begin behind it.
void TrackByHeader(const Allocation& allocation)
{
    auto* const header = static_cast<BlockHeader*>(allocation.block);
    const std::size_t size = allocation.size - memory::HeaderSize;
    FillPayload(header, size);
    header->index = AddSlot(allocation);
    header->size = static_cast<std::int32_t>(size);
    header->initialCount = memory::NoInitialCount;
    leaks::TheState().tally.bytesInUse += header->size;
    header->tag = static_cast<std::uint16_t>(memory::TagOfKind0 + allocation.kind);
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

void OnAllocation(void* block, std::size_t size, const char* file, int line, int kind)
{
    if (!memory::IsActive())
        return;
    leaks::State& state = leaks::TheState();
    if (g_state.headerSuppression == 1) {
        ++state.tally.countedOnly;
        return;
    }
    const Allocation allocation = {block, size, FileOrDefault(file),
                                   line,  kind, leaks::SequenceOf(state.tally.counter++)};
    if (block == nullptr)  // memory is exhausted
        return;
    const bool hasHeader = memory::LaysHeaders();
    if (state.tally.bytesInUse >= Megabyte)
        TellProgressWhenDue();
    if (g_state.mode == 3 && !state.tally.expected.Take(allocation.sequence))
        return;
    if (state.watch.IsSet() && g_state.mode >= 2)
        TellIfWatched(allocation);
    if (hasHeader)
        TrackByHeader(allocation);
    else if (!memory::IsHeaderMode())
        TrackByRecord(allocation);
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
        tally.bytesInUse -= header->size;
        FillPayload(header, static_cast<std::size_t>(header->size));
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

bool OnRelease(void* block, const char* file, int line)
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

// What is noted as freed belongs to records that are gone.
void FreeRecordTable()
{
    leaks::TheState().tally.records.Clear();
    leaks::TheState().tally.freedBlocks.Clear();
}

}  // namespace

void leaks::InstallHooks()
{
    g_state.allocationHook = OnAllocation;
    g_state.releaseHook = OnRelease;
    g_state.freeRecordTable = FreeRecordTable;
}
