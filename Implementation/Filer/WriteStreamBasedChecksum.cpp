// The stream that only computes a checksum.
#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Checksum.h>
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/WriteStream.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

class WriteStreamBasedChecksum final : public IWriteStreamBasedChecksum
{
public:
    static void* operator new(std::size_t size) noexcept { return VBuMalloc(size, modules::Filer, __LINE__, 0); }
    static void operator delete(void* block) noexcept { VBuFree(block, modules::Filer, __LINE__); }

    // Kept: numbers that a checksum takes wider than the file does. Stored checksums depend on it.
    int WriteWideInt(int value) override { return WriteInt64(value); }
    int WriteUnsignedInt(unsigned int value) override { return WriteUnsignedInt64(value); }
    int WriteShort(short value) override { return Add<int>(value); }
    int WriteUnsignedShort(unsigned short value) override { return Add<int>(value); }

    // Kept: what stands at the address, where the file gets the address.
    int WriteAddress(unsigned long long address) override
    {
        return AddAt(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(address)), 8);
    }

    int WriteInt(int value) override { return Add(value); }
    int WriteInt64(long long value) override { return Add(value); }
    int WriteFloat(float value) override { return Add(value); }
    int WriteDouble(double value) override { return Add(value); }
    int WriteReal(double value) override { return Add(value); }
    int WriteText(const BuString& text) override { return Add(text); }
    int WritePoint2(const _TvPoint2Str& point) override { return Add(point); }
    int WritePoint3(const _TvPoint3Str& point) override { return Add(point); }
    int WriteChar(char value) override { return Add(value); }
    int WriteBlock128(const void* block) override { return AddAt(block, 128); }
    int WriteString(const char* text) override { return AddCharacters(text); }
    int WriteUnsignedInt64(unsigned long long value) override { return Add(value); }
    int WriteByte(unsigned char value) override { return Add(value); }
    int WriteCountedString(const char* text) override { return AddCharacters(text); }
    int WriteInt32(int value) override { return Add(value); }
    int WriteInt32Triple(const int* values) override { return AddAt(values, 3 * sizeof *values); }
    int WriteFloat32(float value) override { return Add(value); }
    int WritePoint2At(const _TvPoint2Str* point) override { return AddAt(point, sizeof *point); }
    int WritePoint3At(const _TvPoint3Str* point) override { return AddAt(point, sizeof *point); }
    int WriteInt32Pair(const int* values) override { return AddAt(values, 2 * sizeof *values); }
    int WriteFloat64(double value) override { return Add(value); }
    int WriteBytes(unsigned long long size, const void* data) override { return AddAt(data, size); }
    int Seek(long long, int) override { return 0; }
    long long Tell() override { return 0; }
    bool IsValid() override { return true; }
    unsigned int GetChecksum() override { return m_checksum.GetChecksum(); }

private:
    template <typename Value>
    int Add(const Value& value)
    {
        return AddAt(&value, sizeof value);
    }

    int Add(double value)
    {
        m_checksum.Compute(value);
        return 0;
    }

    int Add(const BuString& text)
    {
        m_checksum.Compute(text);
        return 0;
    }

    int AddAt(const void* data, unsigned long long size)
    {
        m_checksum.Compute(size, data);
        return 0;
    }

    // All of them, however many there are.
    int AddCharacters(const char* text)
    {
        constexpr std::size_t most = std::size_t{1} << 30;
        std::size_t left = text != nullptr ? std::strlen(text) : 0;
        for (std::size_t size = 0; left != 0; text += size, left -= size) {
            size = std::min(left, most);
            m_checksum.Compute(size, text);
        }
        return 0;
    }

    VChecksum m_checksum;
};

}  // namespace

IWriteStream::~IWriteStream() = default;
IWriteStreamBasedChecksum::~IWriteStreamBasedChecksum() = default;

IWriteStreamBasedChecksum* CreateWriteStreamBasedChecksum()
{
    return new WriteStreamBasedChecksum;
}
