// What VChecksum gives for some bytes.
#pragma once

#include <TuvoUtil/Checksum.h>

#include <string_view>

inline unsigned int ChecksumOf(std::string_view bytes)
{
    VChecksum checksum;
    checksum.Compute(bytes.size(), bytes.data());
    return checksum.GetChecksum();
}
