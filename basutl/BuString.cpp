#include <basutl/BuString.h>

#include "basutl/BuFormat.h"
#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <climits>
#include <exception>
#include <stdexcept>
#include <string_view>

namespace {

// Carries out a change of a text that either happens as a whole or throws, and tells whether it happened.
template <typename Change>
bool Try(Change change) noexcept
{
    try {
        change();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::wstring_view View(const wchar_t* text)
{
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

// A length must fit an int; a text that is too long counts as memory exhausted.
void CheckLength(std::size_t length)
{
    if (length > INT_MAX)
        throw std::length_error("BuString");
}

std::size_t Position(int index)
{
    return static_cast<std::size_t>(std::max(index, 0));
}

void InsertInto(std::wstring& text, int index, std::wstring_view more) noexcept
{
    Try([&] {
        CheckLength(text.size() + more.size());
        text.insert(std::min(Position(index), text.size()), more);
    });
}

void AppendTo(std::wstring& text, std::wstring_view more) noexcept
{
    InsertInto(text, INT_MAX, more);
}

int Index(std::size_t position)
{
    return position == std::wstring::npos ? -1 : static_cast<int>(position);
}

}  // namespace

// ---- Construction and assignment -----------------------------------------------------------------------------------

BuString::BuString(const wchar_t* text) noexcept
{
    *this = text;
}

BuString::BuString(const char* text) noexcept
{
    *this = text;
}

BuString::BuString(const BuString& other) noexcept
{
    *this = other;
}

BuString& BuString::operator=(const BuString& other) noexcept
{
    Try([&] { m_text = other.m_text; });
    return *this;
}

BuString& BuString::operator=(const wchar_t* text) noexcept
{
    Try([&] {
        const std::wstring_view view = View(text);
        CheckLength(view.size());
        m_text = view;
    });
    return *this;
}

BuString& BuString::operator=(const char* text) noexcept
{
    Try([&] {
        const std::string_view view = text != nullptr ? text : "";
        CheckLength(view.size());
        m_text = platform::Widen(view);
    });
    return *this;
}

wchar_t BuString::GetAt(int index) const noexcept
{
    return index >= 0 && index < GetLength() ? m_text[Position(index)] : L'\0';
}

// ---- Joining and formatting ----------------------------------------------------------------------------------------

BuString& BuString::operator+=(const BuString& other) noexcept
{
    AppendTo(m_text, other.m_text);
    return *this;
}

BuString& BuString::operator+=(const wchar_t* text) noexcept
{
    AppendTo(m_text, View(text));
    return *this;
}

BuString& BuString::operator+=(wchar_t character) noexcept
{
    AppendTo(m_text, std::wstring_view(&character, 1));
    return *this;
}

BuString operator+(const BuString& left, const BuString& right) noexcept
{
    BuString sum;
    Try([&] {
        CheckLength(left.m_text.size() + right.m_text.size());
        sum.m_text.reserve(left.m_text.size() + right.m_text.size());
        sum.m_text.append(left.m_text).append(right.m_text);
    });
    return sum;
}

int BuString::Format(const wchar_t* text, ...) noexcept
{
    va_list arguments;
    va_start(arguments, text);
    const int length = FormatV(text, arguments);
    va_end(arguments);
    return length;
}

int BuString::FormatV(const wchar_t* text, va_list arguments) noexcept
{
    format::Arguments copy;
    va_copy(copy.list, arguments);
    int length = -1;
    Try([&] {
        format::Sink sink;
        format::Append(sink, text != nullptr ? text : L"", copy);
        length = sink.MoveTo(m_text);
    });
    va_end(copy.list);
    return length;
}

int BuString::FormatWithoutArguments(const wchar_t* text) noexcept
{
    int length = -1;
    Try([&] {
        format::Sink sink;
        format::AppendWithoutArguments(sink, text != nullptr ? text : L"");
        length = sink.MoveTo(m_text);
    });
    return length;
}

// ---- Searching and replacing ---------------------------------------------------------------------------------------

int BuString::Find(const wchar_t* text, int start) const noexcept
{
    return text != nullptr ? Index(m_text.find(text, Position(start))) : -1;
}

int BuString::Find(wchar_t character, int start) const noexcept
{
    return Index(m_text.find(character, Position(start)));
}

int BuString::FindOneOf(const wchar_t* characters, int start) const noexcept
{
    return Index(m_text.find_first_of(View(characters), Position(start)));
}

int BuString::ReverseFind(wchar_t character) const noexcept
{
    return Index(m_text.rfind(character));
}

int BuString::Replace(const wchar_t* from, const wchar_t* to) noexcept
{
    const std::wstring_view old = View(from);
    std::size_t found = old.empty() ? std::wstring::npos : m_text.find(old);
    if (found == std::wstring::npos)
        return 0;
    int count = 0;
    const bool done = Try([&] {
        std::wstring result;
        std::size_t position = 0;
        for (; found != std::wstring::npos; found = m_text.find(old, position), ++count) {
            result.append(m_text, position, found - position).append(View(to));
            position = found + old.size();
        }
        result.append(m_text, position);
        CheckLength(result.size());
        m_text.swap(result);
    });
    return done ? count : 0;
}

int BuString::Insert(int index, wchar_t character) noexcept
{
    InsertInto(m_text, index, std::wstring_view(&character, 1));
    return GetLength();
}

int BuString::Insert(int index, const wchar_t* text) noexcept
{
    InsertInto(m_text, index, View(text));
    return GetLength();
}

// ---- Parts ---------------------------------------------------------------------------------------------------------

BuString BuString::Mid(int start, int count) const noexcept
{
    BuString part;
    if (Position(start) < m_text.size())
        Try([&] { part.m_text.assign(m_text, Position(start), Position(count)); });
    return part;
}

BuString& BuString::TrimLeft() noexcept
{
    const auto first = std::find_if_not(m_text.begin(), m_text.end(), BuIsSpace<wchar_t>);
    m_text.erase(m_text.begin(), first);
    return *this;
}

BuString& BuString::TrimRight() noexcept
{
    const auto last = std::find_if_not(m_text.rbegin(), m_text.rend(), BuIsSpace<wchar_t>);
    m_text.erase(last.base(), m_text.end());
    return *this;
}

std::string BuString::ToNarrow() const noexcept
{
    std::string narrow;
    Try([&] { narrow = platform::Narrow(m_text); });
    return narrow;
}
