#include "TuvoMemory/FirstMatchIndex.h"

#include "support/AllocationControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

struct Record
{
    std::string name;
    bool isListed;
};

struct ByName
{
    using Record = ::Record;
    using Key = const char*;
    static bool IsListed(const Record& record) { return record.isListed; }
    static Key KeyOf(const Record& record) { return record.name.c_str(); }
    static std::uint32_t HashOf(Key key) { return HashOfTextNoCase(key); }
    static bool AreEqual(Key left, Key right) { return BuCompareNoCase(left, right) == 0; }
};

// All keys share one hash.
struct ByNameColliding : ByName
{
    static std::uint32_t HashOf(Key) { return 5; }
};

int FindOneByOne(const std::vector<Record>& records, int count, const std::string& name)
{
    const auto end = records.begin() + count;
    const auto found = std::find_if(records.begin(), end, [&name](const Record& record) {
        return record.isListed && BuCompareNoCase(record.name.c_str(), name.c_str()) == 0;
    });
    return found == end ? -1 : static_cast<int>(found - records.begin());
}

std::vector<Record> RandomRecords(unsigned int seed, std::size_t count)
{
    constexpr char alphabet[] = "abAB\xC3";
    std::mt19937 random(seed);
    std::vector<Record> records(count);
    for (Record& record : records) {
        record.name.resize(random() % 4);
        for (char& c : record.name)
            c = alphabet[random() % 5];
        record.isListed = random() % 8 != 0;
    }
    return records;
}

// Shows the index an array that grows by a few records at a time, looks for names of records that are in it and that are
// not, and compares with a search of the whole array. Takes no memory of its own.
template <typename Traits>
void CompareWhileGrowing(const std::vector<Record>& records)
{
    FirstMatchIndex<Traits> index("test");
    const int length = static_cast<int>(records.size());
    for (int count = 0; count <= length; count += count % 4 + 1) {
        const std::string& name = records[static_cast<std::size_t>((count * 7 + 5) % length)].name;
        ASSERT_EQ(index.Find(records.data(), count, name.c_str()), FindOneByOne(records, count, name))
            << count << " records, name " << name;
    }
}

TEST(FirstMatchIndex, AgreesWithASearchWhileTheArrayGrows)
{
    for (unsigned int seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(seed);
        CompareWhileGrowing<ByName>(RandomRecords(seed, 300));
        CompareWhileGrowing<ByNameColliding>(RandomRecords(seed, 100));
    }
}

TEST(FirstMatchIndex, AgreesWithASearchWhereverMemoryRunsOut)
{
    const std::vector<Record> records = RandomRecords(3, 200);
    EXPECT_GT(allocation::ForEachFailure([&] { CompareWhileGrowing<ByName>(records); }), 3);
    allocation::FailFrom(2);  // for good
    CompareWhileGrowing<ByName>(records);
    EXPECT_TRUE(allocation::HasFailed());
    allocation::FailFrom(0);
}

TEST(FirstMatchIndex, KnowsWhetherKeysAreUnique)
{
    const std::vector<Record> records = {{"a", true}, {"b", true}, {"A", false}, {"B", true}};
    FirstMatchIndex<ByName> index("test");
    index.Find(records.data(), 3, "");
    EXPECT_TRUE(index.KeysAreUnique(3)) << "a record that is not listed counted";
    EXPECT_FALSE(index.KeysAreUnique(4)) << "answered for a record that was not seen";
    index.Find(records.data(), 4, "");
    EXPECT_FALSE(index.KeysAreUnique(4));
    index.Clear();
    EXPECT_EQ(index.Find(records.data(), 2, "B"), 1);
    EXPECT_TRUE(index.KeysAreUnique(2));
}

}  // namespace
