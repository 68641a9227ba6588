#include "Image/ImageDecoder.h"
#include "platform/Platform.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

// What a decoder gives, as bytes.
template <typename Decode>
std::string Decoded(Decode decode, std::FILE* file, int channels)
{
    image::Size size;
    auto* const pixels = decode(file, channels, size);
    const std::int64_t count = std::int64_t{size.width} * size.height * (channels != 0 ? channels : size.channels);
    std::string bytes(reinterpret_cast<const char*>(pixels), static_cast<std::size_t>(count) * sizeof *pixels);
    std::free(pixels);
    std::rewind(file);
    return bytes;
}

}  // namespace

// Law: the same file gives the same image, of as many pixels in bytes as in floats.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring path = platform::TemporaryDirectory() + L"ImageFuzz" + std::to_wstring(platform::ProcessId());
    std::FILE* const file = platform::OpenFile(path.c_str(), L"wb+");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size)
        std::abort();
    std::rewind(file);
    const auto channels = static_cast<int>(size % 5);
    // Gigabytes would take all of the time. Of a PIC that has them the size cannot be read apart.
    const image::Size claimed = image::ReadSize(file);
    const bool isLarge = std::abs(std::int64_t{claimed.width} * claimed.height) >= 1 << 18;
    if (!isLarge && (claimed.width != 0 || size == 0 || *data != 'S')) {
        const std::string bytes = Decoded(image::DecodeBytes, file, channels);
        const std::string floats = Decoded(image::DecodeFloats, file, channels);
        if (bytes != Decoded(image::DecodeBytes, file, channels) || floats.size() != bytes.size() * sizeof(float) ||
            floats != Decoded(image::DecodeFloats, file, channels))
            std::abort();
    }
    std::fclose(file);
    platform::RemoveOneFile(path.c_str());
    return 0;
}
