// Wide text: building, formatting, searching, trimming, reading numbers.
//
// Not for narrow text (the Utl functions of TuvoUtil) nor for localised collation: everything goes by code units and
// the ASCII rules of BuCharacter.h, whatever the locale. Functions may be called from any thread, an object from one at
// a time.
//
//   BuString text;
//   text.Format(L"%s: %d of %zd", L"bolts", 3, size_t(8));   // "bolts: 3 of 8"
//   text.Find(L"of")                                         // 9
//
// When memory is exhausted an operation leaves the text as it was and a new text is empty; nothing throws. A text longer
// than INT_MAX counts as memory exhausted. Positions and lengths count wchar_t: UTF-16 units on Windows, characters on
// Linux.
#pragma once

#include <basutl/Export.h>

#include <compare>
#include <cstdarg>
#include <string>

template <typename T>
class BuObjectArrayTempl;

class BASUTL_API BuString
{
public:
    BuString() noexcept = default;
    BuString(const wchar_t* text) noexcept;  // null as the empty text
    // Narrow text of the system: UTF-8 on Linux, where stray bytes survive the way back; the active code page on
    // Windows.
    BuString(const char* text) noexcept;

    // Copies, and texts that are taken over; null as the empty text.
    BuString(const BuString& other) noexcept;
    BuString(BuString&& other) noexcept = default;
    BuString& operator=(const BuString& other) noexcept;
    BuString& operator=(BuString&& other) noexcept = default;
    BuString& operator=(const wchar_t* text) noexcept;
    BuString& operator=(const char* text) noexcept;
    ~BuString() = default;

    // The text, never null, valid until the next change. An embedded NUL ends what a C function sees of it.
    const wchar_t* GetText() const noexcept { return m_text.c_str(); }
    operator const wchar_t*() const noexcept { return m_text.c_str(); }

