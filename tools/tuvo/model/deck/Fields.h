// The fields of a line that commas divide, and the numbers in them as Fortran programs write them.
#pragma once

#include <basutl/BuCharacter.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tool {

enum class Got : std::uint8_t
{
    Value,
    Nothing,  // the field is empty
    Other     // the field is something else, or out of range
};

// A text that is one whole number, or one number, alone, blanks around it allowed. An id is at most 2147483647. A
// number may have its exponent behind a D, or without a letter: 1.57d0, 1.5+3; it is finite.
Got ReadId(std::string_view text, std::int32_t& id);
Got ReadReal(std::string_view text, double& value);

// What is wrong with a field that gave Other: `"12a" is no id`.
std::string NoId(std::string_view text);
std::string NoReal(std::string_view text);

// Goes through a line field by field. Nothing behind the last comma is no field.
class Fields
{
public:
    explicit Fields(std::string_view line) : m_at(line.data()), m_end(line.data() + line.size()) {}

    bool AtEnd()
    {
        SkipBlanks();
        return m_at == m_end;
    }

    // Takes the next field. One that is Other is not taken: Text tells what it is.
    Got Id(std::int32_t& id);
    Got Real(double& value);
    std::string_view Text();  // without blanks around it

private:
    void SkipBlanks()
    {
        while (m_at != m_end && (*m_at == ' ' || *m_at == '\t'))
            ++m_at;
    }
    bool EndField(const char* behind);
    Got AnyId(std::int32_t& id);  // at the end of a line, signed, long, or none

    const char* m_at;
    const char* m_end;
};

// Whether the field ends at `behind` but for blanks; it is then taken.
inline bool Fields::EndField(const char* behind)
{
    while (behind != m_end && (*behind == ' ' || *behind == '\t'))
        ++behind;
    if (behind != m_end && *behind != ',')
        return false;
    m_at = behind != m_end ? behind + 1 : behind;
    return true;
}

// The number that eight bytes begin with, and how many digits it has, 0 to 8. The first byte is the lowest one.
struct LeadingDigits
{
    explicit LeadingDigits(std::uint64_t bytes)
    {
        constexpr std::uint64_t Each = 0x0101010101010101;
        // A byte that is no digit gets its highest bit: above '9' by the sum, below '0' by the difference, which borrows
        // from none of the digits in front of it.
        const std::uint64_t others = ((bytes + Each * ('\x7f' - '9')) | (bytes - Each * '0') | bytes) & Each * 0x80;
        count = std::countr_zero(others) / 8;
        if (count == 0)
            return;
        // The digits as the last of eight, zeros in front; then neighbours are joined to pairs, to fours, to eight.
        const std::uint64_t digits = ((bytes - Each * '0') << (64 - 8 * count)) & Each * 0x0F;
        const std::uint64_t pairs = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FF;
        const std::uint64_t fours = (pairs * 100 + (pairs >> 16)) & 0x0000FFFF0000FFFF;
        value = static_cast<std::uint32_t>(fours * 10000 + (fours >> 32));
    }

    int count;
    std::uint32_t value = 0;
};

inline Got Fields::Id(std::int32_t& id)
{
    constexpr std::ptrdiff_t Room = sizeof(std::uint64_t);
    SkipBlanks();
    if (m_end - m_at < Room)
        return AnyId(id);
    std::uint64_t bytes;
    std::memcpy(&bytes, m_at, sizeof bytes);
    const LeadingDigits digits(bytes);
    if (digits.count == 0 || digits.count == Room || !EndField(m_at + digits.count))
        return AnyId(id);
    id = static_cast<std::int32_t>(digits.value);
    return Got::Value;
}

}  // namespace tool
