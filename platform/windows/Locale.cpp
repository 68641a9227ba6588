#include "platform/Guard.h"
#include "platform/Platform.h"

#include <locale.h>
#include <cstring>
#include <string>

namespace platform {
namespace {

// Gives this thread the C locale's numbers until the scope ends. Throws std::bad_alloc.
class CNumbers
{
public:
    CNumbers() : m_name(setlocale(LC_NUMERIC, nullptr)), m_mode(_configthreadlocale(_ENABLE_PER_THREAD_LOCALE))
    {
        setlocale(LC_NUMERIC, "C");
    }
    ~CNumbers()
    {
        setlocale(LC_NUMERIC, m_name.c_str());
        _configthreadlocale(m_mode);
    }
    CNumbers(const CNumbers&) = delete;
    CNumbers& operator=(const CNumbers&) = delete;

private:
    std::string m_name;
    int m_mode;
};

}  // namespace

int PrintInCLocale(char* target, std::size_t size, const char* format, va_list arguments) noexcept
{
    if (std::strcmp(localeconv()->decimal_point, ".") == 0)
        return std::vsnprintf(target, size, format, arguments);
    return Guarded(-1, [&] {
        const CNumbers scope;
        return std::vsnprintf(target, size, format, arguments);
    });
}

}  // namespace platform
