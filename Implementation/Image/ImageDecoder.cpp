#include "Image/ImageDecoder.h"

#include "Image/DecoderBlocks.h"

#include <cstdint>
#include <cstdlib>
#include <exception>

namespace {

constexpr int LargestSide = 65536;                            // pixels
constexpr std::int64_t LargestImage = std::int64_t{1} << 31;  // bytes

// What the decoder takes for impossible ends the decoding, in release builds too.
struct ImpossibleImage : std::exception
{};

void Expect(bool isTrue)
{
    if (!isTrue)
        throw ImpossibleImage();
}

}  // namespace

// A decoder of our own, shared with nobody, without texts for failures and so without state of the process or the thread.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_THREAD_LOCALS
#define STBI_NO_FAILURE_STRINGS
#define STBI_MAX_DIMENSIONS LargestSide
#define STBI_ASSERT(condition) Expect(condition)
#define STBI_MALLOC(size) image::DecoderBlocks::Allocate(size)
#define STBI_REALLOC(block, size) image::DecoderBlocks::Resize(block, size)
#define STBI_FREE(block) image::DecoderBlocks::Free(block)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"  // which the decoder writes around the macros above
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

namespace {

// For images whose head cannot be read apart the decoder's own limits hold: the same for the sides, and INT_MAX bytes.
bool IsTooLarge(const image::Size& size, int channels, std::int64_t channelBytes)
{
    const std::int64_t width = size.width;
    const std::int64_t height = std::abs(std::int64_t{size.height});  // negative in a BMP that starts at the top
    const std::int64_t pixelBytes = (channels != 0 ? channels : size.channels) * channelBytes;
    return width > LargestSide || height > LargestSide || width * height * pixelBytes > LargestImage;
}

// `load` is one of the decoder's two functions.
template <typename Channel>
Channel* Decode(Channel* (*load)(FILE*, int*, int*, int*, int), std::FILE* file, int channels, image::Size& size)
try {
    if (channels < 0 || channels > 4 || IsTooLarge(image::ReadSize(file), channels, sizeof(Channel)))
        return nullptr;
    image::DecoderBlocks blocks;
    image::Size decoded;
    Channel* const pixels = load(file, &decoded.width, &decoded.height, &decoded.channels, channels);
    if (pixels == nullptr || std::ferror(file) != 0)
        return nullptr;
    blocks.GiveAway(pixels);
    size = decoded;
    return pixels;
} catch (const std::exception&) {
    return nullptr;
}

}  // namespace

image::Size image::ReadSize(std::FILE* file) noexcept
try {
    const DecoderBlocks blocks;
    Size size;
    return stbi_info_from_file(file, &size.width, &size.height, &size.channels) != 0 ? size : Size();
} catch (const std::exception&) {
    return {};
}

unsigned char* image::DecodeBytes(std::FILE* file, int channels, Size& size) noexcept
{
    return Decode(stbi_load_from_file, file, channels, size);
}

float* image::DecodeFloats(std::FILE* file, int channels, Size& size) noexcept
{
    return Decode(stbi_loadf_from_file, file, channels, size);
}
