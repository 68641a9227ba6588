// From an open image file to pixels.
#pragma once

#include <cstdio>

namespace image {

struct Size
{
    int width = 0;
    int height = 0;
    int channels = 0;  // of the file
};

// What the head of a file says of the image, which need not be true; all 0 when it is not that of an image. The file stays
// where it was.
Size ReadSize(std::FILE* file) noexcept;

// Reads an image from where a file stands and gives its pixels, in rows from the top, in a block for std::free. `channels`
// is 1 to 4, or 0 for those of the file. Null when there is no image, it is too large, it cannot be read, or memory is
// exhausted; `size` is only set otherwise.
unsigned char* DecodeBytes(std::FILE* file, int channels, Size& size) noexcept;
float* DecodeFloats(std::FILE* file, int channels, Size& size) noexcept;

}  // namespace image
