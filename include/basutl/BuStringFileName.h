// A path as a text, and its customary forms; no file is asked.
#pragma once

#include <basutl/BuString.h>
#include <basutl/Export.h>

class BASUTL_API BuStringFileName : public BuString
{
public:
    // Made of whatever a BuString is made of.
    using BuString::BuString;
    BuStringFileName() noexcept = default;
    BuStringFileName(const BuString& text) noexcept : BuString(text) {}

    // The directory ended with the system's separator unless it ends with '\' or '/' already; an empty one stays empty.
    static BuString NormalizeDirectory(const wchar_t* directory) noexcept;
};
