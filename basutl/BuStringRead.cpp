#include "basutl/BuNumberScan.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

// ---- Lines and words -----------------------------------------------------------------------------------------------

bool BuString::ExtractLine(int& position, BuString& line) const noexcept
try {
    const auto first = static_cast<std::size_t>(std::max(position, 0));
    if (first >= m_text.size()) {
        line.Empty();
        return false;
    }
    const std::size_t last = std::min(m_text.find(L'\n', first), m_text.size());
    const std::size_t next = std::min(last + 1, m_text.size());
    line.m_text.assign(m_text, first, last - first);
    position = static_cast<int>(next);
    return true;
} catch (const std::exception&) {
    line.Empty();
    return false;
}

int BuString::ExtractWords(BuObjectArrayTempl<BuString>& words, const wchar_t* delimiters, wchar_t quote) const noexcept
try {
    std::wstring separators = delimiters != nullptr ? delimiters : L"";
    std::wstring wordEnds = separators;
    if (quote != 0) {
        std::erase(separators, quote);
        wordEnds += quote;
    }
    BuObjectArrayTempl<BuString> found;
    std::size_t next = 0;
    while ((next = m_text.find_first_not_of(separators, next)) != std::wstring::npos) {
        const bool isQuoted = quote != 0 && m_text[next] == quote;
        const std::size_t first = next + isQuoted;
        const std::size_t end = isQuoted ? m_text.find(quote, first) : m_text.find_first_of(wordEnds, first);
        const std::size_t last = std::min(end, m_text.size());
        BuString word;
        word.m_text.assign(m_text, first, last - first);
        if (found.Add(std::move(word)) < 0)
            return -1;
        next = last + isQuoted;
    }
    words.Swap(found);
    return words.GetCount();
} catch (const std::exception&) {
    return -1;
}

// ---- Numbers -------------------------------------------------------------------------------------------------------

bool BuString::TrimLeftNumber(int& value) noexcept
{
    using Limits = std::numeric_limits<int>;
    const wchar_t* end = nullptr;
    const long long number = number::ReadInteger(GetText(), 10, &end);
    if (end == GetText())
        return false;
    value = static_cast<int>(std::clamp<long long>(number, Limits::min(), Limits::max()));
    m_text.erase(0, static_cast<std::size_t>(end - GetText()));
    return true;
}

int BuString::ToInt(int base) const noexcept
{
    if (base < 2 || base > 36)
        return 0;
    const wchar_t* end = nullptr;
    return static_cast<int>(number::ReadInteger(number::SkipSpaces(GetText()), base, &end));
}

double BuString::ToDouble() const noexcept
try {
    const auto isOfNumber = [](wchar_t c) { return c == L'+' || c == L'-' || c == L'.' || number::DigitValue(c) < 36; };
    const wchar_t* const first = number::SkipSpaces(GetText());
    std::string narrow;
    for (const wchar_t* next = first; isOfNumber(*next); ++next)
        narrow += static_cast<char>(*next);
    return BuReadDouble(narrow.c_str());
} catch (const std::exception&) {
    return 0.0;
}

BuString BuString::FromDouble(double value, int decimals) noexcept
{
    BuString text;
    text.Format(L"%.*f", std::max(decimals, 0), value);
    return text;
}

// ---- Order ---------------------------------------------------------------------------------------------------------

namespace {

// The UTF-16 units of a text one after the other, 0 at its end.
class Units
{
public:
    explicit Units(const wchar_t* text) : m_next(text) {}

    unsigned int Next()
    {
        if (m_trail != 0)
            return std::exchange(m_trail, 0u);
        const auto code = static_cast<unsigned int>(*m_next);
        m_next += code != 0;
        if (code < 0x10000)
            return code;
        m_trail = 0xDC00 + (code & 0x3FF);
        return 0xD7C0 + (code >> 10);
    }

private:
    const wchar_t* m_next;
    unsigned int m_trail = 0;
};

template <typename Fold>
int CompareUnits(const wchar_t* leftText, const wchar_t* rightText, Fold fold)
{
    Units left(leftText);
    Units right(rightText != nullptr ? rightText : L"");
    for (;;) {
        const unsigned int l = fold(left.Next());
        const unsigned int r = fold(right.Next());
        if (l != r)
            return l < r ? -1 : 1;
        if (l == 0)
            return 0;
    }
}

}  // namespace

int BuString::Compare(const wchar_t* other) const noexcept
{
    return CompareUnits(GetText(), other, [](unsigned int unit) { return unit; });
}

int BuString::CompareNoCase(const wchar_t* other) const noexcept
{
    return CompareUnits(GetText(), other, BuToLower<unsigned int>);
}
