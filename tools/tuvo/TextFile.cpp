#include "tools/tuvo/TextFile.h"

#include "platform/Platform.h"
#include "tools/tuvo/Command.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>

namespace tool {
namespace {

std::string ReadInput()
{
    std::string text((std::istreambuf_iterator<char>(std::cin)), std::istreambuf_iterator<char>());
    if (std::cin.bad())
        throw Failure("cannot read standard input");
    return text;
}

struct StreamCloser
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

}  // namespace

std::optional<std::string> ReadTextIfExists(const std::string& path)
{
    if (path == "-")
        return ReadInput();
    const Stream file(platform::OpenFile(platform::Widen(path).c_str(), L"rb"));
    if (file == nullptr && errno == ENOENT)
        return std::nullopt;
    if (file == nullptr)
        FailToRead(path);
    std::string text;
    std::array<char, 65536> piece;
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), file.get()))
        text.append(piece.data(), size);
    if (std::ferror(file.get()) != 0)
        FailToRead(path);
    return text;
}

std::string ReadText(const std::string& path)
{
    std::optional<std::string> text = ReadTextIfExists(path);
    if (!text)
        FailToRead(path);
    return *std::move(text);
}

std::string SourceName(const std::string& path)
{
    return path == "-" ? "standard input" : path;
}

void FailToRead(const std::string& path)
{
    const int code = platform::LastNativeError();
    throw Failure("cannot read " + SourceName(path) + ": " + platform::Narrow(platform::NativeErrorText(code)));
}

}  // namespace tool
