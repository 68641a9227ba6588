#include <TuvoUtil/FileSystem.h>

#include "TuvoMemory/ModuleNames.h"
#include "VUtlMisc/FileStatus.h"
#include "VUtlMisc/MiscText.h"
#include "platform/Guard.h"

#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstdio>

namespace {

bool IsControlOfText(unsigned char byte)
{
    constexpr unsigned char bell = 7;
    constexpr unsigned char backspace = 8;
    constexpr unsigned char endOfText = 0x1A;
    constexpr unsigned char escape = 0x1B;
    return BuIsSpace(byte) || byte == bell || byte == backspace || byte == endOfText || byte == escape;
}

bool IsBinary(unsigned char byte)
{
    constexpr unsigned char rubout = 0x7F;
    return (byte < ' ' && !IsControlOfText(byte)) || byte == rubout;
}

bool IsNotAscii(unsigned char byte)
{
    return byte > 0x7F || IsBinary(byte);
}

bool IsRegularFile(const char* path)
{
    platform::FileStatus status;
    return misc::AskStatus(misc::WideText(path), status) && status.kind == platform::FileKind::Regular;
}

// 1 when a stream holds a byte of a kind, 0 when it does not, -1 when it cannot be read.
int Holds(std::FILE* stream, bool (*isOfKind)(unsigned char))
{
    unsigned char buffer[1 << 14];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stream))
        if (std::any_of(buffer, buffer + count, isOfKind))
            return 1;
    return std::ferror(stream) != 0 ? -1 : 0;
}

int FileHolds(const char* path, bool (*isOfKind)(unsigned char))
{
    // A pipe would keep the caller waiting.
    if (!platform::Guarded(false, [=] { return IsRegularFile(path); }))
        return -1;
    std::FILE* const stream = TuvoFOpen(path, "rb", modules::VUtlMisc, __LINE__);
    if (stream == nullptr)
        return -1;
    const int result = Holds(stream, isOfKind);
    TuvoFClose(stream, modules::VUtlMisc, __LINE__);
    return result;
}

}  // namespace

int UtlCheckFileASCII(const char* path)
{
    const int holdsOther = FileHolds(path, &IsNotAscii);
    return holdsOther == -1 ? -1 : 1 - holdsOther;
}

int UtlCheckIsFileTrueBinery(const char* path)
{
    return FileHolds(path, &IsBinary);
}
