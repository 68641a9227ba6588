#include <TuvoUtil/Image.h>

#include "Image/ImageDecoder.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <memory>

namespace {

using tuvo::utl::TuvoImageComponents;

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// The file goes through the seam, which knows both separators, and not through the decoder.
File Open(const char* path)
try {
    return File(path == nullptr ? nullptr : platform::OpenFile(platform::Widen(path).c_str(), L"rb"));
} catch (const std::exception&) {
    return nullptr;
}

template <typename Channel>
void TurnRowsRound(Channel* pixels, std::size_t rowSize, int height)
{
    for (Channel *upper = pixels, *lower = pixels + rowSize * static_cast<std::size_t>(height); height > 1;
         height -= 2) {
        lower -= rowSize;
        std::swap_ranges(upper, upper + rowSize, lower);
        upper += rowSize;
    }
}

template <typename Value>
void Store(Value* place, int value)
{
    if (place != nullptr)
        *place = static_cast<Value>(value);
}

// Rows are turned round here and not by the decoder, whose switch would hold for other threads and for the next load.
template <typename Channel>
Channel* Load(Channel* (*decode)(std::FILE*, int, image::Size&) noexcept, const char* path, int* width, int* height,
              TuvoImageComponents* channelsInFile, TuvoImageComponents wanted, bool flip)
{
    const File file = Open(path);
    image::Size size;
    Channel* const pixels = file != nullptr ? decode(file.get(), wanted, size) : nullptr;
    if (pixels == nullptr)
        return nullptr;
    if (flip) {
        const int channels = wanted != 0 ? wanted : size.channels;
        TurnRowsRound(pixels, static_cast<std::size_t>(size.width) * static_cast<std::size_t>(channels), size.height);
    }
    Store(width, size.width);
    Store(height, size.height);
    Store(channelsInFile, size.channels);
    return pixels;
}

using tuvo::utl::TuvoImagePixelDataType;

using LoadFunction = unsigned char* (*)(const wchar_t*, bool, unsigned*, unsigned*, TuvoImagePixelDataType*);
using SaveFunction = void (*)(const wchar_t*, unsigned, unsigned, TuvoImagePixelDataType, unsigned char*, bool);
using FreeFunction = void (*)(unsigned char*);

constinit LoadFunction g_load = nullptr;
constinit SaveFunction g_save = nullptr;
constinit FreeFunction g_free = nullptr;

}  // namespace

unsigned char* tuvo::utl::LoadAImage(const char* path, int* width, int* height, TuvoImageComponents* channelsInFile,
                                     TuvoImageComponents wanted, bool flip)
{
    return Load(image::DecodeBytes, path, width, height, channelsInFile, wanted, flip);
}

float* tuvo::utl::LoadAImageFlt(const char* path, int* width, int* height, TuvoImageComponents* channelsInFile,
                                TuvoImageComponents wanted, bool flip)
{
    return Load(image::DecodeFloats, path, width, height, channelsInFile, wanted, flip);
}

void tuvo::utl::FreeImage(void* pixels)
{
    std::free(pixels);
}

void tuvo::utl::RegisterLoadImageFunc(unsigned char* (*load)(const wchar_t* path, bool flag, unsigned* width,
                                                             unsigned* height, TuvoImagePixelDataType* type))
{
    g_load = load != nullptr ? load : g_load;
}

void tuvo::utl::RegisterSaveImageFunc(void (*save)(const wchar_t* path, unsigned width, unsigned height,
                                                   TuvoImagePixelDataType type, unsigned char* pixels, bool flag))
{
    g_save = save != nullptr ? save : g_save;
}

void tuvo::utl::RegisterFreeImageFunc(void (*free)(unsigned char* pixels))
{
    g_free = free != nullptr ? free : g_free;
}

unsigned char* tuvo::utl::LoadImageEx(const wchar_t* path, bool flag, unsigned* width, unsigned* height,
                                      TuvoImagePixelDataType* type)
{
    return g_load != nullptr ? g_load(path, flag, width, height, type) : nullptr;
}

void tuvo::utl::SaveImage(const wchar_t* path, unsigned width, unsigned height, TuvoImagePixelDataType type,
                          unsigned char* pixels, bool flag)
{
    if (g_save != nullptr)
        g_save(path, width, height, type, pixels, flag);
}

void tuvo::utl::FreeImageEx(unsigned char* pixels)
{
    if (g_free != nullptr)
        g_free(pixels);
}
