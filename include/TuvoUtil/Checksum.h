// Checksums of model data: VChecksum takes values and reports the CRC-32 of their bytes.
//
// Not a digest that withstands forgery. For the checksum of what a save writes, run the save against the stream of
// CreateWriteStreamBasedChecksum (WriteStream.h).
//
//   VChecksum checksum;
//   checksum.Compute(9, "123456789");
//   checksum.GetChecksum();   // 0x340BC6D9; the usual CRC-32 is its complement, 0xCBF43926
//
// It is the CRC-32 of IEEE 802.3 (reflected polynomial 0xEDB88320), started at 0xFFFFFFFF and not inverted at the end.
// Values count as they lie in memory, little-endian. No lengths and no separators go in: the texts "ab", "c" and "a",
// "bc" give the same. How the bytes are split over calls makes no difference.
//
// Nothing is allocated. Different objects may be used from different threads. Cost: linear in the bytes.
#pragma once

#include <TuvoUtil/Export.h>
#include <TuvoUtil/Types.h>
#include <basutl/BuString.h>

#include <vector>

class TUVOUTIL_API VChecksum
{
public:
    VChecksum();
    VChecksum(const VChecksum& other);             // goes on from where `other` is
    VChecksum& operator=(const VChecksum& other);  // the same
    virtual ~VChecksum();                          // leaves 0 behind

    // The checksum of all bytes so far, 0xFFFFFFFF before the first.
    unsigned int GetChecksum() const;

    // Single values. Of a text each UTF-16 code unit counts with its low byte alone, on both systems.
    void Compute(const char& value);
    void Compute(const int& value);
    void Compute(const double& value);
    void Compute(const _TvPoint2Str& point);
    void Compute(const _TvPoint3Str& point);
    void Compute(const BuString& text);

    // All elements in order.
    void Compute(const std::vector<int>& values);
    void Compute(const std::vector<double>& values);
    void Compute(const std::vector<_TvPoint2Str>& points);
    void Compute(const std::vector<_TvPoint3Str>& points);
    void Compute(const std::vector<BuString>& texts);

    // `size` bytes, nothing for null. Only the low 32 bits of the size count: of 2^32 + 5 bytes the first five go in.
    void Compute(const unsigned long long& size, const void* data);

protected:
    // `count` bytes; nothing when it is negative, or for null.
    void Compute(const unsigned char* bytes, int count);

private:
    unsigned int m_register = 0xFFFFFFFF;
};
