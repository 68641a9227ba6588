// Narrow text to wide text and back for the length of a scope: the converted text lives as long as the object.
//
//   BuConversionAllocator convert;
//   OpenWide(convert.AnsiToUnicode(path));
#pragma once

#include <basutl/Export.h>

class BASUTL_API BuConversionAllocator
{
public:
    BuConversionAllocator() noexcept;
    ~BuConversionAllocator();
    BuConversionAllocator(const BuConversionAllocator&) = delete;
    BuConversionAllocator& operator=(const BuConversionAllocator&) = delete;

    // The text in the other width, with the rules of BuString; owned by this object. Null gives null; exhausted memory
    // gives null.
    const wchar_t* AnsiToUnicode(const char* text) noexcept;
    const char* UnicodeToAnsi(const wchar_t* text) noexcept;

private:
    struct Texts;
    Texts* m_texts = nullptr;
};
