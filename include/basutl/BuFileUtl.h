// One path, and what can be asked of and done with the file or directory that it names.
//
//   BuFileUtl file(L"model\\part.inp");
//   file.GetFileName()     // "part.inp"
//   file.CopyIn(L"backup\\part.inp")
//
// Paths take '/' and '\' on both systems. Nothing is printed; a failure is a false, an empty text or an empty list.
#pragma once

#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>
#include <basutl/Export.h>

class BASUTL_API BuFileUtl
{
public:
    explicit BuFileUtl(const wchar_t* path) noexcept : m_path(path) {}
    explicit BuFileUtl(const BuString& path) noexcept : m_path(path) {}

    bool FileIsExisting() const noexcept;  // a file, not a directory, links followed
    bool DirectoryIsExisting() const noexcept;
    bool DirectoryHasWritePermission() const noexcept;

    // Creates the directory and its missing parents. True when it stands afterwards.
    bool CreateDir() const noexcept;

    const BuString& GetFullName() const noexcept { return m_path; }
    BuString GetPath() const noexcept;      // what stands before the last separator, that included; may be empty
    BuString GetFileName() const noexcept;  // what stands after the last separator
    BuString GetFileTitle()
        const noexcept;  // the last name of the path with its extension, a trailing separator ignored

    // Makes the path absolute and removes "." and ".." by text alone; separators become the system's.
    void NormalizePath() noexcept;

    // Copies the file, its times and permissions, onto `destination`, replacing it as a whole or not at all.
    bool CopyIn(const wchar_t* destination) const noexcept;

    // The names of the directories directly inside, sorted by code units; links to directories are left out. The
    // number, -1 when the directory cannot be read.
    int GetSubDirectories(BuObjectArrayTempl<BuString>& names) const noexcept;

    // Whether a path names a directory: one that exists, or a text that ends with a separator.
    static bool IsDirectoryName(const wchar_t* path) noexcept;

    // Whether two paths lead to the same file: the same existing file, or else the same absolute path text, whose case
    // counts on Linux only.
    static bool AreSamePath(const wchar_t* left, const wchar_t* right) noexcept;

    static bool RemoveAFile(const wchar_t* path) noexcept;
    static bool RemoveADirectory(const wchar_t* path) noexcept;  // an empty one

    // A name that does not exist yet: `path` itself, else with "_1", "_2" ... before its extension. With `create` the
    // file is made, empty, so that nobody else takes the name. Empty on failure.
    static BuString GetFreeFileName(const wchar_t* path, bool create) noexcept;

private:
    BuString m_path;
};
