// The temporary directory, and files that are there in a compressed form only.
//
//   char* name = UtlCheckFileIsCompressed("model/bracket.inp");   // "model/bracket.inp.gz"
//   char* plain = name != nullptr ? UtlGetUnzippedFileName(name) : nullptr;
//   // "/tmp/bracket.inp" ("C:\Temp\bracket.inp" on Windows), unpacked by the program gzip
//
// Names are narrow text; results are new texts, freed with VBuFree, and null when memory is exhausted. The common
// temporary directory is "/tmp", "C:\Temp" on Windows. For one thread at a time.
#pragma once

#include <TuvoUtil/Export.h>

// Stores the temporary directory in *directory and gives 1: the first item of the environment variable TEMP, or of TMP
// when TEMP is not set, up to a ';'; the common one when neither is set. 0 for a null `directory` and, with null in it,
// when memory is exhausted.
//
// A directory that does not exist ENDS THE PROCESS with exit code 1, after a message on standard error; further items of
// a list are not looked at. A value that begins with ';' names the directory " ".
TUVOUTIL_API int UtlGetTmpDir(char** directory);

// The name under which a compressed form of a file stands. A file that exists is compressed when what follows the last
// '.' of the path, folders included, holds "gz", "bz2", "Z" or "zip" at its beginning, so that "m.gzip" is: the path
// itself. For one that does not, the first that exists of the path with ".gz", ".bz2", "Z", "zip" appended (the last two
// without a point). Null when there is none, and for null.
TUVOUTIL_API char* UtlCheckFileIsCompressed(const char* path);

// Unpacks a compressed file into the common temporary directory, which is created when it is missing, and gives the path
// of the result: the name of the file without the suffix ".gz", ".bz2" or ".Z" at its end. Older files of the two names
// there are removed first, the copy that is unpacked goes, and `path` stays. No step is checked: see whether the result
// exists. Null, with nothing done, for null, for a path that holds none of ".gz", ".bz2", ".Z", tried in this order, and
// for one whose last name is empty, "." or "..".
//
// Linux: gzip (for ".gz" and ".Z") or bzip2 is started without a shell, on a new file of the rights of `path`; it is not
// started when that file cannot be made. Windows: gzip.exe, bzip2.exe or pkunzip.exe (for ".Z") runs through the shell;
// null, with nothing done, for a path that holds one of "&|<>^%; or a control character. The name there is what follows
// the last '\', on Linux what follows the last '\' or '/'.
TUVOUTIL_API char* UtlGetUnzippedFileName(const char* path);
