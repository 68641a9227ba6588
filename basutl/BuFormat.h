// The walker behind BuString::Format: wide formats with one meaning on every system, as BuString.h lists them.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

namespace format {

// The text being made. What fits stays in the object itself; longer text goes to the heap. Adding throws
// std::bad_alloc or, for more than INT_MAX characters, std::length_error.
class Sink
{
public:
    // The place for `count` more characters, to be written before the next call.
    wchar_t* Add(std::size_t count)
    {
        if (count > Capacity - m_size || !m_long.empty())
            return AddLong(count);
        m_size += count;
        return m_short + m_size - count;
    }

    void Append(std::wstring_view text) { std::copy(text.begin(), text.end(), Add(text.size())); }
    void Fill(wchar_t character, std::size_t count) { std::fill_n(Add(count), count, character); }

    // Makes the text the value of `text` and gives its length.
    int MoveTo(std::wstring& text);

private:
    static constexpr std::size_t Capacity = 256;

    wchar_t* AddLong(std::size_t count);

    std::size_t m_size = 0;  // used of m_short, as long as m_long is empty
    std::wstring m_long;
    wchar_t m_short[Capacity];
};

// A va_list that functions may pass on by reference.
struct Arguments
{
    va_list list;
};

enum class Length
{
    None,
    Char,       // hh
    Short,      // h
    Int32,      // I32
    Long,       // l
    Int64,      // ll I64 I z t j
    Wide,       // w
    LongDouble  // L
};

// One conversion, as it stands between '%' and its letter.
struct Conversion
{
    bool left = false;          // '-'
    bool plus = false;          // '+'
    bool blank = false;         // ' '
    bool alternate = false;     // '#'
    bool zero = false;          // '0'
    bool widthFollows = false;  // '*': among the arguments
    bool precisionFollows = false;
    Length length = Length::None;
    wchar_t letter = 0;  // 0: no conversion that is known
    long long width = 0;
    long long precision = -1;  // negative: none was given
};

// Prints an integer (d i u o x X) or a floating-point number (e E f F g G a A) as printf does in the C locale. A nan
// has no minus sign.
void AppendInteger(Sink& sink, const Conversion& conversion, bool negative, unsigned long long magnitude);
void AppendFloat(Sink& sink, const Conversion& conversion, double value);

// Walks a whole format. The second form reads no argument: all conversions but "%%" print nothing.
void Append(Sink& sink, const wchar_t* text, Arguments& arguments);
void AppendWithoutArguments(Sink& sink, const wchar_t* text);

}  // namespace format
