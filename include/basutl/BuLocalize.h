// Texts shown to the user, in the user's language. The English text is the key.
#pragma once

#include <basutl/Export.h>

// Gives the translation of a text, or null for none. The result must stay valid as long as the translator is
// installed. It must not throw.
using BuTranslator = const wchar_t* (*)(const wchar_t* text, int context);

// The text as the installed translator gives it; the text itself when there is no translator, no translation, or null.
BASUTL_API const wchar_t* BuLocalizeStringExW(const wchar_t* text, int context) noexcept;

// Installs a translator for the process; null removes it. Not locked: do it at start-up.
BASUTL_API void BuSetTranslator(BuTranslator translator) noexcept;