    // Its length, whether that is 0, one of its characters; Empty makes it 0.
    int GetLength() const noexcept { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const noexcept { return m_text.empty(); }
    wchar_t GetAt(int index) const noexcept;  // 0 outside the text
    void Empty() noexcept { m_text.clear(); }

    // A text with another, or one character, behind it.
    BuString& operator+=(const BuString& other) noexcept;
    BuString& operator+=(const wchar_t* text) noexcept;  // null adds nothing
    BuString& operator+=(wchar_t character) noexcept;
    friend BASUTL_API BuString operator+(const BuString& left, const BuString& right) noexcept;
    friend BuString operator+(const BuString& left, wchar_t right) noexcept { return left + (BuString() += right); }
    friend BuString operator+(wchar_t left, const BuString& right) noexcept { return (BuString() += left) + right; }

    // Replaces the text by a printf-style format with its arguments, with one meaning on every system:
    //   %s %ls %ws wide text      %S %hs narrow text      %c %lc wide character      %C %hc narrow character
    //   %d %i %u %o %x %X    with h, hh, l, ll, I64, I32, I, z, t, j            %% one '%'
    //   %e %E %f %F %g %G %a %A as printf writes them in the C locale, L for a long double; nan has no minus sign
    //   %p the 16 digits of a pointer as "00007FFD190C4D40"                     %n writes and prints nothing
    // Flags, width and precision, '*' included, are those of printf. A width counts wide characters, the precision of a
    // text its own characters (narrow ones are bytes), which then needs no NUL. A null text prints nothing. What is no
    // conversion is copied as it stands. The object's own text may be among the arguments.
    //
    // Gives the new length; -1, with the text unchanged, when memory was exhausted or the text would be longer than an
    // int can say. A null format gives the empty text.
    int Format(const wchar_t* format, ...) noexcept;
    int FormatV(const wchar_t* format, va_list arguments) noexcept;

    // Like Format for a text that is its own format: no argument is ever read, and every conversion but "%%" prints
    // nothing. "50%% of %d %y" gives "50% of  %y", since "%y" is no conversion.
    int FormatWithoutArguments(const wchar_t* format) noexcept;

    // The first position at or after `start` of a text, a character, or any of several characters; -1 when there is
    // none. An empty text is found at `start` when that lies inside or at the end; a negative start counts as 0; null
    // is never found.
    int Find(const wchar_t* text, int start = 0) const noexcept;
    int Find(wchar_t character, int start = 0) const noexcept;
    int FindOneOf(const wchar_t* characters, int start = 0) const noexcept;
    int ReverseFind(wchar_t character) const noexcept;  // the last position; -1 when there is none

    // Replaces every occurrence, left to right, none inside a replacement. Gives the number replaced, 0 when memory was
    // exhausted; an empty or null `from` replaces nothing, a null `to` counts as empty. Cost: one search of the text.
    int Replace(const wchar_t* from, const wchar_t* to) noexcept;

    // Inserts before position `index`, at the end when it lies beyond, at the start when it is negative. The new
    // length.
    int Insert(int index, wchar_t character) noexcept;
    int Insert(int index, const wchar_t* text) noexcept;

    // `count` characters from `start`, cut to what there is; a negative number counts as 0.
    BuString Mid(int start, int count) const noexcept;
    BuString Left(int count) const noexcept { return Mid(0, count); }

    // Removes white space (blank, \t \n \v \f \r) from one end.
    BuString& TrimLeft() noexcept;
    BuString& TrimRight() noexcept;

    // Takes an optional sign and decimal digits off the left end and stores their value, cut to the range of int.
    // False, with text and value unchanged, when no digit stands there; white space is not skipped.
    bool TrimLeftNumber(int& value) noexcept;

    // The line that begins at `position`, which then moves to the start of the next one. Lines end at LF; a CR before
    // it stays with the line. False, with an empty line, at or beyond the end (a trailing LF begins no further line) and
    // when memory was exhausted. A negative position counts as 0.
    bool ExtractLine(int& position, BuString& line) const noexcept;

    // Splits at any of the `delimiters`; runs of them separate once, leading and trailing ones count for nothing. Text
    // between two `quote` characters is one word of its own without them, delimiters included, even when it is empty or
    // touches other text; 0 for no quoting; an unclosed quote ends with the text. Gives the number of words, which
    // replace those in `words`; -1, with `words` unchanged, when memory was exhausted.
    //   words of  1 "a b"2   at blanks with quote '"':  1, a b, 2
    int ExtractWords(BuObjectArrayTempl<BuString>& words, const wchar_t* delimiters, wchar_t quote = 0) const noexcept;

    // The number that the text begins with, white space before it skipped; 0 when there is none. ToInt takes an
    // optional sign and digits of the base (2 to 36) as a 64-bit value that stays at its limit, and casts that to int,
    // so that 99999999999 gives 1215752191; ToDouble takes what BuReadDouble takes, and gives 0 when memory for a number
    // of many digits was exhausted.
    int ToInt(int base = 10) const noexcept;
    double ToDouble() const noexcept;

    // Fixed notation with `decimals` digits after the point: the exact binary value rounded, ties to even (0.125 with
    // two decimals is "0.12"); "inf", "-inf", "nan". Negative decimals count as 0.
    static BuString FromDouble(double value, int decimals) noexcept;

    // Order by UTF-16 code units on every system, shorter first on a common prefix: below, at or above 0. Null counts
    // as the empty text. The second form takes ASCII letters without case.
    int Compare(const wchar_t* other) const noexcept;
    int CompareNoCase(const wchar_t* other) const noexcept;

    // The narrow text of the system (see the constructor). Empty when memory was exhausted.
    std::string ToNarrow() const noexcept;

    // All six comparisons, with the order of Compare, also against a text of type const wchar_t*.
    friend bool operator==(const BuString& left, const BuString& right) noexcept { return left.m_text == right.m_text; }
    friend bool operator==(const BuString& left, const wchar_t* right) noexcept { return left.Compare(right) == 0; }
    friend std::weak_ordering operator<=>(const BuString& left, const BuString& right) noexcept
    {
        return left.Compare(right) <=> 0;
    }
    friend std::weak_ordering operator<=>(const BuString& left, const wchar_t* right) noexcept
    {
        return left.Compare(right) <=> 0;
    }

private:
    std::wstring m_text;
};
