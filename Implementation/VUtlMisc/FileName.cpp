#include <TuvoUtil/FileName.h>

#include "TuvoMemory/ModuleNames.h"
#include "VUtlMisc/MiscText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuFileUtl.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using misc::NewCopy;

constexpr char Separator = '\\';
constexpr char SeparatorText[] = "\\";
constexpr char EitherSeparator[] = "\\/";

// What UtlIsFileOrDir gives.
enum PathKind : int
{
    Nothing = -1,
    File = 0,
    Directory = 1
};

// A copy in which every separator is '\'.
char* NewConverted(std::string_view text, int line = __builtin_LINE())
{
    char* const copy = NewCopy(text, line);
    if (copy != nullptr)
        UtlConvertFileSepToTarget(copy);
    return copy;
}

bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

// Without the one at its end, unless the path is a root: separators alone, or a drive with one.
std::string_view WithoutTrailingSeparator(std::string_view path)
{
    const bool isDrive = path.size() == 3 && path[1] == ':';
    const bool isRoot = path.find_first_not_of(EitherSeparator) == path.npos || isDrive;
    if (!isRoot && IsSeparator(path.back()))
        path.remove_suffix(1);
    return path;
}

PathKind KindOf(const std::string& path)
{
    constexpr int existence = 0;
    platform::FileStatus status;
    if (!platform::Status(platform::Widen(path).c_str(), status))
        return Nothing;
    if (status.kind == platform::FileKind::Directory)
        return Directory;
    return TuvoAccess(path.c_str(), existence, modules::VUtlMisc, __LINE__) == 0 ? File : Nothing;
}

}  // namespace

// ---- Pieces --------------------------------------------------------------------------------------------------------

char* UtlGetFileNameGivenFullPath(const char* path)
{
    if (path == nullptr)
        return nullptr;
    const std::string_view whole(path);
    return NewCopy(whole.substr(whole.find_last_of(EitherSeparator) + 1));
}

char* UtlGetFileNameWithParentDir(const char* path)
{
    if (path == nullptr)
        return nullptr;
    const std::string_view whole(path);
    const std::size_t last = whole.find_last_of(EitherSeparator);
    const std::size_t beforeLast =
        last != whole.npos && last > 0 ? whole.find_last_of(EitherSeparator, last - 1) : whole.npos;
    return beforeLast != whole.npos ? NewConverted(whole.substr(beforeLast + 1)) : NewCopy(whole);
}

char* UtlGetParentDir(const char* path)
{
    if (path == nullptr)
        return nullptr;
    const std::string_view whole(path);
    return NewConverted(whole.substr(0, whole.find_last_of(EitherSeparator)));
}

// Kept: only '\' counts.
char* UtlGetDirectoryPathFromFileName(const char* path)
{
    const std::string_view whole(path != nullptr ? path : "");
    if (whole.size() < 2)
        return nullptr;
    const std::size_t last = whole.find_last_of(Separator);
    return NewCopy(last != whole.npos ? whole.substr(0, last + 1) : ".\\");
}

char* UtlMiscGetFileExtension(const char* path)
{
    if (path == nullptr)
        return nullptr;
    const std::string_view whole(path);
    const std::size_t point = whole.find_last_of('.');
    return point != whole.npos && point + 1 < whole.size() ? NewCopy(whole.substr(point + 1)) : nullptr;
}

// ---- Pieces that depend on what the path names ---------------------------------------------------------------------

int UtlIsFileOrDir(const char* path)
{
    if (path == nullptr)
        return Nothing;
    return platform::Guarded(Nothing, [path] { return KindOf(std::string(WithoutTrailingSeparator(path))); });
}

char* UtlGetDirNameFromFileName(const char* path)
{
    const int kind = UtlIsFileOrDir(path);
    if (kind == Nothing)
        return nullptr;
    // Kept: this copy is never freed, and callers find it in their leak reports. Kept: only '\' counts.
    char* const copy = NewCopy(path);
    if (copy == nullptr)
        return nullptr;
    char* const last = std::strrchr(copy, Separator);
    if (last != nullptr && (kind == File || last[1] == '\0'))
        *last = '\0';
    return last != nullptr || kind == Directory ? NewCopy(copy) : nullptr;
}

int UtlGetBaseFileNameFromFullPath(const char* path, char* name)
{
    if (name == nullptr)
        return 1;
    *name = '\0';
    if (path == nullptr)
        return 1;
    BuFileUtl file{BuString(path)};
    file.NormalizePath();
    const std::string last = file.GetFileTitle().ToNarrow();
    // These are left only where the absolute path could not be made, and they are no names.
    if (last != "." && last != "..")
        std::copy_n(last.c_str(), last.size() + 1, name);
    return 0;
}

// ---- Separator -----------------------------------------------------------------------------------------------------

char UtlGetFileSeperator()
{
    return Separator;
}

const char* UtlGetFileSeperatorStr()
{
    return SeparatorText;
}

void UtlConvertFileSepToTarget(char* path)
{
    if (path != nullptr)
        std::replace(path, path + std::strlen(path), '/', Separator);
}
