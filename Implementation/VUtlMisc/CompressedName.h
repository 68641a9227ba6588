// What the names of compressed files say, and the commands that unpack them. No file is asked.
#pragma once

#include <string>
#include <string_view>

namespace compressed {

struct Unpacker
{
    std::string_view suffix;
    const wchar_t* program;    // started directly
    const char* shellProgram;  // started through the shell of Windows
};

// The program for the first of ".gz", ".bz2", ".Z" that occurs anywhere in a path; null when none does.
const Unpacker* FindUnpacker(std::string_view path);

// Whether a path is that of a compressed file: what follows the last '.' begins with one of the suffixes.
bool IsCompressedName(std::string_view path);

// What follows the last separator of a system, which is '\' and, where `separator` is '/', that as well.
std::string_view BaseName(std::string_view path, char separator);

// Whether a base name can be that of a file: not of a path that ends with a separator, "." or "..".
bool IsFileName(std::string_view baseName);

// A name without its suffix; the whole name when it ends in none, or is nothing else.
std::string_view UnpackedName(std::string_view baseName);

// Whether the shell of Windows takes a name for nothing but a name, in double quotes where needed.
bool IsHarmlessInCommand(std::string_view name);

// The commands for the shell of Windows.
std::string CopyCommand(std::string_view path, std::string_view copy);
std::string UnpackCommand(const Unpacker& unpacker, std::string_view options, std::string_view copy);

}  // namespace compressed
