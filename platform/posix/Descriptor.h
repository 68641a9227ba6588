// A file descriptor that is closed with its scope.
#pragma once

#include <unistd.h>

#include <utility>

namespace platform {

class Descriptor
{
public:
    explicit Descriptor(int number) noexcept : m_number(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool IsOpen() const noexcept { return m_number >= 0; }
    int Number() const noexcept { return m_number; }

    // False when the system reports now that what was written did not arrive.
    bool Close() noexcept { return m_number < 0 || close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number;
};

}  // namespace platform
