#include <basutl/BuStringFileName.h>

#include <basutl/BuPath.h>

BuString BuStringFileName::NormalizeDirectory(const wchar_t* directory) noexcept
{
    BuString normalized = directory;
    BuPathAddSeparatorW(normalized);
    return normalized;
}
