#include <basutl/BuFileUtl.h>

#include "basutl/DirectoryNames.h"
#include "basutl/PathText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuCharacter.h>

#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <new>

namespace {

bool IsDirectory(const wchar_t* path)
{
    platform::FileStatus status;
    return platform::Status(path, status) && status.kind == platform::FileKind::Directory;
}

// Whether a path names a directory and not a link to one. Exhausted memory is no answer: it throws.
bool IsDirectoryItself(const wchar_t* path)
{
    errno = 0;
    const bool isDirectoryItself = IsDirectory(path) && !platform::IsLink(path);
    if (errno == ENOMEM)
        throw std::bad_alloc();
    return isDirectoryItself;
}

bool EndsWithSeparator(const wchar_t* path)
{
    const std::size_t length = std::wcslen(path);
    return length > 0 && IsSeparator(path[length - 1]);
}

// Empty when the path is, or when the working directory is needed and gone.
std::wstring Absolute(const wchar_t* path)
{
    return MakeAbsolute(path, platform::WorkingDirectory(), platform::Separator());
}

// ---- Free names ----------------------------------------------------------------------------------------------------

enum class Claim
{
    Got,
    Taken,
    Failed
};

// A link that leads nowhere takes its name, too.
Claim ClaimName(const wchar_t* path)
{
    constexpr int existence = 0;
    if (platform::Access(path, existence) == 0)
        return Claim::Taken;
    if (errno != ENOENT && errno != ENOTDIR)
        return Claim::Failed;
    return platform::IsLink(path) ? Claim::Taken : Claim::Got;
}

Claim ClaimByCreating(const wchar_t* path)
{
    std::FILE* const file = platform::OpenFile(path, L"wbx");
    if (file == nullptr)
        return errno == EEXIST ? Claim::Taken : Claim::Failed;
    return std::fclose(file) == 0 ? Claim::Got : Claim::Failed;
}

// The position of the extension's point; the end when there is none. A name may begin with a point.
int FindExtension(const BuString& path)
{
    const int nameStart = static_cast<int>(FindLastName(path.GetText()));
    const int point = path.ReverseFind(L'.');
    return point > nameStart ? point : path.GetLength();
}

}  // namespace

// ---- Questions -----------------------------------------------------------------------------------------------------

bool BuFileUtl::FileIsExisting() const noexcept
{
    platform::FileStatus status;
    return platform::Status(m_path, status) && status.kind != platform::FileKind::Directory;
}

bool BuFileUtl::DirectoryIsExisting() const noexcept
{
    return IsDirectory(m_path);
}

bool BuFileUtl::DirectoryHasWritePermission() const noexcept
{
    constexpr int writable = 2;
    return DirectoryIsExisting() && platform::Access(m_path, writable) == 0;
}

bool BuFileUtl::IsDirectoryName(const wchar_t* path) noexcept
{
    return path != nullptr && (EndsWithSeparator(path) || IsDirectory(path));
}

bool BuFileUtl::AreSamePath(const wchar_t* left, const wchar_t* right) noexcept
{
    if (left == nullptr || right == nullptr)
        return false;
    return platform::Guarded(false, [=] {
        std::wstring leftFile = platform::CanonicalPath(left);
        std::wstring rightFile = platform::CanonicalPath(right);
        if (leftFile.empty() && rightFile.empty()) {
            leftFile = Absolute(left);
            rightFile = Absolute(right);
        }
        if (leftFile.empty())
            return false;
        return platform::Separator() == L'\\' ? BuCompareNoCase(leftFile.c_str(), rightFile.c_str()) == 0
                                              : leftFile == rightFile;
    });
}

// ---- Pieces --------------------------------------------------------------------------------------------------------

BuString BuFileUtl::GetPath() const noexcept
{
    return m_path.Left(static_cast<int>(FindLastName(m_path.GetText())));
}

BuString BuFileUtl::GetFileName() const noexcept
{
    return BuString(m_path.GetText() + FindLastName(m_path.GetText()));
}

BuString BuFileUtl::GetFileTitle() const noexcept
{
    std::wstring_view path = m_path.GetText();
    while (!path.empty() && IsSeparator(path.back()))
        path.remove_suffix(1);
    const std::size_t start = FindLastName(path);
    return m_path.Mid(static_cast<int>(start), static_cast<int>(path.size() - start));
}

void BuFileUtl::NormalizePath() noexcept
{
    platform::Guarded(false, [this] {
        const std::wstring absolute = Absolute(m_path);
        if (!absolute.empty())
            m_path = absolute.c_str();
        return true;
    });
}

// ---- Work ----------------------------------------------------------------------------------------------------------

bool BuFileUtl::CreateDir() const noexcept
{
    if (DirectoryIsExisting())
        return true;
    const int length = m_path.GetLength();
    for (int end = 1; end <= length; ++end)
        if (end == length || IsSeparator(m_path.GetAt(end)))
            platform::CreateOneDirectory(m_path.Left(end));  // fails for a drive; what counts is the result
    return DirectoryIsExisting();
}

bool BuFileUtl::CopyIn(const wchar_t* destination) const noexcept
{
    return destination != nullptr && platform::CopyOneFile(m_path, destination);
}

int BuFileUtl::GetSubDirectories(BuObjectArrayTempl<BuString>& names) const noexcept
{
    const auto isSubDirectory = [this](const std::wstring& name) {
        return IsDirectoryItself(JoinPath(m_path.GetText(), name, platform::Separator()).c_str());
    };
    return ReadDirectoryNames(m_path, names, isSubDirectory) ? names.GetCount() : -1;
}

bool BuFileUtl::RemoveAFile(const wchar_t* path) noexcept
{
    return path != nullptr && platform::RemoveOneFile(path);
}

bool BuFileUtl::RemoveADirectory(const wchar_t* path) noexcept
{
    return path != nullptr && platform::RemoveEmptyDirectory(path);
}

BuString BuFileUtl::GetFreeFileName(const wchar_t* path, bool create) noexcept
{
    const auto claim = create ? &ClaimByCreating : &ClaimName;
    const BuString given(path);
    const int extension = FindExtension(given);
    BuString name = given;
    for (int number = 1; !name.IsEmpty(); ++number) {
        const Claim result = claim(name);
        if (result == Claim::Got)
            return name;
        if (result == Claim::Failed ||
            name.Format(L"%.*s_%d%s", extension, given.GetText(), number, given.GetText() + extension) < 0)
            break;
    }
    return {};
}
