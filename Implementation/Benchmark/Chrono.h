// The chronometer of one section, and the steps that it recorded.
#pragma once

#include <TuvoUtil/Benchmark.h>
#include <basutl/BuCRTAllocator.h>
#include <basutl/BuChrono.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <new>

namespace tuvo::benchmark {

using ChronoItem = BuTreeItemTempl<Benchmark::Chrono*, BuCRTAllocator>;

constexpr float Unmeasured = -1e32F;

enum class StepKind : int
{
    Recorded = 0,
    NestedSection = 1,
    End = 2
};

struct Step
{
    BuString name;                              // empty for a nested section
    const Benchmark::Chrono* nested = nullptr;  // tells which one it was; it may be gone
    float time = Unmeasured;                    // seconds since the section began, or the total of the nested one
    StepKind kind = StepKind::Recorded;
};

// It lives as long as the tree or a Benchmark holds it: a copy of a Benchmark may outlast the report. Name and
// chronometer share one block.
class Benchmark::Chrono
{
public:
    // Null when memory is exhausted. It is held by the tree and by one Benchmark.
    static Chrono* Create(const wchar_t* name, float thresholdSec) noexcept
    {
        const std::size_t size = (std::wcslen(name) + 1) * sizeof(wchar_t);
        void* const memory = BuCRTAllocator::Allocate(sizeof(Chrono) + size);
        if (memory == nullptr)
            return nullptr;
        std::memcpy(static_cast<char*>(memory) + sizeof(Chrono), name, size);
        return ::new (memory) Chrono(thresholdSec);
    }
    virtual ~Chrono() = default;
    Chrono(const Chrono&) = delete;
    Chrono& operator=(const Chrono&) = delete;
    // NOLINTNEXTLINE(misc-new-delete-overloads): Create makes room for the name as well
    static void operator delete(void* block) noexcept { BuCRTAllocator::Release(block); }

    float Seconds() const noexcept { return BuChrono::FromTickCountToMillisec(m_chrono.GetIntermediate(), 1000.0); }
    const wchar_t* Name() const noexcept { return reinterpret_cast<const wchar_t*>(this + 1); }
    bool IsOpen() const noexcept { return m_isOpen; }

    void Stop() noexcept
    {
        m_elapsed = m_chrono.GetElapsed(1);
        m_isOpen = false;
    }

    // Seconds. Converted where they are needed: the next section's reading of the clock would wait for it.
    float Total() const noexcept
    {
        return m_isOpen ? Unmeasured : BuChrono::FromTickCountToMillisec(m_elapsed, 1000.0);
    }

    // Whether it lasted at least its threshold. Most that did not are told by their ticks alone.
    bool IsShown() const noexcept
    {
        const double tooShort = std::min(static_cast<double>(threshold) * 0.999e9, 9e18);
        return m_elapsed >= static_cast<long long>(tooShort) && threshold <= Total();
    }

    void AddHolder() noexcept { ++m_holders; }
    void RemoveHolder() noexcept
    {
        if (--m_holders == 0)
            delete this;
    }

private:
    explicit Chrono(float thresholdSec) noexcept : threshold(thresholdSec) {}

    BuChrono m_chrono{0, 0};
    long long m_elapsed = 0;  // ticks
    int m_holders = 2;
    bool m_isOpen = true;

public:
    const float threshold;  // seconds
    BuObjectArrayTempl<Step> steps;
};

}  // namespace tuvo::benchmark
