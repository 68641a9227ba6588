// Directories and files by narrow path: absolute and relative paths, listing, searching, telling text from binary,
// copying, backups, removal.
//
//   char** names = nullptr;
//   int count = UtlGetFileNames("model", "*.inp", &names);      // 2: "bolt.inp", "plate.inp"
//   UtlFreeStringList(count, names);
//   char* path = UtlGetRelativeDirectoryPath("model/parts", "model/mesh");
//   VBU_FREE(path, __FILE__, __LINE__);                         // was "../parts"; "..\parts" on Windows
//
// Rules for all of it:
//  - Paths take '/' and '\' on both systems. A result has the system's separator where the library puts one in.
//  - In a pattern '*' stands for any run of characters, the empty one included, '?' for exactly one; a point is a
//    character like others. A null or empty pattern takes every name. The case of ASCII letters counts on Linux only.
//  - Names are sorted by UTF-16 code units.
//  - A link to a directory is no file; neither listing nor removal goes through it. What leads nowhere, or vanishes
//    while it is asked, is left out.
//  - New texts are freed with VBuFree, lists with UtlFreeStringList. Lists are null when nothing is found.
//  - Exhausted memory is a failure like others. Nothing is printed, and no name reaches a shell but in the command given
//    to UtlExecuteCommand.
//  - Functions may be called from any thread as far as Memory.h and TrackedFile.h allow it.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuErrObj.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

// ---- Paths ---------------------------------------------------------------------------------------------------------

// A new text: the path without "." and "..", from `baseDirectory` when it is relative, with the system's separators and
// none at the end but that of a root. The base itself starts from the working directory, and stands for it when null or
// empty. By text alone: the directories need not exist, a link before ".." is not followed, and ".." ends at the root.
// Null for a null or empty path and when the working directory is needed and gone.
//   "../b/./c" from "/home/a" gives "/home/b/c"
TUVOUTIL_API char* UtlGetAbsoluteDirectoryPath(const char* path, const char* baseDirectory);

// A new text: the path that leads from `baseDirectory` to `path`, both made absolute from the working directory; "." when
// they are the same, the absolute path when there is no way (another drive). Null as above.
//   "/home/b/c" from "/home/a" gives "../b/c"
TUVOUTIL_API char* UtlGetRelativeDirectoryPath(const char* path, const char* baseDirectory);

// ---- Listing and searching -----------------------------------------------------------------------------------------

// Lists the names, without the directory, of the files in a directory that match a pattern. Their number; -1 and a null
// list when the directory cannot be read, or what stands in it may not be asked for.
TUVOUTIL_API int UtlGetFileNames(const char* directory, const char* pattern, char*** names);

// The same for a directory and all below it: names are paths from `directory`. The files of each directory come before
// those of its subdirectories. Subdirectories that cannot be read are left out.
//   "a.inp", "z.inp", "parts/b.inp"
TUVOUTIL_API int UtlGetFileNamesRecursively(const char* directory, const char* pattern, char*** names);

// Lists the names of the directories directly inside, links to directories among them. Results as above.
TUVOUTIL_API int UtlGetDirectoriesInDir(const char* directory, char*** names);

// A new text: the path of the first directory in which a file (not a directory) of this name stands, with the name; null
// when there is none. The name may begin with directories of its own; one that begins at a root or with a drive is
// looked for as it is. Null and empty directories are passed over; the working directory must be listed to be searched.
//   "bolt.inp" in {"model", "library"}: "library/bolt.inp"
TUVOUTIL_API char* UtlFindFile(const char* fileName, int directoryCount, char** directories);

// Replaces `files` by the paths, `directory` included, of the files in a directory that match a pattern, with
// `withSubfolders` in the order of UtlGetFileNamesRecursively. Null for success; else an error with the path and the
// system's reason, for the first directory that cannot be read: `files` still holds what stands in the others, and
// nothing when memory is exhausted.
TUVOUTIL_API const BuErrObj* BuFindFiles(const BuString& directory, const BuString& pattern, bool withSubfolders,
                                         BuObjectArrayTempl<BuString>& files);

// ---- Text or binary ------------------------------------------------------------------------------------------------

// Whether a file is ASCII text: 1 when every byte is a printable ASCII character, white space, or one of the control
// characters bell, backspace, escape and the old end of a text (0x1A); 0 when any is not; 1 for an empty file. -1 when it
// cannot be read whole, or is no regular file. Reads until the answer is certain, a text to its end.
TUVOUTIL_API int UtlCheckFileASCII(const char* path);

// Whether a file is truly binary: 1 when it holds a control character other than those above; 0 when it does not, be
// its text ASCII, UTF-8 or of a code page. Text in UTF-16 counts as binary. -1, and its cost, as above.
TUVOUTIL_API int UtlCheckIsFileTrueBinery(const char* path);

// ---- Copies and backups --------------------------------------------------------------------------------------------

// Copies a regular file with its permissions and its time of modification onto the path of a file, which is replaced as a
// whole or not at all; a link there is replaced, not followed. 0 when it is copied, and for a file onto itself; -1 when
// there is no such source; 1 when it cannot be copied, with the target as it was.
TUVOUTIL_API int UtlCopyFile(const char* source, const char* target);

// Copies a file beside itself under the first free number: "part.inp" to "part_1.inp", then "part_2.inp". Stores the
// path of the backup as a new text in *backupName, null on failure; a null `backupName` asks for none. Nothing is ever
// replaced. Results as above, with nothing left behind on failure.
TUVOUTIL_API int UtlBackupFile(const char* path, char** backupName);

// ---- Directories ---------------------------------------------------------------------------------------------------

// Removes a directory with everything in it, read-only files too. A link to a directory or to nothing, and any link
// inside, is removed itself; what it leads to stays. Null for success, also when nothing stood there. Else an error with
// the path and the reason, and nothing more is removed: for the first path that cannot be removed, and beforehand for the
// root of a file system, an empty path, "." and ".." as the last name, and what is no directory.
TUVOUTIL_API const BuErrObj* BuRemoveDirectory(const BuString& directory);

// Creates the directories below `source`, not their files, below `destination`, which is created with its parents.
// Those that stand already stay. `destination` may lie inside `source`: what stood there at the start is copied. Null for
// success; else an error with the path and the system's reason for the first directory that could not be read or
// created.
TUVOUTIL_API const BuErrObj* BuStringFileNameCopyDirectoryStructureIn(const BuString& source,
                                                                      const BuString& destination);

// ---- Commands ------------------------------------------------------------------------------------------------------

// Runs a command with the system's shell (/bin/sh; cmd) and waits. Its exit status, 128 + n when signal n ended it on
// Linux; -1 for a null or empty command and when no shell could be started. Never build one from names that come from
// outside.
TUVOUTIL_API int UtlExecuteCommand(const char* command);
