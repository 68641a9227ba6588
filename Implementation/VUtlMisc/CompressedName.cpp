#include "VUtlMisc/CompressedName.h"

#include <algorithm>
#include <iterator>

namespace {

using compressed::Unpacker;

constexpr Unpacker Unpackers[] = {
    {".gz", L"gzip", "gzip.exe"},
    {".bz2", L"bzip2", "bzip2.exe"},
    {".Z", L"gzip", "pkunzip.exe"},
};

// Quotes what the shell would take for the end of a name, or its "/" for the start of an option.
std::string Quoted(std::string_view name)
{
    const bool isPlain = name.find_first_of(" ,=+()/") == name.npos;
    return isPlain ? std::string(name) : '"' + std::string(name) + '"';
}

}  // namespace

const Unpacker* compressed::FindUnpacker(std::string_view path)
{
    const auto unpacker = std::find_if(std::begin(Unpackers), std::end(Unpackers), [=](const Unpacker& candidate) {
        return path.find(candidate.suffix) != path.npos;
    });
    return unpacker == std::end(Unpackers) ? nullptr : unpacker;
}

bool compressed::IsCompressedName(std::string_view path)
{
    // Kept: a point in the name of a folder counts, and "m.gzip" is taken for ".gz".
    const std::size_t point = path.rfind('.');
    if (point == path.npos)
        return false;
    const std::string_view extension = path.substr(point);
    return FindUnpacker(extension) != nullptr || extension.find(".zip") != extension.npos;
}

std::string_view compressed::BaseName(std::string_view path, char separator)
{
    return path.substr(path.find_last_of(separator == '/' ? "\\/" : "\\") + 1);
}

bool compressed::IsFileName(std::string_view baseName)
{
    return !baseName.empty() && baseName != "." && baseName != "..";
}

std::string_view compressed::UnpackedName(std::string_view baseName)
{
    for (const Unpacker& unpacker : Unpackers)
        if (baseName.size() > unpacker.suffix.size() && baseName.ends_with(unpacker.suffix))
            return baseName.substr(0, baseName.size() - unpacker.suffix.size());
    return baseName;
}

bool compressed::IsHarmlessInCommand(std::string_view name)
{
    return std::none_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '\x7F' ||
               std::string_view("\"&|<>^%;").find(c) != std::string_view::npos;
    });
}

std::string compressed::CopyCommand(std::string_view path, std::string_view copy)
{
    return "copy " + Quoted(path) + "  " + Quoted(copy);
}

std::string compressed::UnpackCommand(const Unpacker& unpacker, std::string_view options, std::string_view copy)
{
    return std::string(unpacker.shellProgram) + ' ' + std::string(options) + ' ' + Quoted(copy);
}
