#include <TuvoUtil/ArrayHelpers.h>
#include <TuvoUtil/Memory.h>

#include "support/ReportScope.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

// An array of elements that are not as long as any number: three characters each, shown as "abc.def".
struct Triples
{
    void* block = nullptr;
    int count = 0;
    static constexpr int size = 3;  // bytes

    explicit Triples(const std::string& text = {})
    {
        for (std::size_t i = 0; i < text.size(); i += 4) {
            UtlExpandArrayByOne(&block, &count, size);
            std::memcpy(static_cast<char*>(block) + i / 4 * size, &text[i], size);
        }
    }
    ~Triples() { VBuFree(block, __FILE__, __LINE__); }
    Triples(const Triples&) = delete;
    Triples& operator=(const Triples&) = delete;

    std::string Text() const
    {
        std::string text;
        for (int i = 0; i < count * size; ++i) {
            const char c = static_cast<const char*>(block)[i];
            text += (i > 0 && i % size == 0 ? "." : "") + std::string(1, c != '\0' ? c : '0');
        }
        return text;
    }
};

TEST(ArrayHelpers, InsertsAZeroElementAndRemovesOne)
{
    const struct
    {
        const char* before;
        int index;
        const char* inserted;
        const char* removed;
    } rows[] = {
        {"abc.def.ghi", 0, "000.abc.def.ghi", "def.ghi"},
        {"abc.def.ghi", 1, "abc.000.def.ghi", "abc.ghi"},
        {"abc.def.ghi", 2, "abc.def.000.ghi", "abc.def"},
        {"abc.def.ghi", 3, "abc.def.ghi.000", "abc.def"},  // outside the array from here on
        {"abc.def.ghi", -1, "abc.def.ghi.000", "abc.def"},
        {"abc.def.ghi", INT_MAX, "abc.def.ghi.000", "abc.def"},
        {"abc", 7, "abc.000", ""},
        {"", 0, "000", ""},
    };
    for (const auto& row : rows) {
        Triples grown(row.before);
        UtlInsertArrayMember(&grown.block, &grown.count, Triples::size, row.index);
        EXPECT_EQ(grown.Text(), row.inserted) << row.before << ' ' << row.index;
        Triples shrunk(row.before);
        UtlRemoveArrayMember(&shrunk.block, &shrunk.count, Triples::size, row.index);
        EXPECT_EQ(shrunk.Text(), row.removed) << row.before << ' ' << row.index;
        EXPECT_EQ(shrunk.block == nullptr, shrunk.count == 0);
    }
}

TEST(ArrayHelpers, ExpandsEmptyArraysAnew)
{
    char foreign = 'x';
    void* array = &foreign;
    int count = 0;
    UtlExpandArrayByOne(&array, &count, 1);
    ASSERT_TRUE(array != nullptr && array != &foreign);
    EXPECT_EQ(*static_cast<char*>(array), '\0');
    UtlFreeAndInit(&array);
    count = 4;
    UtlExpandArrayByOne(&array, &count, 2);  // a count, but no array: all its elements are zero
    EXPECT_EQ(std::string(static_cast<char*>(array), 10), std::string(10, '\0'));
    UtlFreeAndInit(&array);
    EXPECT_EQ(array, nullptr);
}

TEST(ArrayHelpers, ExpandingTellsOfWhatItCannotHave)
{
    ReportScope reports;
    const int rows[][3] = {{0, 0, 1}, {0, -1, 1}, {3, -8, 4}, {-7, 4, -6}, {-1, 4, 0}, {INT_MAX, 4, INT_MIN}};
    for (const auto& [before, elementSize, after] : rows) {
        void* array = nullptr;
        int count = before;
        UtlExpandArrayByOne(&array, &count, elementSize);
        EXPECT_EQ(array, nullptr);
        EXPECT_EQ(count, after);
        EXPECT_TRUE(reports.TakeErrors().ends_with("SEVERE ERROR : memory not available  !!\n")) << before;
    }
}

