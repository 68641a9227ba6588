#include "platform/Platform.h"
#include "platform/windows/Native.h"

void* platform::ThreadSlot::Get() const noexcept
{
    const std::uint32_t key = m_key.load(std::memory_order_acquire);
    if (key == 0)
        return nullptr;
    const DWORD error = GetLastError();  // FlsGetValue clears it
    void* const pointer = FlsGetValue(key - 1);
    SetLastError(error);
    return pointer;
}

bool platform::ThreadSlot::Set(void* pointer) noexcept
{
    std::uint32_t key = m_key.load(std::memory_order_acquire);
    if (key == 0) {
        const DWORD made = FlsAlloc(m_release);
        if (made == FLS_OUT_OF_INDEXES)
            return false;
        if (m_key.compare_exchange_strong(key, made + 1)) {
            key = made + 1;
            PinModule(reinterpret_cast<const void*>(m_release));
        } else {
            FlsFree(made);  // another thread was first; `key` is its key now
        }
    }
    return FlsSetValue(key - 1, pointer) != 0;
}
