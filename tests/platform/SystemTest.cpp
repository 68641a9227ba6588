#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>
#include <span>

namespace {

constexpr int Capacity = 64;

// Functions that a stack is to be recognised by. What they do after the call keeps them on it.
[[gnu::noinline]] int InnermostTestFunction(void** addresses, int capacity, int skip)
{
    const int count = platform::CaptureStack(addresses, capacity, skip);
    addresses[0] = count > 0 ? addresses[0] : nullptr;
    return count;
}

[[gnu::noinline]] int MiddleTestFunction(void** addresses, int capacity, int skip)
{
    const int count = InnermostTestFunction(addresses, capacity, skip);
    addresses[0] = count > 0 ? addresses[0] : nullptr;
    return count;
}

// One body for all calls, so that only the innermost frames differ.
std::vector<void*> CaptureHere(int capacity, int skip)
{
    std::vector<void*> addresses(Capacity);
    addresses.resize(static_cast<std::size_t>(MiddleTestFunction(addresses.data(), capacity, skip)));
    return addresses;
}

TEST(CallStack, InnermostFunctionsComeFirstWithTheirLines)
{
    const std::vector<void*> stack = CaptureHere(Capacity, 0);
    ASSERT_GE(stack.size(), 3u);
    const struct
    {
        const char* name;
        int (*function)(void**, int, int);
    } expected[] = {{"InnermostTestFunction", InnermostTestFunction}, {"MiddleTestFunction", MiddleTestFunction}};
    for (std::size_t i = 0; i < 2; ++i) {
        platform::ResolvedAddress resolved;
        ASSERT_TRUE(platform::ResolveAddress(stack[i], resolved));
        EXPECT_NE(resolved.function.find(expected[i].name), std::string::npos) << resolved.function;
        EXPECT_EQ(resolved.start, reinterpret_cast<std::uintptr_t>(expected[i].function));
        EXPECT_NE(resolved.file.find("SystemTest.cpp"), std::string::npos) << resolved.file;
        EXPECT_GT(resolved.line, 0);
        EXPECT_EQ(resolved.lineError, 0u);
    }
}

TEST(CallStack, SkipAndCapacityCutTheTwoEnds)
{
    const std::vector<void*> whole = CaptureHere(Capacity, 0);
    const std::vector<void*> skipped = CaptureHere(Capacity, 2);
    ASSERT_EQ(skipped.size(), whole.size() - 2);
    EXPECT_EQ(skipped[0], whole[2]);
    EXPECT_NE(skipped[1], whole[3]) << "two lines of this test";
    EXPECT_TRUE(std::equal(skipped.begin() + 2, skipped.end(), whole.begin() + 4));
    EXPECT_EQ(CaptureHere(2, 0), std::vector<void*>(whole.begin(), whole.begin() + 2));
    EXPECT_EQ(CaptureHere(Capacity, 1'000'000).size(), 0u);
    EXPECT_EQ(CaptureHere(0, 0).size(), 0u);
    EXPECT_EQ(platform::CaptureStack(nullptr, 5, 0), 0);
}

TEST(CallStack, CapturingAllocatesNothing)
{
    void* addresses[Capacity];
    allocation::FailFrom(1);
    const int count = InnermostTestFunction(addresses, Capacity, 0);
    const bool hasAsked = allocation::HasFailed();
    allocation::FailFrom(0);
    EXPECT_GT(count, 2);
    EXPECT_FALSE(hasAsked);
}

TEST(CallStack, AnAddressOfNoFunctionIsNotResolved)
{
    const auto block = std::make_unique<int>();
    for (const void* const address : {static_cast<const void*>(nullptr), static_cast<const void*>(block.get())}) {
        platform::ResolvedAddress resolved = {"left over", 1, "left over", 1, 1};
        EXPECT_FALSE(platform::ResolveAddress(address, resolved));
        EXPECT_EQ(resolved.function + resolved.file, "");
        EXPECT_EQ(resolved.start, 0u);
        EXPECT_EQ(resolved.line, -1);
        EXPECT_NE(resolved.lineError, 0u);
    }
}

TEST(Modules, AnAddressLeadsToItsFile)
{
    static const char ours = 0;
    const std::wstring file = platform::ModuleFile(&ours);
    EXPECT_NE(file.find(L"static_tests"), std::wstring::npos);
    EXPECT_EQ(platform::CanonicalPath(file.c_str()), file);
    EXPECT_TRUE(platform::PinModule(&ours));
    const auto block = std::make_unique<int>();
    for (const void* const none : {static_cast<const void*>(nullptr), static_cast<const void*>(block.get())}) {
        EXPECT_EQ(platform::ModuleFile(none), L"");
        EXPECT_FALSE(platform::PinModule(none));
    }
}

TEST(Processors, ThisMachineHasSomeAndWeMayUseThem)
{
    std::size_t count = 0;
    platform::ProcessorRecord* const records = platform::ReadProcessorRecords(std::malloc, count);
    unsigned int processors = 0;
    int packages = 0;
    for (const platform::ProcessorRecord& record : std::span(records, count)) {
        const bool isCore = record.relation == platform::ProcessorRelation::Core;
        const bool isPackage = record.relation == platform::ProcessorRelation::Package;
        EXPECT_TRUE(record.processorMask != 0 || !(isCore || isPackage));
        processors += isCore ? static_cast<unsigned int>(std::popcount(record.processorMask)) : 0;
        packages += isPackage;
    }
    EXPECT_GE(packages, 1);
    EXPECT_GE(platform::UsableProcessors(), 1u);
    EXPECT_LE(platform::UsableProcessors(), processors);
    std::free(records);
    EXPECT_EQ(platform::ReadProcessorRecords([](std::size_t) -> void* { return nullptr; }, count), nullptr);
    EXPECT_EQ(count, 0u);
}

TEST(Errors, TextsAreOneLineEach)
{
    for (const int code : {2, 5, 123'456'789, -1}) {
        const std::wstring text = platform::NativeErrorText(code);
        EXPECT_NE(text, L"") << code;
        EXPECT_EQ(text.find_first_of(L"\r\n"), std::wstring::npos) << code;
    }
    EXPECT_NE(platform::NativeErrorText(2), platform::NativeErrorText(5));
    platform::FileStatus status;
    platform::Status(L"no file of this name", status);
    EXPECT_EQ(platform::LastNativeError(), 2);
}

CHILD_SCENARIO(CountTerminals)
{
    platform::WriteDebugOutput(L"to a debugger, if any");
    return platform::IsTerminal(0) + platform::IsTerminal(1) + platform::IsTerminal(2);
}

TEST(Console, FilesAreNoTerminals)
{
    const ChildResult result = RunChild("CountTerminals");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_FALSE(platform::IsTerminal(-1));
    EXPECT_FALSE(platform::IsTerminal(3));
}

}  // namespace
