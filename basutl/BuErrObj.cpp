#include <basutl/BuErrObj.h>

#include "basutl/ThreadState.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <atomic>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

// Readers take the kind from the first four bytes: no virtual table, and members in the order of their declaration.
static_assert(std::is_standard_layout_v<BuErrObj>);
static_assert(alignof(BuErrObj) == alignof(BuString));
static_assert(sizeof(BuErrObj) == alignof(BuString) + sizeof(BuString) + 2 * sizeof(int));

namespace {

// Room for the errors of threads that could not get a ring of their own. An object here never holds a message, so it
// shares no memory with other threads and needs no destruction: the room serves until the process is gone.
alignas(BuErrObj) constinit std::byte g_spare[ThreadState::ErrorCapacity][sizeof(BuErrObj)] = {};
constinit std::atomic<unsigned int> g_spareCount{0};

const BuErrObj* StoreSpare(const BuErrObj& object) noexcept
{
    return ::new (g_spare[g_spareCount++ % ThreadState::ErrorCapacity]) BuErrObj(object);
}

// Makes an object with make(message) and stores it as the last error. The object is complete before the oldest of the
// ring makes room for it: that one's text may be the message.
template <typename Make>
const BuErrObj* Store(const wchar_t* message, Make make) noexcept
{
    ThreadState* const state = GetThreadState();
    if (state == nullptr)
        return StoreSpare(make(nullptr));
    BuErrObj object = make(message);
    BuErrObj& place = state->errors[state->errorCount++ % ThreadState::ErrorCapacity];
    place = std::move(object);
    return &place;
}

const BuErrObj* StoreWithCode(std::int32_t kind, int code, const wchar_t* message) noexcept
{
    return Store(message, [=](const wchar_t* text) { return BuErrObj(kind, code, text); });
}

// "ORIGIN: TEXT"; as much of it as memory allows.
BuString NativeErrorMessage(const wchar_t* origin, int nativeCode) noexcept
{
    BuString message(origin);
    platform::Guarded(false, [&] {
        const std::wstring text = platform::NativeErrorText(nativeCode);
        if (!message.IsEmpty())
            message += L": ";
        message += text.c_str();
        return true;
    });
    return message;
}

}  // namespace

BuErrObj::BuErrObj(std::int32_t kind, const wchar_t* message) noexcept : m_kind(kind), m_message(message) {}

BuErrObj::BuErrObj(std::int32_t kind, int code, const wchar_t* message) noexcept
    : m_kind(kind), m_message(message), m_code(code), m_hasCode(true)
{}

int BuErrObj::GetErrorCode(int& code) const noexcept
{
    if (!m_hasCode)
        return 0;
    code = m_code;
    return 1;
}

const BuErrObj* BuSetError(const wchar_t* message) noexcept
{
    return BuSetErrorOfKind(BU_ERR_FAILURE, message);
}

const BuErrObj* BuSetError(int code, const wchar_t* message) noexcept
{
    return StoreWithCode(BU_ERR_FAILURE, code, message);
}

const BuErrObj* BuSetWarning(int code, const wchar_t* message) noexcept
{
    return StoreWithCode(BU_ERR_WARNING, code, message);
}

const BuErrObj* BuSetErrorOfKind(std::int32_t kind, const wchar_t* message) noexcept
{
    return Store(message, [=](const wchar_t* text) { return BuErrObj(kind, text); });
}

const BuErrObj* BuSetNativeError(const wchar_t* origin, int nativeCode) noexcept
{
    return StoreWithCode(BU_ERR_FAILURE, nativeCode, NativeErrorMessage(origin, nativeCode));
}

const BuErrObj* BuGetLastError() noexcept
{
    const ThreadState* const state = GetThreadState();
    if (state == nullptr || state->errorCount == 0)
        return nullptr;
    return &state->errors[(state->errorCount - 1) % ThreadState::ErrorCapacity];
}

BuString BuGetErrorDescription(const BuErrObj* error) noexcept
{
    return error != nullptr ? error->GetMessageText() : BuString();
}
