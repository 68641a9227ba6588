#include "VUtlMisc/CompressedName.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CompressedName, ChoosesTheProgramByTheFirstSuffixAnywhere)
{
    const struct
    {
        const char *path, *program;
    } rows[] = {{"m.gz", "gzip.exe"},       {"m.bz2", "bzip2.exe"},   {"m.Z", "pkunzip.exe"}, {"d.gz\\m", "gzip.exe"},
                {"m.Z.bz2.gz", "gzip.exe"}, {"m.Z.bz2", "bzip2.exe"}, {"m.gzip", "gzip.exe"}, {"m.Zip", "pkunzip.exe"}};
    for (const auto& row : rows)
        EXPECT_STREQ(compressed::FindUnpacker(row.path)->shellProgram, row.program) << row.path;
    for (const char* const none : {"", "m", "m.zip", "gz", "m.GZ", "m.z", "m.bz"})
        EXPECT_EQ(compressed::FindUnpacker(none), nullptr) << none;
}

TEST(CompressedName, LosesItsSuffixOnly)
{
    const struct
    {
        const char *name, *unpacked;
    } rows[] = {{"m.gz", "m"}, {"m.x.bz2", "m.x"}, {"m.gz.Z", "m.gz"}, {"m.gzip", "m.gzip"}, {".gz", ".gz"}, {"", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(compressed::UnpackedName(row.name), row.unpacked);
    EXPECT_EQ(compressed::BaseName("a/b\\c/m.gz", '/'), "m.gz");
    EXPECT_EQ(compressed::BaseName("a/b\\c/m.gz", '\\'), "c/m.gz");
    EXPECT_EQ(compressed::BaseName("a\\", '\\'), "");
}

TEST(CompressedName, CommandsTakeItWhole)
{
    const compressed::Unpacker& unpacker = *compressed::FindUnpacker("m.bz2");
    EXPECT_EQ(compressed::CopyCommand("D:\\m.bz2", "C:\\Temp\\m.bz2"), "copy D:\\m.bz2  C:\\Temp\\m.bz2");
    EXPECT_EQ(compressed::CopyCommand("D:\\a b\\m.gz", "C:\\Temp\\m.gz"), "copy \"D:\\a b\\m.gz\"  C:\\Temp\\m.gz");
    EXPECT_EQ(compressed::CopyCommand("D:/a\\m.gz", "C:\\Temp\\m.gz"), "copy \"D:/a\\m.gz\"  C:\\Temp\\m.gz");
    EXPECT_EQ(compressed::UnpackCommand(unpacker, "-df", "C:\\Temp\\m.bz2"), "bzip2.exe -df C:\\Temp\\m.bz2");
    EXPECT_EQ(compressed::UnpackCommand(unpacker, "-df", "C:\\Temp\\a,b.bz2"), "bzip2.exe -df \"C:\\Temp\\a,b.bz2\"");
    for (int c = 0; c < 256; ++c) {
        const bool isRefused =
            c < ' ' || c == 0x7F || std::string("\"&|<>^%;").find(static_cast<char>(c)) != std::string::npos;
        EXPECT_EQ(compressed::IsHarmlessInCommand(std::string("m") + static_cast<char>(c) + ".gz"), !isRefused) << c;
    }
}

}  // namespace
