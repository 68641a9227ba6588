#include <TuvoUtil/Checksum.h>

#include "Kernels/Crc32.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace {

template <typename Value>
std::uint32_t AfterValues(std::uint32_t crc, const std::vector<Value>& values)
{
    return kernels::Crc32(crc, values.data(), values.size() * sizeof(Value));
}

std::uint32_t AfterUnit(std::uint32_t crc, char32_t unit)
{
    return kernels::Crc32Of1(crc, static_cast<std::uint8_t>(unit));
}

// Kept: of every code unit only the low byte, though that is all the same for many texts.
std::uint32_t AfterText(std::uint32_t crc, const BuString& text)
{
    const wchar_t* const characters = text.GetText();
    for (int i = 0; i < text.GetLength(); ++i) {
        const auto character = static_cast<char32_t>(characters[i]);
        if (character >= 0x10000)  // two units where wide text has UTF-16; of the first what matters is its low byte
            crc = AfterUnit(crc, (character - 0x10000) >> 10);
        crc = AfterUnit(crc, character);
    }
    return crc;
}

}  // namespace

VChecksum::VChecksum() = default;
VChecksum::VChecksum(const VChecksum& other) = default;
VChecksum& VChecksum::operator=(const VChecksum& other) = default;

VChecksum::~VChecksum()
{
    *const_cast<volatile unsigned int*>(&m_register) = 0;  // a plain store would be left out
}

unsigned int VChecksum::GetChecksum() const
{
    return m_register;
}

void VChecksum::Compute(const char& value)
{
    m_register = kernels::Crc32Of1(m_register, static_cast<std::uint8_t>(value));
}

void VChecksum::Compute(const int& value)
{
    m_register = kernels::Crc32Of4(m_register, static_cast<std::uint32_t>(value));
}

void VChecksum::Compute(const double& value)
{
    m_register = kernels::Crc32Of8(m_register, std::bit_cast<std::uint64_t>(value));
}

void VChecksum::Compute(const _TvPoint2Str& point)
{
    m_register = kernels::Crc32(m_register, &point, sizeof point);
}

void VChecksum::Compute(const _TvPoint3Str& point)
{
    m_register = kernels::Crc32(m_register, &point, sizeof point);
}

void VChecksum::Compute(const BuString& text)
{
    m_register = AfterText(m_register, text);
}

void VChecksum::Compute(const std::vector<int>& values)
{
    m_register = AfterValues(m_register, values);
}

void VChecksum::Compute(const std::vector<double>& values)
{
    m_register = AfterValues(m_register, values);
}

void VChecksum::Compute(const std::vector<_TvPoint2Str>& points)
{
    m_register = AfterValues(m_register, points);
}

void VChecksum::Compute(const std::vector<_TvPoint3Str>& points)
{
    m_register = AfterValues(m_register, points);
}

void VChecksum::Compute(const std::vector<BuString>& texts)
{
    for (const BuString& text : texts)
        m_register = AfterText(m_register, text);
}

void VChecksum::Compute(const unsigned long long& size, const void* data)
{
    const auto count = static_cast<std::uint32_t>(size);  // Kept: stored checksums of larger blocks depend on it
    if (data != nullptr)
        m_register = kernels::Crc32(m_register, data, count);
}

void VChecksum::Compute(const unsigned char* bytes, int count)
{
    if (bytes != nullptr && count > 0)
        m_register = kernels::Crc32(m_register, bytes, static_cast<std::size_t>(count));
}
