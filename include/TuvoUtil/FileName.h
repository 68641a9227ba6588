// The pieces of a path: file name, parent folder, directory part, extension, and the separator.
//
//   UtlGetFileNameGivenFullPath("parts/wing/spar.inp")      // "spar.inp"
//   UtlGetFileNameWithParentDir("parts/wing/spar.inp")      // "wing\spar.inp"
//   UtlGetParentDir("parts/wing/spar.inp")                  // "parts\wing"
//   UtlMiscGetFileExtension("parts/wing/spar.inp")          // "inp"
//
// The separator of these functions is '\' on both systems, in what they are given and in what they give; those that
// take '/' as well turn it into '\'. Files are asked by three functions only, which say so, and find them by either
// separator.
//
// A result char* is a new text that the caller frees with VBuFree; null for a null path and when memory is exhausted.
// Functions may be called from any thread.
#pragma once

#include <TuvoUtil/Export.h>

// ---- Pieces --------------------------------------------------------------------------------------------------------

// What stands after the last '\' or '/'; without one the whole path.
TUVOUTIL_API char* UtlGetFileNameGivenFullPath(const char* path);

// The name with its parent folder: what stands after the last but one '\' or '/', "wing\spar.inp". With fewer
// separators the path as it is given.
TUVOUTIL_API char* UtlGetFileNameWithParentDir(const char* path);

// What stands before the last '\' or '/', with '\' in place of each '/': "a/b/c" gives "a\b". Without one the path as it
// is given.
TUVOUTIL_API char* UtlGetParentDir(const char* path);

// What stands before the last '\', that included: "a\b.txt" gives "a\". Without one ".\"; a '/' is a character like any
// other. Null for a path of fewer than two bytes.
TUVOUTIL_API char* UtlGetDirectoryPathFromFileName(const char* path);

// What stands after the last '.', also when that stands in the name of a folder: "dir.old\file" gives "old\file". Null
// without a '.' and when nothing follows it.
TUVOUTIL_API char* UtlMiscGetFileExtension(const char* path);

// ---- Pieces that depend on what the path names ---------------------------------------------------------------------

// Asks for the path, without one separator at its end unless it is a root: 1 when it leads to a directory, 0 to anything
// else, -1 when it leads nowhere or cannot be asked.
TUVOUTIL_API int UtlIsFileOrDir(const char* path);

// The directory of a file, what stands before the last '\' (a '/' is a character like any other), or null when there is
// none; of a directory the path without a '\' at its end; null when UtlIsFileOrDir gives -1. Each call that finds
// something leaves a block of the path's size allocated, which leak reports show.
TUVOUTIL_API char* UtlGetDirNameFromFileName(const char* path);

// Writes the last name of the path, made absolute and without "." and "..", into `name`: "a/b/../c.txt" gives "c.txt", a
// drive on Windows "C:". It is empty for an empty path and for "/", when memory is exhausted, and when a path that needs
// the working directory has none. `name` needs room for it and its NUL: 1024 bytes for any that a file can have. 0; 1 for
// a null path, which gives an empty name, and for a null `name`.
TUVOUTIL_API int UtlGetBaseFileNameFromFullPath(const char* path, char* name);

// ---- Separator -----------------------------------------------------------------------------------------------------

// '\', and the text "\", which belongs to the library.
TUVOUTIL_API char UtlGetFileSeperator();
TUVOUTIL_API const char* UtlGetFileSeperatorStr();

// Turns every '/' of a text into '\', in place; null is left alone.
TUVOUTIL_API void UtlConvertFileSepToTarget(char* path);
