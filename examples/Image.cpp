// Loads a texture for a viewer whose rows go from the bottom, and lets the host's own function load what it alone knows.
#include <TuvoUtil/Image.h>

#include <cstdio>

using namespace tuvo::utl;

namespace {

constexpr TuvoImagePixelDataType Bytes{1};

unsigned char* Checkerboard(const wchar_t*, bool, unsigned* width, unsigned* height, TuvoImagePixelDataType* type)
{
    static unsigned char pixels[] = {0, 255, 255, 0};
    *width = *height = 2;
    *type = Bytes;
    return pixels;
}

}  // namespace

int main()
{
    // Two pixels one above the other, red and blue, in the simplest of formats.
    std::FILE* const file = std::fopen("texture.ppm", "wb");
    if (file == nullptr)
        return 1;
    std::fwrite("P6 1 2 255\n\xFF\0\0\0\0\xFF", 1, 17, file);
    std::fclose(file);

    int width = 0;
    int height = 0;
    TuvoImageComponents inFile;
    unsigned char* const pixels = LoadAImage("texture.ppm", &width, &height, &inFile, TUVO_IMAGE_RGBA, true);
    std::remove("texture.ppm");
    std::printf("%d x %d, %d channels in the file\n", width, height, inFile);
    for (int y = 0; pixels != nullptr && y < height; ++y)
        std::printf("row %d: %d %d %d %d\n", y, pixels[4 * y], pixels[4 * y + 1], pixels[4 * y + 2], pixels[4 * y + 3]);
    FreeImage(pixels);

    unsigned columns = 0;
    unsigned rows = 0;
    TuvoImagePixelDataType type{};
    std::printf("%s\n", LoadImageEx(L"board", false, &columns, &rows, &type) == nullptr ? "no function" : "loaded");
    RegisterLoadImageFunc(Checkerboard);
    const unsigned char* const board = LoadImageEx(L"board", false, &columns, &rows, &type);
    std::printf("%u x %u: %d %d %d %d\n", columns, rows, board[0], board[1], board[2], board[3]);
}
