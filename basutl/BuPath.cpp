#include <basutl/BuPath.h>

#include "basutl/PathText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <utility>

namespace {

// How many characters at the start name no file: a drive and the separators after it.
int RootLength(const BuString& path)
{
    int length = BuIsLetter(path.GetAt(0)) && path.GetAt(1) == L':' ? 2 : 0;
    while (IsSeparator(path.GetAt(length)))
        ++length;
    return length;
}

// Empty as BuPathMakeAbsoluteW says.
std::wstring AbsoluteFrom(const wchar_t* path, const wchar_t* baseDirectory)
{
    const auto text = [](const wchar_t* given) { return given == nullptr ? L"" : given; };
    const std::wstring workingDirectory = platform::WorkingDirectory();
    const wchar_t separator = platform::Separator();
    const std::wstring base = MakeAbsolute(text(baseDirectory), workingDirectory, separator);
    return MakeAbsolute(text(path), base.empty() ? workingDirectory : base, separator);
}

// Runs what gives a std::wstring; the empty text when memory is exhausted.
template <typename Make>
BuString TextOf(Make make) noexcept
{
    return platform::Guarded(BuString(), [&] { return BuString(make().c_str()); });
}

}  // namespace

bool BuPathRemoveFileSpecW(BuString& path) noexcept
{
    const int root = RootLength(path);
    int length = path.GetLength();
    if (length == root)
        return false;
    while (length > root && !IsSeparator(path.GetAt(length - 1)))
        --length;
    const int shorter = std::max(length - 1, root);
    BuString parent = path.Left(shorter);
    if (parent.GetLength() != shorter)
        return false;
    path = std::move(parent);
    return true;
}

void BuPathAddSeparatorW(BuString& path) noexcept
{
    if (!path.IsEmpty() && !IsSeparator(path.GetAt(path.GetLength() - 1)))
        path += platform::Separator();
}

bool BuPathHasRootW(const wchar_t* path) noexcept
{
    return path != nullptr && HasRoot(path, platform::Separator());
}

BuString BuPathMakeAbsoluteW(const wchar_t* path, const wchar_t* baseDirectory) noexcept
{
    return TextOf([=] { return AbsoluteFrom(path, baseDirectory); });
}

BuString BuPathMakeRelativeW(const wchar_t* path, const wchar_t* baseDirectory) noexcept
{
    return TextOf([=]() -> std::wstring {
        const std::wstring to = AbsoluteFrom(path, nullptr);
        const std::wstring from = AbsoluteFrom(L".", baseDirectory);
        return to.empty() || from.empty() ? std::wstring() : MakeRelative(to, from, platform::Separator());
    });
}
