#include <TuvoUtil/BinaryRead.h>

#include "Kernels/ByteSwap.h"
#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>

#include <bit>
#include <cstdint>

namespace {

template <typename Value>
void Convert(void (*change)(void*, std::size_t) noexcept, Value* values, int n)
{
    if (values != nullptr && n > 0)
        change(values, static_cast<std::size_t>(n));
}

// Bytes one by one: of an element that is not whole, fread need not give what there is.
std::size_t ReadBytes(std::FILE* fp, void* bytes, std::size_t size)
{
    return fp != nullptr ? std::fread(bytes, 1, size, fp) : 0;
}

template <typename Word, Word (*Change)(Word)>
Word Read(std::FILE* fp, int swap)
{
    Word word = 0;
    ReadBytes(fp, &word, sizeof word);
    return swap != 0 ? Change(word) : word;
}

constexpr auto ReadWord2 = Read<std::uint16_t, kernels::Reversed2>;
constexpr auto ReadWord4 = Read<std::uint32_t, kernels::Reversed4>;
constexpr auto ReadWord8 = Read<std::uint64_t, kernels::HalfReversed8>;

}  // namespace

void UtlConvert2byteInt(unsigned short* values, int n)
{
    Convert(kernels::Reverse2, values, n);
}

void UtlConvert4byteInt(int* values, int n)
{
    Convert(kernels::Reverse4, values, n);
}

float UtlConvert4byteFloat(float* values, int n)
{
    Convert(kernels::Reverse4, values, n);
    return 0.0F;
}

// Kept: the last four bytes stay as they are; files and callers depend on it.
double UtlConvert8byteDouble(double* values, int n)
{
    Convert(kernels::HalfReverse8, values, n);
    return 0.0;
}

int UtlRead2byteInt(std::FILE* fp, int swap)
{
    return ReadWord2(fp, swap);
}

int UtlRead4byteInt(std::FILE* fp, int swap)
{
    return static_cast<int>(ReadWord4(fp, swap));
}

float UtlRead4byteFloat(std::FILE* fp, int swap)
{
    return std::bit_cast<float>(ReadWord4(fp, swap));
}

double UtlRead8byteDouble(std::FILE* fp, int swap)
{
    return std::bit_cast<double>(ReadWord8(fp, swap));
}

char* UtlReadVariableString(std::FILE* fp, int swap)
{
    const std::size_t length = ReadWord2(fp, swap);
    if (length == 0)
        return nullptr;
    char* const text = static_cast<char*>(VBuCalloc(length + 1, 1, modules::VUtlGen, __LINE__));
    if (text != nullptr)
        ReadBytes(fp, text, length);
    return text;
}
