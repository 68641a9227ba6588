#include <basutl/BuLocalize.h>

namespace {

constinit BuTranslator g_translator = nullptr;

}  // namespace

const wchar_t* BuLocalizeStringExW(const wchar_t* text, int context) noexcept
{
    if (g_translator == nullptr || text == nullptr)
        return text;
    const wchar_t* const translation = g_translator(text, context);
    return translation != nullptr ? translation : text;
}

void BuSetTranslator(BuTranslator translator) noexcept
{
    g_translator = translator;
}
