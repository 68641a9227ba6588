// Services of the system that need no host: names for temporary files, copying and moving, the process id.
//
//   BuString name;
//   VEnvGetTempFileName(L"/tmp", L"deck", 0x2f, name);                                   // 47: "/tmp/deck2f.tmp"
//   VEnvCopyFileOrFolder(L"model", L"backup/model", false, true, TUVO_COPY_FILES);       // true
//
// Paths take '/' and '\' on both systems. Two refusals are shown to the user as error messages; every other failure,
// exhausted memory included, is told by the result alone. Functions may be called from any thread as far as the host's
// updater may.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuString.h>

// What VEnvCopyFileOrFolder does with the source.
enum _TuvoMoveOrCopyMode : int
{
    TUVO_COPY_FILES = 0,  // as is every value but the next
    TUVO_MOVE_FILES = 1
};

// Makes a name that no file has yet: directory, prefix, the low 16 bits of `unique` in hexadecimal, ".tmp"; when it is
// taken, with "_1", "_2" ... before ".tmp". No file is created, so another process may take it first. A null directory
// stands for the value of QD_TEMP_PATH, a null prefix for none; with `unique` 0 the number is the time of a steady
// clock in seconds.
//
// Gives the low 16 bits of the number, which are 0 for some numbers too. 0 on failure: `fileName` is then as before
// when QD_TEMP_PATH is not set, else empty.
TUVOUTIL_API unsigned int VEnvGetTempFileName(const wchar_t* directory, const wchar_t* prefix, unsigned int unique,
                                              BuString& fileName);

// Copies or moves a file to the path of a file, or the files of a folder into a folder, which is created with its
// parents. Permissions and times are kept. `source` is a folder when it is one or ends with a separator.
//
// False, with an error message, when there is no source, and when the destination is an existing file and
// `failIfExists` is set. Onto itself: true, with nothing done. False without a message for null, when the folder of the
// destination cannot be made or written to, when a folder cannot be read, and when a file could not be copied as a whole
// (the destination is then as it was) or its source not removed after it.
//
// A folder's files replace those in the destination whatever `failIfExists` says; one that cannot be copied is left
// out, and the result is true all the same. With `withSubfolders` subfolders are copied first, links to folders left
// out; false when one of them fails, and, with nothing copied, when the destination lies inside the source. The copy
// ends with false at a subfolder whose name is that of a file in the destination when `failIfExists` is set. Moving
// removes what was copied, then the folders that are empty.
TUVOUTIL_API bool VEnvCopyFileOrFolder(const wchar_t* source, const wchar_t* destination, bool failIfExists,
                                       bool withSubfolders, _TuvoMoveOrCopyMode mode);

// The id of this process.
TUVOUTIL_API int VEnvGetCurrentProcessID();
