#include "support/AllocationControl.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <thread>

// The linker sends the libraries' calls of the C allocator here (--wrap). operator new goes past the count, since the
// test framework uses it too, but not past the failures.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void __wrap_free(void* block);
}

namespace {

constinit int g_liveBlocks = 0;
constinit int g_untilFailure = 0;  // 0: no failure is planned
constinit bool g_failOnce = false;
constinit bool g_hasFailed = false;

bool FailsNow()
{
    if (g_untilFailure == 0 || --g_untilFailure > 0)
        return false;
    g_untilFailure = g_failOnce ? 0 : 1;
    g_hasFailed = true;
    return true;
}

void Plan(int n, bool once)
{
    g_untilFailure = n;
    g_failOnce = once;
    g_hasFailed = false;
}

void* Counted(void* block)
{
    g_liveBlocks += block != nullptr;
    return block;
}

void* New(std::size_t size)
{
    return FailsNow() ? nullptr : __real_malloc(size == 0 ? 1 : size);
}

// Fails a test that leaves a block of the libraries behind.
class LeakListener : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override { m_before = g_liveBlocks; }
    void OnTestEnd(const testing::TestInfo& test) override
    {
        if (test.result()->Passed() && g_liveBlocks != m_before)
            ADD_FAILURE() << test.test_suite_name() << '.' << test.name() << " leaves " << g_liveBlocks - m_before
                          << " blocks behind";
    }
    int m_before = 0;
};

// The runtime of mingw allocates what it then keeps at the first thread, at the first exception, and at the first
// exception that finds no memory; when it finds none for that either, the stack overflows.
void WarmUpRuntime()
{
    std::thread([] {}).join();
    for (const int failing : {0, 1}) {
        Plan(failing, true);
        try {
            throw 0;
        } catch (int) {
        }
    }
    Plan(0, false);
}

[[maybe_unused]] const bool g_installed = [] {
    WarmUpRuntime();
    testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    std::thread([] {}).join();  // a runtime keeps a block from its first thread on
    return true;
}();

}  // namespace

void* __wrap_malloc(std::size_t size)
{
    return FailsNow() ? nullptr : Counted(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size)
{
    return FailsNow() ? nullptr : Counted(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, std::size_t size)
{
    if (FailsNow())
        return nullptr;
    void* const moved = __real_realloc(block, size);
    if (block == nullptr)
        return Counted(moved);
    g_liveBlocks -= size == 0 && moved == nullptr;
    return moved;
}

void __wrap_free(void* block)
{
    g_liveBlocks -= block != nullptr;
    __real_free(block);
}

void* operator new(std::size_t size)
{
    if (void* const block = New(size))
        return block;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return New(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return New(size);
}

void operator delete(void* block) noexcept
{
    __real_free(block);
}

void operator delete[](void* block) noexcept
{
    __real_free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    __real_free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    __real_free(block);
}

int allocation::LiveBlocks()
{
    return g_liveBlocks;
}

void allocation::FailFrom(int n)
{
    Plan(n, false);
}

void allocation::FailOnce(int n)
{
    Plan(n, true);
}

bool allocation::HasFailed()
{
    return g_hasFailed;
}
