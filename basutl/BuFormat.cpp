#include "basutl/BuFormat.h"

#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <stdexcept>

namespace format {

// ---- The text being made -------------------------------------------------------------------------------------------

wchar_t* Sink::AddLong(std::size_t count)
{
    const std::size_t size = m_long.empty() ? m_size : m_long.size();
    if (count > INT_MAX - size)
        throw std::length_error("format");
    if (m_long.empty()) {
        m_long.reserve(std::max(size + count, 2 * Capacity));
        m_long.assign(m_short, size);
    }
    m_long.resize(size + count);
    return m_long.data() + size;
}

int Sink::MoveTo(std::wstring& text)
{
    if (m_long.empty())
        text.assign(m_short, m_size);
    else
        text = std::move(m_long);
    return static_cast<int>(text.size());
}

namespace {

// ---- Reading a conversion ------------------------------------------------------------------------------------------

// A width or precision; beyond INT_MAX it stays at a value that no text can have.
long long ReadCount(const wchar_t*& next)
{
    long long count = 0;
    for (; BuIsDigit(*next); ++next)
        count = std::min(count * 10 + (*next - L'0'), static_cast<long long>(INT_MAX) + 1);
    return count;
}

void ReadFlags(const wchar_t*& next, Conversion& conversion)
{
    for (;; ++next)
        switch (*next) {
            case L'-':
                conversion.left = true;
                break;
            case L'+':
                conversion.plus = true;
                break;
            case L' ':
                conversion.blank = true;
                break;
            case L'#':
                conversion.alternate = true;
                break;
            case L'0':
                conversion.zero = true;
                break;
            default:
                return;
        }
}

// A set of letters, one bit each.
class Letters
{
public:
    constexpr explicit Letters(std::string_view letters)
    {
        for (const char letter : letters)
            m_bits |= std::uint64_t{1} << (letter - 'A');
    }
    constexpr bool Contain(wchar_t c) const { return c >= L'A' && c <= L'z' && (m_bits >> (c - L'A') & 1) != 0; }

private:
    std::uint64_t m_bits = 0;
};

constexpr Letters ConversionLetters("sScCdiuoxXpeEfFgGaAn");
constexpr Letters LengthLetters("hlIztjwL");

struct LengthName
{
    std::wstring_view name;
    Length length;
};

// A name stands before those that it begins with.
constexpr LengthName LengthNames[] = {
    {L"hh", Length::Char},   {L"h", Length::Short},   {L"ll", Length::Int64}, {L"l", Length::Long},
    {L"I64", Length::Int64}, {L"I32", Length::Int32}, {L"I", Length::Int64},  {L"z", Length::Int64},
    {L"t", Length::Int64},   {L"j", Length::Int64},   {L"w", Length::Wide},   {L"L", Length::LongDouble},
};

Length ReadLength(const wchar_t*& next)
{
    if (!LengthLetters.Contain(*next))
        return Length::None;
    const auto isNext = [&](const LengthName& entry) {
        return std::wcsncmp(next, entry.name.data(), entry.name.size()) == 0;
    };
    const LengthName& found = *std::find_if(std::begin(LengthNames), std::end(LengthNames), isNext);
    next += found.name.size();
    return found.length;
}

// Reads what follows a '%' and moves `next` behind it, behind the first character that does not fit otherwise.
Conversion ReadConversion(const wchar_t*& next)
{
    Conversion conversion;
    ReadFlags(next, conversion);
    if (*next == L'*') {
        conversion.widthFollows = true;
        ++next;
    } else {
        conversion.width = ReadCount(next);
    }
    if (*next == L'.') {
        if (*++next == L'*') {
            conversion.precisionFollows = true;
            ++next;
        } else {
            conversion.precision = ReadCount(next);
        }
    }
    conversion.length = ReadLength(next);
    if (*next != 0) {
        conversion.letter = *next == L'%' || ConversionLetters.Contain(*next) ? *next : L'\0';
        ++next;
    }
    return conversion;
}

// Prints literal text and calls `convert` for every conversion but "%%".
template <typename Convert>
void Walk(Sink& sink, const wchar_t* text, Convert convert)
{
    for (;;) {
        const wchar_t* percent = text;
        while (*percent != 0 && *percent != L'%')
            ++percent;
        sink.Append(std::wstring_view(text, static_cast<std::size_t>(percent - text)));
        if (*percent == 0)
            return;
        text = percent + 1;
        Conversion conversion = ReadConversion(text);
        if (conversion.letter == 0)
            sink.Append(std::wstring_view(percent, static_cast<std::size_t>(text - percent)));
        else if (conversion.letter == L'%')
            sink.Fill(L'%', 1);
        else
            convert(conversion);
    }
}

// ---- Printing one argument -----------------------------------------------------------------------------------------

void ReadCounts(Conversion& conversion, Arguments& arguments)
{
    if (conversion.widthFollows) {
        conversion.width = va_arg(arguments.list, int);
        if (conversion.width < 0) {
            conversion.left = true;
            conversion.width = -conversion.width;
        }
    }
    if (conversion.precisionFollows)
        conversion.precision = va_arg(arguments.list, int);
}

long long ReadSigned(Length length, Arguments& arguments)
{
    switch (length) {
        case Length::Char:
            return static_cast<signed char>(va_arg(arguments.list, int));
        case Length::Short:
            return static_cast<short>(va_arg(arguments.list, int));
        case Length::Long:
            return va_arg(arguments.list, long);
        case Length::Int64:
        case Length::LongDouble:
            return va_arg(arguments.list, long long);
        default:
            return va_arg(arguments.list, int);
    }
}

unsigned long long ReadUnsigned(Length length, Arguments& arguments)
{
    const auto value = static_cast<unsigned long long>(ReadSigned(length, arguments));
    switch (length) {
        case Length::Char:
            return static_cast<unsigned char>(value);
        case Length::Short:
            return static_cast<unsigned short>(value);
        case Length::Long:
            return static_cast<unsigned long>(value);
        case Length::Int64:
        case Length::LongDouble:
            return value;
        default:
            return static_cast<unsigned int>(value);
    }
}

double ReadFloat(Length length, Arguments& arguments)
{
    return length == Length::LongDouble ? static_cast<double>(va_arg(arguments.list, long double))
                                        : va_arg(arguments.list, double);
}

// The part of a text that a precision leaves, which need not end with 0 then.
template <typename Char>
std::basic_string_view<Char> Shown(const Char* text, long long precision)
{
    if (text == nullptr)
        return {};
    std::size_t length = 0;
    while (length != static_cast<unsigned long long>(precision) && text[length] != 0)
        ++length;
    return {text, length};
}

void AppendText(Sink& sink, const Conversion& conversion, std::wstring_view text)
{
    const auto padding =
        static_cast<std::size_t>(std::max(conversion.width - static_cast<long long>(text.size()), 0LL));
    if (!conversion.left)
        sink.Fill(L' ', padding);
    sink.Append(text);
    if (conversion.left)
        sink.Fill(L' ', padding);
}

bool IsNarrow(const Conversion& conversion)
{
    switch (conversion.length) {
        case Length::Char:
        case Length::Short:
            return true;
        case Length::Long:
        case Length::Wide:
            return false;
        default:
            return BuIsUpper(conversion.letter);
    }
}

void ConvertText(Sink& sink, const Conversion& conversion, Arguments& arguments)
{
    if (IsNarrow(conversion))
        AppendText(sink, conversion, platform::Widen(Shown(va_arg(arguments.list, const char*), conversion.precision)));
    else
        AppendText(sink, conversion, Shown(va_arg(arguments.list, const wchar_t*), conversion.precision));
}

void ConvertCharacter(Sink& sink, const Conversion& conversion, Arguments& arguments)
{
    const int code = va_arg(arguments.list, int);
    if (IsNarrow(conversion)) {
        const char narrow = static_cast<char>(code);
        AppendText(sink, conversion, platform::Widen(std::string_view(&narrow, 1)));
    } else {
        const wchar_t wide = static_cast<wchar_t>(code);
        AppendText(sink, conversion, std::wstring_view(&wide, 1));
    }
}

// The same on every system: all sixteen digits.
void ConvertPointer(Sink& sink, const Conversion& conversion, Arguments& arguments)
{
    const Conversion digits = {.left = conversion.left, .letter = L'X', .width = conversion.width, .precision = 16};
    AppendInteger(sink, digits, false, reinterpret_cast<std::uintptr_t>(va_arg(arguments.list, const void*)));
}

void Convert(Sink& sink, Conversion& conversion, Arguments& arguments)
{
    ReadCounts(conversion, arguments);
    switch (conversion.letter) {
        case L's':
        case L'S':
            return ConvertText(sink, conversion, arguments);
        case L'c':
        case L'C':
            return ConvertCharacter(sink, conversion, arguments);
        case L'd':
        case L'i': {
            const long long value = ReadSigned(conversion.length, arguments);
            const auto bits = static_cast<unsigned long long>(value);
            return AppendInteger(sink, conversion, value < 0, value < 0 ? 0 - bits : bits);
        }
        case L'u':
        case L'o':
        case L'x':
        case L'X':
            return AppendInteger(sink, conversion, false, ReadUnsigned(conversion.length, arguments));
        case L'p':
            return ConvertPointer(sink, conversion, arguments);
        case L'n':
            static_cast<void>(va_arg(arguments.list, void*));
            return;
        default:
            return AppendFloat(sink, conversion, ReadFloat(conversion.length, arguments));
    }
}

}  // namespace

void Append(Sink& sink, const wchar_t* text, Arguments& arguments)
{
    Walk(sink, text, [&](Conversion& conversion) { Convert(sink, conversion, arguments); });
}

void AppendWithoutArguments(Sink& sink, const wchar_t* text)
{
    Walk(sink, text, [](const Conversion&) {});
}

}  // namespace format
