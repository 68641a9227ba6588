#include "platform/Platform.h"

#include <pthread.h>

void* platform::ThreadSlot::Get() const noexcept
{
    const std::uint32_t key = m_key.load(std::memory_order_acquire);
    return key != 0 ? pthread_getspecific(key - 1) : nullptr;
}

bool platform::ThreadSlot::Set(void* pointer) noexcept
{
    std::uint32_t key = m_key.load(std::memory_order_acquire);
    if (key == 0) {
        pthread_key_t made;
        if (pthread_key_create(&made, m_release) != 0)
            return false;
        if (m_key.compare_exchange_strong(key, made + 1)) {
            key = made + 1;
            PinModule(reinterpret_cast<const void*>(m_release));
        } else {
            pthread_key_delete(made);  // another thread was first; `key` is its key now
        }
    }
    return pthread_setspecific(key - 1, pointer) == 0;
}
