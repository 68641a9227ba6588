// Images of every format while memory is exhausted, cut short at every byte and damaged at every byte: an image or none,
// the same one every time, and nothing lost.

#include <TuvoUtil/Image.h>

#include "Image/ImageDecoder.h"
#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

std::vector<std::string> SampleNames()
{
    std::vector<std::wstring> names;
    platform::ListDirectory(platform::Widen(SourceFile("fuzz/corpus/Image")).c_str(), names);
    std::vector<std::string> narrow(names.size());
    std::transform(names.begin(), names.end(), narrow.begin(), platform::Narrow);
    EXPECT_FALSE(narrow.empty());
    return narrow;
}

std::string SamplePath(const std::string& name)
{
    return SourceFile(("fuzz/corpus/Image/" + name).c_str());
}

// What a decoder makes of a file: the bytes of the pixels, none when it gives no image.
template <typename Decoder>
std::string Decoded(Decoder decode, std::FILE* file, int channels)
{
    std::rewind(file);
    image::Size size;
    auto* const pixels = decode(file, channels, size);
    std::string bytes;
    if (pixels != nullptr) {
        const int count = size.width * size.height * (channels != 0 ? channels : size.channels);
        bytes.assign(reinterpret_cast<const char*>(pixels), static_cast<std::size_t>(count) * sizeof *pixels);
    }
    std::free(pixels);
    return bytes;
}

// One file for all the damage done to a sample: to write a file anew takes the time of the disk.
class DamagedImage
{
public:
    explicit DamagedImage(std::string name)
        : m_name(std::move(name)), m_file(platform::OpenFile(m_folder.Path("file").c_str(), L"wb+"))
    {}
    ~DamagedImage() { std::fclose(m_file); }
    DamagedImage(const DamagedImage&) = delete;
    DamagedImage& operator=(const DamagedImage&) = delete;

    void SetByte(std::size_t at, char byte)
    {
        std::fseek(m_file, static_cast<long>(at), SEEK_SET);
        std::fputc(static_cast<unsigned char>(byte), m_file);
        m_place = m_name + " at " + std::to_string(at);
    }

    // Both decoders give the same image or none, and the same one once more. Whether they give one.
    bool IsDecoded(int channels)
    {
        const std::string bytes = Decoded(image::DecodeBytes, m_file, channels);
        EXPECT_EQ(Decoded(image::DecodeFloats, m_file, channels).size(), bytes.size() * sizeof(float)) << m_place;
        EXPECT_TRUE(bytes.empty() || Decoded(image::DecodeBytes, m_file, channels) == bytes) << m_place;
        return !bytes.empty();
    }

private:
    const TemporaryFolder m_folder;
    std::string m_name, m_place;
    std::FILE* m_file;
};

TEST(DamagedImages, AreReadAsFarAsTheyGoOrNotAtAll)
{
    for (const std::string& name : SampleNames()) {
        const std::string whole = ReadBinaryFile(platform::Widen(SamplePath(name)));
        DamagedImage image(name);
        int images = 0;
        for (std::size_t i = 0; i < whole.size(); ++i) {
            image.SetByte(i, whole[i]);
            images += image.IsDecoded(static_cast<int>(i % 5));
        }
        for (std::size_t i = 0; i < whole.size(); ++i) {
            image.SetByte(i, static_cast<char>(~whole[i]));
            images += image.IsDecoded(static_cast<int>(i % 5));
            image.SetByte(i, whole[i]);
        }
        EXPECT_TRUE(image.IsDecoded(0)) << name;
        EXPECT_GT(images, 0) << name << ": not all damage is fatal";
    }
}

// A decoder that begins leaves the file behind its head.
TEST(TooLargeImages, AreNotEvenBegun)
{
    const TemporaryFolder folder;
    const struct
    {
        const char* head;
        int channels;
        bool isBegun;  // as bytes; floats take four times as much
    } rows[] = {
        {"P5 65536 32768 255\n", 0, true},
        {"P5 65536 32769 255\n", 0, false},
        {"P6 32768 21846 255\n", 0, false},
        {"P5 32768 16385 255\n", 4, false},
    };
    for (const auto& row : rows) {
        std::FILE* const file = platform::OpenFile(folder.Write("head", row.head).c_str(), L"rb");
        image::Size size;
        EXPECT_EQ(image::DecodeFloats(file, row.channels, size), nullptr);
        EXPECT_EQ(std::ftell(file), 0) << row.head;
        EXPECT_EQ(image::DecodeBytes(file, row.channels, size), nullptr);
        EXPECT_EQ(std::ftell(file) != 0, row.isBegun) << row.head;
        std::fclose(file);
    }
}

TEST(ImageMemory, GivesTheImageOrNone)
{
    using namespace tuvo::utl;
    for (const std::string& name : SampleNames())
        for (const TuvoImageComponents wanted : {TUVO_IMAGE_AS_STORED, TUVO_IMAGE_GREY, TUVO_IMAGE_RGBA}) {
            const std::string path = SamplePath(name);
            EXPECT_GE(allocation::ForEachFailure([&] {
                          int width = 0;
                          unsigned char* const bytes = LoadAImage(path.c_str(), &width, nullptr, nullptr, wanted, true);
                          EXPECT_EQ(bytes == nullptr, allocation::HasFailed()) << name;
                          EXPECT_EQ(width, bytes == nullptr ? 0 : 8);
                          FreeImage(bytes);
                      }),
                      4);
            allocation::ForEachFailure([&] {
                float* const floats = LoadAImageFlt(path.c_str(), nullptr, nullptr, nullptr, wanted, true);
                EXPECT_EQ(floats == nullptr, allocation::HasFailed()) << name;
                FreeImage(floats);
            });
        }
}

}  // namespace
