// Messages and assertions that no caller can receive, handed to whatever the host installed.
#pragma once

#include <basutl/Export.h>

// Severity of BuOutputMessage: 1 information or warning, 2 error. What a handler throws goes through to the caller.
using BuOutputHandler = void (*)(int severity, const wchar_t* text);

// `code` is what was given to BuAssert; `file` and `line` say where.
using BuAssertHandler = void (*)(int code, const char* file, int line);

// Hands a text to the installed handler. Without one it goes to the debugger, if any, and to the log (level
// `severity`). A null text counts as empty.
BASUTL_API void BuOutputMessage(int severity, const wchar_t* text);

// Reports a failed assertion to the installed handler, which decides whether to break, abort or go on. Without one it
// is logged (level 2) and execution goes on. A null file counts as empty.
BASUTL_API void BuAssert(int code, const char* file, int line);

// Install a handler for the process; null brings the default back. Not locked: do it at start-up.
BASUTL_API void BuSetOutputHandler(BuOutputHandler handler) noexcept;
BASUTL_API void BuSetAssertHandler(BuAssertHandler handler) noexcept;
