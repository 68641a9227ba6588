// Sorting texts. std::stable_sort takes memory where it can and needs none.

#include <TuvoUtil/StringClean.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

std::size_t DigitCount(const char* text)
{
    std::size_t count = 0;
    while (BuIsDigit(text[count]))
        ++count;
    return count;
}

const char* SkipZeros(const char* digits)
{
    while (*digits == '0')
        ++digits;
    return digits;
}

// Compares the numbers that two texts begin with, and moves both behind them.
int CompareNumbers(const char*& left, const char*& right)
{
    const char* const l = SkipZeros(left);
    const char* const r = SkipZeros(right);
    const std::size_t leftCount = DigitCount(l);
    const std::size_t rightCount = DigitCount(r);
    left = l + leftCount;
    right = r + rightCount;
    if (leftCount != rightCount)
        return leftCount < rightCount ? -1 : 1;
    return std::memcmp(l, r, leftCount);
}

int CompareAlphaNumeric(const char* left, const char* right)
{
    for (;;) {
        if (BuIsDigit(*left) && BuIsDigit(*right)) {
            if (const int order = CompareNumbers(left, right))
                return order;
            continue;
        }
        const auto l = static_cast<unsigned char>(BuToLower(*left));
        const auto r = static_cast<unsigned char>(BuToLower(*right));
        if (l != r)
            return l < r ? -1 : 1;
        if (l == '\0')
            return 0;
        ++left;
        ++right;
    }
}

// Whether one text goes before another, null ones being the last.
template <int Compare(const char*, const char*)>
bool GoesBefore(const char* left, const char* right)
{
    if (left == nullptr || right == nullptr)
        return left != nullptr && right == nullptr;
    return Compare(left, right) < 0;
}

}  // namespace

void UtlSortStringInAlphabaticOrder(int count, char** strings)
{
    if (strings != nullptr && count > 1)
        std::stable_sort(strings, strings + count, GoesBefore<BuCompareNoCase<char>>);
}

void UtlSortStringInAlphaNumricOrder(int count, char** strings)
{
    if (strings != nullptr && count > 1)
        std::stable_sort(strings, strings + count, GoesBefore<CompareAlphaNumeric>);
}

void UtlSortColumnArrayGivenColumnIndex(int rowCount, char*** rows, int columnIndex)
{
    if (rows == nullptr || rowCount < 2 || columnIndex < 0)
        return;
    const auto cell = [columnIndex](char* const* row) { return row != nullptr ? row[columnIndex] : nullptr; };
    std::stable_sort(rows, rows + rowCount, [&](char* const* left, char* const* right) {
        return GoesBefore<CompareAlphaNumeric>(cell(left), cell(right));
    });
}
