#include <basutl/BuConversionAllocator.h>

#include "platform/Platform.h"

#include <exception>
#include <forward_list>
#include <new>
#include <string>

struct BuConversionAllocator::Texts
{
    std::forward_list<std::wstring> wide;
    std::forward_list<std::string> narrow;
};

BuConversionAllocator::BuConversionAllocator() noexcept = default;

BuConversionAllocator::~BuConversionAllocator()
{
    delete m_texts;
}

const wchar_t* BuConversionAllocator::AnsiToUnicode(const char* text) noexcept
try {
    if (text == nullptr)
        return nullptr;
    if (m_texts == nullptr)
        m_texts = new Texts;
    return m_texts->wide.emplace_front(platform::Widen(text)).c_str();
} catch (const std::exception&) {
    return nullptr;
}

const char* BuConversionAllocator::UnicodeToAnsi(const wchar_t* text) noexcept
try {
    if (text == nullptr)
        return nullptr;
    if (m_texts == nullptr)
        m_texts = new Texts;
    return m_texts->narrow.emplace_front(platform::Narrow(text)).c_str();
} catch (const std::exception&) {
    return nullptr;
}
