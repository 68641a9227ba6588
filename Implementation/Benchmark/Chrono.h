// The chronometer of one section, and the steps that it recorded.
#pragma once

#include <TuvoUtil/Benchmark.h>
#include <basutl/BuCRTAllocator.h>
#include <basutl/BuChrono.h>

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
    static void operator delete(void* block) noexcept { BuCRTAllocator::Release(block); }

    float Seconds() const noexcept { return BuChrono::FromTickCountToMillisec(m_chrono.GetIntermediate(), 1000.0); }
    float StopAndGetSeconds() noexcept { return BuChrono::FromTickCountToMillisec(m_chrono.GetElapsed(1), 1000.0); }
    const wchar_t* Name() const noexcept { return reinterpret_cast<const wchar_t*>(this + 1); }
    bool IsShown() const noexcept { return threshold <= total; }

    void AddHolder() noexcept { ++m_holders; }
    void RemoveHolder() noexcept
    {
        if (--m_holders == 0)
            delete this;
    }

private:
    explicit Chrono(float thresholdSec) noexcept : threshold(thresholdSec) {}

    BuChrono m_chrono{0, 0};

public:
    float threshold;  // seconds
    BuObjectArrayTempl<Step> steps;
    float total = Unmeasured;  // seconds
    bool isOpen = true;

private:
    int m_holders = 2;
};

}  // namespace tuvo::benchmark
