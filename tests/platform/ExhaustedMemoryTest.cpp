#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/ChildProcess.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>

namespace {

CHILD_SCENARIO(DoNothing)
{
    return 0;
}

class ExhaustedMemory : public testing::Test
{
protected:
    // Lets each allocation of `work` fail in turn. `work` gives whether it succeeded: true at the end, and false when an
    // allocation failed, unless it could do without.
    template <typename Work>
    static void ExpectFailures(Work work)
    {
        bool isDone = false;
        EXPECT_GE(allocation::ForEachFailure([&] { isDone = work(); }), 1);
        EXPECT_TRUE(isDone);
    }
    TemporaryFolder m_folder;
    // Long enough for no text to live without an allocation.
    const std::wstring m_file = m_folder.Write("a file with a name of some length", "text");
    const std::wstring m_other = m_folder.Path("another file with a name of some length");
};

TEST_F(ExhaustedMemory, FileCallsGiveTheirFailureValue)
{
    ExpectFailures([&] {
        std::FILE* const file = platform::OpenFile(m_file.c_str(), L"r");
        return file != nullptr && std::fclose(file) == 0;
    });
    platform::FileStatus status;
    ExpectFailures([&] { return platform::Access(m_file.c_str(), 4) == 0; });
    allocation::FailOnce(1);
    EXPECT_FALSE(platform::Status(m_file.c_str(), status));
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_NE(platform::NativeErrorText(platform::LastNativeError()).find(L"emory"), std::wstring::npos);
    ExpectFailures([&] { return platform::Status(m_file.c_str(), status); });
    ExpectFailures([&] { return !platform::IsLink(m_file.c_str()); });
    ExpectFailures([&] { return platform::CreateOneDirectory(m_folder.Path().c_str()); });
    ExpectFailures([&] { return platform::CopyOneFile(m_file.c_str(), m_other.c_str()); });
    ExpectFailures([&] { return platform::MoveOneFile(m_other.c_str(), m_file.c_str()); });
    ExpectFailures([&] { return platform::RemoveOneFile(m_other.c_str()); });
    std::vector<std::wstring> names;
    ExpectFailures([&] {
        const bool isListed = platform::ListDirectory(m_folder.Path().c_str(), names);
        EXPECT_EQ(names.size(), isListed ? 1u : 0u);
        return isListed;
    });
    ExpectFailures([&] { return platform::RemoveOneFile(m_file.c_str()); });
    ExpectFailures([&] { return platform::RemoveEmptyDirectory(m_folder.Path().c_str()); });
}

TEST_F(ExhaustedMemory, ProgramsAreNotStarted)
{
    const std::vector<std::wstring> command = ChildCommand("DoNothing");
    const std::wstring output = m_folder.Path("the output of the program");
    ExpectFailures([&] {
        const int status = platform::RunProgram(command, {m_file.c_str(), output.c_str(), nullptr});
        EXPECT_TRUE(status == 0 || status == -1) << status;
        return status == 0;
    });
}

TEST_F(ExhaustedMemory, StacksAndProcessorsStayUnknown)
{
    void* addresses[4];
    ASSERT_EQ(platform::CaptureStack(addresses, 4, 0), 4);
    platform::ResolvedAddress resolved;
    ExpectFailures([&] { return platform::ResolveAddress(addresses[0], resolved); });
    ExpectFailures([&] {
        std::size_t count = 7;
        platform::ProcessorRecord* const records = platform::ReadProcessorRecords(std::malloc, count);
        EXPECT_EQ(records != nullptr, count > 0);
        std::free(records);
        return count > 0;
    });
}

}  // namespace
