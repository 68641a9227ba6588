#include <TuvoUtil/Image.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using namespace tuvo::utl;

namespace {

// ---- Images as the tests see them ----------------------------------------------------------------------------------

template <typename Channel>
struct Image
{
    std::vector<Channel> channels;
    int width = -7, height = -7, inFile = -7;  // what no load gives

    bool IsUntouched() const { return channels.empty() && width == -7 && height == -7 && inFile == -7; }
    bool operator==(const Image&) const = default;
};
using Bytes = Image<unsigned char>;
using Floats = Image<float>;

template <typename Channel, typename Loader>
Image<Channel> Load(Loader load, const char* path, int wanted, bool flip)
{
    Image<Channel> image;
    auto inFile = static_cast<TuvoImageComponents>(image.inFile);
    Channel* const pixels =
        load(path, &image.width, &image.height, &inFile, static_cast<TuvoImageComponents>(wanted), flip);
    image.inFile = inFile;
    if (pixels != nullptr)
        image.channels.assign(pixels, pixels + image.width * image.height * (wanted != 0 ? wanted : inFile));
    FreeImage(pixels);
    return image;
}

Bytes LoadBytes(const std::string& path, int wanted = 0, bool flip = false)
{
    return Load<unsigned char>(LoadAImage, path.c_str(), wanted, flip);
}

Floats LoadFloats(const std::string& path, int wanted = 0, bool flip = false)
{
    return Load<float>(LoadAImageFlt, path.c_str(), wanted, flip);
}

std::string Sample(const char* name)
{
    return SourceFile("fuzz/corpus/Image/") + name;
}

// ---- The picture that all samples show -----------------------------------------------------------------------------

constexpr int Width = 8, Height = 3;

std::array<int, 4> Colour(int x, int y)
{
    return {30 * x + 5, 100 * y + 20, 25 * (x + y) + 3, 255 - 30 * x - 10 * y};
}

int Grey(int x, int y)
{
    const auto [red, green, blue, alpha] = Colour(x, y);
    return (77 * red + 150 * green + 29 * blue) / 256;
}

struct SampleFile
{
    const char* name;
    int inFile;            // the channels that are reported
    const char* channels;  // what they hold: the colours r, g, b and a, or 1 for full
    int tolerance = 0;     // of JPEG
};

constexpr SampleFile Samples[] = {
    {"rgb.png", 3, "rgb"},         {"rgb16.png", 3, "rgb"},
    {"palette.png", 3, "rgb"},     {"interlaced.png", 4, "rgba"},
    {"grey.png", 1, "r"},          {"greyalpha.png", 2, "ra"},
    {"baseline.jpg", 3, "rgb", 4}, {"progressive.jpg", 3, "rgb", 4},
    {"grey.jpg", 1, "r", 2},       {"rgb.bmp", 3, "rgb"},
    {"palette.bmp", 3, "rgb"},     {"rgba.bmp", 4, "rgba"},
    {"rgb.gif", 4, "rgb1"},        {"rgb.psd", 4, "rgb1"},
    {"runs.tga", 3, "rgb"},        {"rgba.tga", 4, "rgba"},
    {"grey.tga", 1, "r"},          {"grey.pgm", 1, "r"},
    {"rgb16.ppm", 3, "rgb"},       {"rgba.pic", 4, "rgba"},
};

// A picture as it was drawn, its rows from the top or from the bottom.
Bytes Drawn(const SampleFile& sample, bool flip)
{
    Bytes image{{}, Width, Height, sample.inFile};
    for (int row = 0; row < Height; ++row)
        for (int x = 0; x < Width; ++x)
            for (const char* channel = sample.channels; *channel != '\0'; ++channel) {
                const std::size_t at = std::string("rgba").find(*channel);
                const int value = at == std::string::npos ? 255 : Colour(x, flip ? Height - 1 - row : row)[at];
                image.channels.push_back(static_cast<unsigned char>(value));
            }
    return image;
}

// ---- Decoding ------------------------------------------------------------------------------------------------------

TEST(Image, EveryFormatIsReadRightSideUpAndFlipped)
{
    for (const SampleFile& sample : Samples)
        for (const bool flip : {true, false, true}) {
            Bytes image = LoadBytes(Sample(sample.name), 0, flip);
            const Bytes drawn = Drawn(sample, flip);
            ASSERT_EQ(image.channels.size(), drawn.channels.size()) << sample.name;
            for (std::size_t i = 0; i < drawn.channels.size(); ++i)
                if (std::abs(image.channels[i] - drawn.channels[i]) <= sample.tolerance)
                    image.channels[i] = drawn.channels[i];
            EXPECT_TRUE(image == drawn) << sample.name << (flip ? " flipped" : "");
        }
    // Half transparent colours of this format are freed of the white that they were mixed with.
    EXPECT_EQ(LoadBytes(Sample("rgba.psd")).inFile, 4);
}

TEST(Image, ChannelsAreConvertedToTheWantedNumber)
{
    for (const char* const name : {"rgba.tga", "rgba.bmp", "rgba.pic"})
        for (int wanted = 1; wanted <= 4; ++wanted) {
            const Bytes image = LoadBytes(Sample(name), wanted);
            EXPECT_EQ(image.inFile, 4);
            std::vector<unsigned char> expected;
            for (int i = 0; i < Width * Height; ++i) {
                const auto colour = Colour(i % Width, i / Width);
                const std::array<int, 4> grey = {Grey(i % Width, i / Width), colour[3]};
                const auto& from = wanted < 3 ? grey : colour;
                for (int channel = 0; channel < wanted; ++channel)
                    expected.push_back(static_cast<unsigned char>(from[static_cast<std::size_t>(channel)]));
            }
            EXPECT_TRUE(image.channels == expected) << name << ' ' << wanted;
        }
}

TEST(Image, FloatsFollowTheBytesAndHdrIsLinear)
{
    for (const SampleFile& sample : Samples) {
        const Bytes bytes = LoadBytes(Sample(sample.name), 0, true);
        const Floats floats = LoadFloats(Sample(sample.name), 0, true);
        ASSERT_EQ(floats.channels.size(), bytes.channels.size()) << sample.name;
        const auto count = static_cast<std::size_t>(sample.inFile);
        for (std::size_t i = 0; i < bytes.channels.size(); ++i) {
            const bool isAlpha = count % 2 == 0 && i % count == count - 1;
            const double full = bytes.channels[i] / 255.0;
            EXPECT_NEAR(floats.channels[i], isAlpha ? full : std::pow(full, 2.2), 1e-6) << sample.name << ' ' << i;
        }
    }
    for (const bool flip : {true, false}) {
        const Bytes bytes = LoadBytes(Sample("rgb.hdr"), 0, flip);
        const Floats floats = LoadFloats(Sample("rgb.hdr"), 0, flip);
        const Bytes drawn = Drawn({"", 3, "rgb"}, flip);
        ASSERT_EQ(floats.channels.size(), drawn.channels.size());
        ASSERT_EQ(bytes.channels.size(), drawn.channels.size());
        for (std::size_t i = 0; i < drawn.channels.size(); ++i) {
            EXPECT_NEAR(floats.channels[i], drawn.channels[i] / 255.0, 0.01);
            EXPECT_NEAR(bytes.channels[i], 255 * std::pow(floats.channels[i], 1 / 2.2), 0.51);
        }
    }
}

TEST(Image, PathsMayHaveEitherSeparatorAndAnyCharacter)
{
    const TemporaryFolder folder;
    const char* const name = platform::Separator() == L'/' ? "entw\xC3\xBCrf" : "entwurf";
    folder.Write(name, ReadBinaryFile(platform::Widen(Sample("rgb.png"))));
    std::string path = folder.NarrowPath(name);
    for (const char separator : {'/', '\\'}) {
        std::replace_if(
            path.begin(), path.end(), [](char c) { return c == '/' || c == '\\'; }, separator);
        EXPECT_EQ(LoadBytes(path).width, Width) << path;
    }
}

// A switch of the process would turn the rows of the other thread's image.
TEST_IN_CHILD(Image, ThreadsDoNotMeet)
{
    const SampleFile& sample = Samples[0];
    const auto load = [&](bool flip) {
        const Bytes drawn = Drawn(sample, flip);
        for (int i = 0; i < 50; ++i)
            EXPECT_TRUE(LoadBytes(Sample(sample.name), 0, flip) == drawn) << flip;
    };
    std::thread other(load, true);
    load(false);
    other.join();
}

// ---- What is no image, or one that is too large --------------------------------------------------------------------

class ImageFiles : public testing::Test
{
protected:
    std::string Write(const std::string& bytes) const { return platform::Narrow(m_folder.Write("file", bytes)); }
    void ExpectNone(const std::string& path, int wanted, const char* what) const
    {
        EXPECT_TRUE(LoadBytes(path, wanted, true).IsUntouched()) << what;
        EXPECT_TRUE(LoadFloats(path, wanted, true).IsUntouched()) << what;
    }
    const TemporaryFolder m_folder;
};

std::string BigEndian(unsigned value)
{
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

std::string Reversed(std::string text)
{
    std::reverse(text.begin(), text.end());
    return text;
}

std::string PngHead(unsigned width, unsigned height)
{
    return std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) + BigEndian(width) + BigEndian(height) +
           std::string("\b\2\0\0\0crc.", 9);
}

// Of 8 bits and a palette with as many colours as there are bytes for four.
std::string Bmp(unsigned width, unsigned height, const std::string& palette, const std::string& pixels)
{
    const auto number = [](std::size_t value) { return Reversed(BigEndian(static_cast<unsigned>(value))); };
    return "BM" + number(0) + number(0) + number(54 + palette.size()) + number(40) + number(width) + number(height) +
           std::string("\1\0\b\0", 4) + number(0) + number(0) + number(0) + number(0) + number(palette.size() / 4) +
           number(0) + palette + pixels;
}

TEST_F(ImageFiles, WhatIsNoImageLeavesEverythingAsItWas)
{
    ExpectNone(m_folder.NarrowPath("missing.png"), 0, "missing");
    ExpectNone(m_folder.NarrowPath(), 0, "a directory");
    ExpectNone(Write(""), 0, "empty");
    ExpectNone(Write(std::string(1000, 'x')), 0, "text");
    ExpectNone(Sample("rgb.bmp"), 5, "five channels");
    ExpectNone(Sample("rgb.bmp"), -1, "minus one channel");
    EXPECT_TRUE(Load<unsigned char>(LoadAImage, nullptr, 0, false).IsUntouched());
    EXPECT_TRUE(LoadBytes(Sample("rgb.png")) == Drawn(Samples[0], false)) << "the next one is the right side up";

    unsigned char* const pixels =
        LoadAImage(Sample("rgb.png").c_str(), nullptr, nullptr, nullptr, TUVO_IMAGE_RGB, false);
    EXPECT_NE(pixels, nullptr) << "nobody has to ask for the size";
    FreeImage(pixels);
    FreeImage(nullptr);
}

TEST_F(ImageFiles, TooLargeGivesNone)
{
    const std::string row(65537, '*');
    const struct
    {
        const char* what;
        std::string file;
    } rows[] = {
        {"a row too wide", "P5 65537 1 255\n" + row},
        {"a column too high", "P5 1 65537 255\n" + row},
        {"four billion pixels", PngHead(65536, 65536)},
        {"four billion wide", PngHead(4'294'967'295u, 1)},
        {"higher than numbers go", Bmp(1, 0x8000'0000u, "", "*")},
        {"too high from the top", Bmp(1, 0xFFFE'FFFFu, "", row)},
        {"four billion pixels", std::string("\0\0\3\0\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\b\0", 18)},
    };
    for (const auto& [what, file] : rows)
        ExpectNone(Write(file), 0, what);
    EXPECT_EQ(LoadBytes(Write("P5 65536 1 255\n" + row)).width, 65536);
    EXPECT_EQ(LoadFloats(Write("P5 1 65536 255\n" + row)).height, 65536);
}

TEST_F(ImageFiles, DamageShowsNothingThatIsNotInTheFile)
{
    // A colour that the palette does not have.
    EXPECT_TRUE(LoadBytes(Write(Bmp(3, 1, "bgr.BGR.", std::string("\1\xC8\0\0", 4))), 3).channels ==
                (std::vector<unsigned char>{'R', 'G', 'B', 0, 0, 0, 'r', 'g', 'b'}));
    std::string png = ReadBinaryFile(platform::Widen(Sample("palette.png")));
    const std::size_t palette = png.find("PLTE");
    png.replace(palette - 1, 4 + 1 + 72, "\3PLTErgb");
    std::vector<unsigned char> black(Width * Height * 3);
    std::copy_n("rgb", 3, black.begin());
    EXPECT_TRUE(LoadBytes(Write(png)).channels == black);
    // The end of the file within the pixels.
    const std::string head = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 3\n";
    EXPECT_TRUE(LoadFloats(Write(head + "\x80\x40\x20\x81\xFF\xFF"), 3).channels ==
                (std::vector<float>{1, 0.5, 0.25, 0, 0, 0, 0, 0, 0}));
    // More Huffman codes than a table has room for, in a table that nobody uses.
    std::string jpeg = ReadBinaryFile(platform::Widen(Sample("baseline.jpg")));
    const std::string table = std::string(1, '\x13') + std::string(9, '\0') + "\x96\x96" + std::string(5, '\0');
    jpeg.insert(2, std::string("\xFF\xC4\x01\x3F", 4) + table + std::string(300, '\1'));
    ExpectNone(Write(jpeg), 3, "300 codes");
    // Pixels that cannot be decoded.
    std::string pic = ReadBinaryFile(platform::Widen(Sample("rgba.pic")));
    ExpectNone(Write(pic.replace(106, 1, "\7")), 1, "an unknown kind of runs");
}

// ---- Functions of the host -----------------------------------------------------------------------------------------

std::string g_calls;

unsigned char g_pixel = 0;

TEST_IN_CHILD(Image, TheHostsFunctionsGetEverythingAsItIs)
{
    unsigned width = 1, height = 2;
    auto type = TuvoImagePixelDataType{3};
    EXPECT_EQ(LoadImageEx(L"a", true, &width, &height, &type), nullptr);
    EXPECT_EQ(width + height + static_cast<unsigned>(type), 6u) << "nothing is stored";
    SaveImage(L"b", 1, 2, type, &g_pixel, true);
    FreeImageEx(&g_pixel);

    RegisterLoadImageFunc([](const wchar_t* path, bool flag, unsigned* w, unsigned* h, TuvoImagePixelDataType* t) {
        g_calls += "load " + platform::Narrow(path) + (flag ? " 1;" : " 0;");
        *w = 40, *h = 50, *t = TuvoImagePixelDataType{-60};
        return &g_pixel;
    });
    RegisterSaveImageFunc(
        [](const wchar_t* path, unsigned w, unsigned h, TuvoImagePixelDataType t, unsigned char* pixels, bool flag) {
            g_calls += "save " + platform::Narrow(path) + ' ' + std::to_string(w) + ' ' + std::to_string(h) + ' ' +
                       std::to_string(t) + (pixels == &g_pixel ? " pixel" : "") + (flag ? " 1;" : " 0;");
        });
    RegisterFreeImageFunc([](unsigned char* pixels) { g_calls += pixels == nullptr ? "free null;" : "free;"; });
    RegisterLoadImageFunc(nullptr);  // leaves what is there
    RegisterSaveImageFunc(nullptr);
    RegisterFreeImageFunc(nullptr);

    EXPECT_EQ(LoadImageEx(L"c\\d", false, &width, &height, &type), &g_pixel);
    EXPECT_EQ(width, 40u);
    EXPECT_EQ(height, 50u);
    EXPECT_EQ(type, TuvoImagePixelDataType{-60});
    SaveImage(L"e", width, 4'000'000'000u, type, &g_pixel, true);
    FreeImageEx(nullptr);
    EXPECT_EQ(g_calls, "load c\\d 0;save e 40 4000000000 -60 pixel 1;free null;");
    RegisterFreeImageFunc([](unsigned char*) { g_calls = "the last one counts"; });
    FreeImageEx(&g_pixel);
    EXPECT_EQ(g_calls, "the last one counts");
}

}  // namespace
