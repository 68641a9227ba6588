#include "platform/Platform.h"

#include <TuvoUtil/BinaryRead.h>
#include <TuvoUtil/Memory.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// What a reader gives: the next bytes, zeros behind the end; turned round, the first four come from the end of them.
std::string Take(std::string& input, std::size_t size, int swap)
{
    std::string bytes = input.substr(0, size);
    input.erase(0, size);
    bytes.resize(size);
    const std::string read = bytes;
    for (std::size_t i = 0; swap != 0 && i < size && i < 4; ++i)
        bytes[i] = read[size - 1 - i];
    return bytes;
}

template <typename Value>
bool Matches(Value value, const std::string& bytes)
{
    return std::memcmp(&value, bytes.data(), bytes.size()) == 0;
}

// Whether the reader that the next byte stands for gives what it should.
bool ReadsNext(std::FILE* file, std::string& input)
{
    const int kind = input[0] & 3;
    const int swap = input[0] & 4;
    if (kind == 0)
        return Matches(UtlRead4byteInt(file, swap), Take(input, 4, swap));
    if (kind == 1)
        return Matches(UtlRead8byteDouble(file, swap), Take(input, 8, swap));
    if (kind == 2)
        return Matches(UtlRead2byteInt(file, swap), Take(input, 2, swap));
    std::uint16_t length;
    std::memcpy(&length, Take(input, sizeof length, swap).data(), sizeof length);
    char* const text = UtlReadVariableString(file, swap);
    const bool matches = length == 0 ? text == nullptr : Take(input, length, 0).c_str() == std::string(text);
    VBuFree(text, "fuzz", __LINE__);
    return matches;
}

}  // namespace

// The input is a file whose values say how they are read. Law: every value is that of its bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring path =
        platform::TemporaryDirectory() + L"BinaryReadFuzz" + std::to_wstring(platform::ProcessId());
    std::FILE* const file = platform::OpenFile(path.c_str(), L"wb+");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size)
        std::abort();
    std::rewind(file);
    for (std::string input(reinterpret_cast<const char*>(data), size); !input.empty();)
        if (!ReadsNext(file, input))
            std::abort();
    std::fclose(file);
    platform::RemoveOneFile(path.c_str());
    return 0;
}
