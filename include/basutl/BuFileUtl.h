// One path, and what can be asked of and done with the file or directory that it names.
//
//   BuFileUtl file(L"model\\part.inp");
//   file.GetFileName()     // "part.inp"
//   file.CopyIn(L"backup\\part.inp")
//
// Paths take '/' and '\' on both systems. Nothing is printed; a failure, exhausted memory and a null or empty path
// included, is a false, an empty text or an empty list. Nothing is cached, so the answer of a question may be old when
// it comes. Functions may be called from any thread, an object from one at a time.
#pragma once

#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>
#include <basutl/Export.h>

class BASUTL_API BuFileUtl
{
public:
    // The path is copied; null counts as empty.
    explicit BuFileUtl(const wchar_t* path) noexcept : m_path(path) {}
    explicit BuFileUtl(const BuString& path) noexcept : m_path(path) {}

    // Whether a file, not a directory, or a directory stands there, links followed, and whether files may be made in it.
    bool FileIsExisting() const noexcept;
    bool DirectoryIsExisting() const noexcept;
    bool DirectoryHasWritePermission() const noexcept;

    // Creates the directory and its missing parents. True when it stands afterwards.
    bool CreateDir() const noexcept;

    // The path as it was given or normalised.
    const BuString& GetFullName() const noexcept { return m_path; }
    BuString GetPath() const noexcept;      // what stands before the last separator, that included; may be empty
    BuString GetFileName() const noexcept;  // what stands after the last separator
    // The last name of the path with its extension, trailing separators ignored.
    BuString GetFileTitle() const noexcept;

    // Makes the path absolute and removes "." and ".." by text alone, so that a link before ".." is not followed.
    // Separators become the system's, trailing ones go. Unchanged when empty, when the working directory is needed and
    // gone, or when memory is exhausted.
    void NormalizePath() noexcept;

    // Copies the file, its times and permissions, onto `destination`, replacing it as a whole or not at all.
    bool CopyIn(const wchar_t* destination) const noexcept;

    // Replaces `names` by those of the directories directly inside, sorted by UTF-16 code units; links to directories
    // are left out. Their number; -1, with no names, when the directory cannot be read or memory is exhausted.
    int GetSubDirectories(BuObjectArrayTempl<BuString>& names) const noexcept;

    // Whether a path names a directory: one that exists, or a text that ends with a separator.
    static bool IsDirectoryName(const wchar_t* path) noexcept;

    // Whether two paths lead to the same place: their paths without links, "." and ".." are the same text, or when
    // neither exists their absolute paths are. The case of ASCII letters counts on Linux only. False when a relative
    // path has no working directory to start from.
    static bool AreSamePath(const wchar_t* left, const wchar_t* right) noexcept;

    // Removes a file, or an empty directory; a link is removed, not what it leads to. True when it is gone, also when
    // it was not there.
    static bool RemoveAFile(const wchar_t* path) noexcept;
    static bool RemoveADirectory(const wchar_t* path) noexcept;

    // A name that does not exist yet: `path` itself, else with "_1", "_2" ... before its extension ("part_1.inp"; a
    // point at the start of a name begins none). A link that leads nowhere exists. With `create` the file is made,
    // empty, so that nobody else takes the name. Empty on failure.
    static BuString GetFreeFileName(const wchar_t* path, bool create) noexcept;

private:
    BuString m_path;
};
