#include "platform/Platform.h"

#include <locale.h>

namespace platform {

int PrintInCLocale(char* target, std::size_t size, const char* format, va_list arguments) noexcept
{
    // Never freed: the C library keeps the C locale as an object of its own.
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t before = uselocale(cLocale);
    const int length = std::vsnprintf(target, size, format, arguments);
    uselocale(before);
    return length;
}

}  // namespace platform
