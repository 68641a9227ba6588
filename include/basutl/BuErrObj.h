// Error objects: what a function returns when it can fail with a reason. Null means success.
//
//   const BuErrObj* error = BuSetError(7, L"No such set");
//   error->GetErrorCode(code)   // 1, code is 7
//
// Objects are made by the BuSet... functions alone and live in a ring of their thread: a pointer stays valid for the
// next 64 errors of that thread. Each thread has its own last error. When memory is exhausted an object still comes,
// with its kind and code and an empty message.
#pragma once

#include <basutl/BuString.h>
#include <basutl/Export.h>

#include <cstdint>

// Severity of an error object; the values are stored and read as plain integers.
enum BuErrKind : std::int32_t
{
    BU_ERR_PLAIN = 0,
    BU_ERR_INFORMATION = 1,
    BU_ERR_WARNING = 2,
    BU_ERR_FAILURE = 3,
    BU_ERR_FATAL = 4
};

// Layout is fixed: a 32-bit kind first, then the message, then the code. Readers may look at the kind directly.
class BASUTL_API BuErrObj
{
public:
    // For arrays and copies; errors to be returned come from the functions below. A null message counts as empty.
    BuErrObj() noexcept = default;
    BuErrObj(std::int32_t kind, const wchar_t* message) noexcept;
    BuErrObj(std::int32_t kind, int code, const wchar_t* message) noexcept;

    // The severity, one of BuErrKind or any other number that it was made with; the message.
    std::int32_t GetKind() const noexcept { return m_kind; }
    const BuString& GetMessageText() const noexcept { return m_message; }

    // Stores the code and gives 1; gives 0 and leaves `code` alone when the object carries none.
    int GetErrorCode(int& code) const noexcept;

private:
    std::int32_t m_kind = BU_ERR_PLAIN;
    BuString m_message;
    int m_code = 0;
    bool m_hasCode = false;
};

// Makes an error object of the calling thread and returns it as that thread's last error; never null. The message is
// taken as it is, not as a format; null counts as empty; it may be the text of an older error. A code is optional.
BASUTL_API const BuErrObj* BuSetError(const wchar_t* message) noexcept;              // kind 3
BASUTL_API const BuErrObj* BuSetError(int code, const wchar_t* message) noexcept;    // kind 3
BASUTL_API const BuErrObj* BuSetWarning(int code, const wchar_t* message) noexcept;  // kind 2
BASUTL_API const BuErrObj* BuSetErrorOfKind(std::int32_t kind, const wchar_t* message) noexcept;

// Makes an error (kind 3) of a native error code (errno; GetLastError), which becomes its code: "ORIGIN: TEXT" with the
// system's text for it, "TEXT" alone when the origin is null or empty.
BASUTL_API const BuErrObj* BuSetNativeError(const wchar_t* origin, int nativeCode) noexcept;

// The last error of this thread; null when it has had none, or all of them came when memory was exhausted.
BASUTL_API const BuErrObj* BuGetLastError() noexcept;

// The message text of an error, nothing added; the empty text for null.
BASUTL_API BuString BuGetErrorDescription(const BuErrObj* error) noexcept;