TEST(ArrayHelpers, ReplacesAPointerByMany)
{
    char letters[] = "pqrst";
    const struct
    {
        const char* before;
        int index;
        const char* inserted;
        int newCount;
        const char* after;
    } rows[] = {
        {"pqr", 1, "st", 2, "pstr"},   {"pqr", 0, "st", 2, "stqr"},      {"pqr", 2, "st", 2, "pqst"},
        {"pqr", 1, "s", 1, "psr"},     {"pqr", 0, "", 0, "qr"},          {"pqr", 1, "", 0, "pr"},
        {"pqr", 2, "", 0, "pq"},       {"p", 0, "qrst", 4, "qrst"},      {"p", 0, "", 0, ""},
        {"pqr", 3, "st", 2, "pqr"},    {"pqr", -1, "st", 2, "pqr"},      {"pqr", 1, "", -1, "pqr"},
        {"pqr", 1, nullptr, 2, "pqr"}, {"pqr", 1, "st", INT_MAX, "pqr"},
    };
    const auto pointers = [&](const char* text) {
        std::vector<void*> found;
        for (; text != nullptr && *text != '\0'; ++text)
            found.push_back(std::strchr(letters, *text));
        return found;
    };
    for (const auto& row : rows)
        for (const int elementSize : {int{sizeof(void*)}, 4, 16}) {
            int count = 0;
            void** array = nullptr;
            for (void* const pointer : pointers(row.before)) {
                UtlExpandArrayByOne(reinterpret_cast<void**>(&array), &count, sizeof pointer);
                array[count - 1] = pointer;
            }
            std::vector<void*> inserted = pointers(row.inserted);
            EXPECT_EQ(UtlReplaceMemberWithArray(&array, &count, elementSize, row.index, row.newCount,
                                                row.inserted != nullptr ? inserted.data() : nullptr),
                      0);
            EXPECT_EQ(std::vector<void*>(array, array + count), pointers(row.after)) << &row - rows;
            EXPECT_EQ(array == nullptr, count == 0);
            VBuFree(array, __FILE__, __LINE__);
        }
}

TEST(ArrayHelpers, ExchangesTwoElements)
{
    Triples triples("abc.def.ghi");
    UtlSwapArrayMembers(&triples.block, 2, 0, Triples::size);
    EXPECT_EQ(triples.Text(), "ghi.def.abc");
    UtlSwapArrayMembers(&triples.block, 1, 1, Triples::size);
    UtlSwapArrayMembers(&triples.block, -1, 0, Triples::size);
    UtlSwapArrayMembers(&triples.block, 0, 1, -3);
    EXPECT_EQ(triples.Text(), "ghi.def.abc");
}

TEST(ArrayHelpers, ReallocatesForOneMore)
{
    void* array = nullptr;
    UtlReCalloc(&array, 3, 4);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(std::string(static_cast<char*>(array), 12), std::string(12, '\0'));
    std::memset(array, 'x', 12);
    UtlReCalloc(&array, 4, 4);
    EXPECT_EQ(std::string(static_cast<char*>(array), 16), std::string(12, 'x') + std::string(4, '\0'));
    void* linked = &linked;
    void* const block = UtlCallocAndLink(&linked, 300, 300);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block, linked);
    EXPECT_EQ(std::string(static_cast<char*>(linked), 90000), std::string(90000, '\0'));
    UtlFreeAndInit(&linked);

    ReportScope reports;
    UtlReCalloc(&array, 0, 4);  // frees it
    EXPECT_EQ(array, nullptr);
    for (const short bad : {short{0}, short{-1}, short{SHRT_MIN}}) {
        linked = &linked;
        EXPECT_EQ(UtlCallocAndLink(&linked, bad, 4), nullptr);
        EXPECT_EQ(linked, nullptr);
        UtlReCalloc(&array, 4, bad);
        EXPECT_EQ(array, nullptr);
    }
}

TEST(ArrayHelpers, FreesRowsAndTheirArray)
{
    void* row = nullptr;
    ASSERT_NE(UtlCallocAndLink(&row, 1, 10), nullptr);
    for (const int count : {-1, 3}) {  // the array alone, and with its rows
        void* block = nullptr;
        void** const rows = static_cast<void**>(UtlCallocAndLink(&block, 3, sizeof row));
        rows[2] = row;
        UtlFree2DArray(0, rows);
        std::memset(rows[2], 1, 10);  // everything is still there
        UtlFree2DArray(count, rows);
    }
}

TEST(ArrayHelpers, DoNothingWithoutAnArray)
{
    void* none = nullptr;
    void** pointers = nullptr;
    int count = 2;
    UtlExpandArrayByOne(nullptr, &count, 4);
    UtlExpandArrayByOne(&none, nullptr, 4);
    UtlInsertArrayMember(&none, nullptr, 4, 0);
    UtlRemoveArrayMember(&none, &count, 4, 0);
    UtlReplaceMemberWithArray(&pointers, &count, 8, 0, 0, nullptr);
    UtlSwapArrayMembers(&none, 0, 1, 4);
    EXPECT_EQ(UtlCallocAndLink(nullptr, 1, 1), nullptr);
    UtlReCalloc(nullptr, 1, 1);
    UtlFree2DArray(2, nullptr);
    UtlFreeAndInit(nullptr);
    EXPECT_TRUE(none == nullptr && pointers == nullptr && count == 2);
}

}  // namespace
