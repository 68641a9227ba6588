#include <TuvoUtil/BinaryRead.h>
#include <TuvoUtil/Memory.h>

#include "support/AllocationControl.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(BinaryReadMemory, ATextIsGivenWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    folder.Write("bytes", std::string("\3\0abc", 5));
    std::FILE* const stream = std::fopen(folder.NarrowPath("bytes").c_str(), "rb");
    EXPECT_EQ(allocation::ForEachFailure([&] {
                  std::rewind(stream);
                  char* const text = UtlReadVariableString(stream, 0);
                  EXPECT_EQ(std::string(text != nullptr ? text : "null"), allocation::HasFailed() ? "null" : "abc");
                  EXPECT_EQ(std::ftell(stream), allocation::HasFailed() ? 2 : 5);
                  VBuFree(text, __FILE__, __LINE__);
              }),
              1);
    std::fclose(stream);
}

}  // namespace
