#include <basutl/BuPath.h>

#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <utility>

namespace {

bool IsSeparator(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

// How many characters at the start name no file: a drive and the separators after it.
int RootLength(const BuString& path)
{
    int length = BuIsLetter(path.GetAt(0)) && path.GetAt(1) == L':' ? 2 : 0;
    while (IsSeparator(path.GetAt(length)))
        ++length;
    return length;
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
