// What the calls of this folder share: paths as every call takes them, handles that are closed with their scope.
#pragma once

#define NOMINMAX 1
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <string>
#include <utility>

namespace platform {

// The path as given; made absolute and lifted over the limit of 260 characters by the prefix "\\?\" when it is too
// long. Null gives the empty path, which no system call accepts. Throws std::bad_alloc.
std::wstring NativePath(const wchar_t* path);

// Asks a call that fills a buffer of wide characters for its whole text. `call(buffer, capacity)` gives the length, or
// the capacity or more when the text did not fit, or 0 on failure, which becomes the empty text.
template <typename Call>
std::wstring WholeText(Call call)
{
    std::wstring text(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(text.size() * 2);
    }
}

class Handle
{
public:
    Handle() = default;
    explicit Handle(HANDLE native) noexcept : m_native(native == INVALID_HANDLE_VALUE ? nullptr : native) {}
    Handle(Handle&& other) noexcept : m_native(std::exchange(other.m_native, nullptr)) {}
    ~Handle()
    {
        if (m_native != nullptr)
            CloseHandle(m_native);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle& operator=(Handle&&) = delete;

    bool IsOpen() const noexcept { return m_native != nullptr; }
    HANDLE Get() const noexcept { return m_native; }

private:
    HANDLE m_native = nullptr;
};

}  // namespace platform
