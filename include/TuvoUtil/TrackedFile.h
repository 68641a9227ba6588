// Opening and closing files with the caller's source file and line, and two calls of the shell.
//
// While leak checking runs, open files are tracked: opening a path that is open already, and closing a stream that was
// not opened here, is told to the host as an error message, and the checker's printouts list the files still open.
// Neither is refused. Otherwise these are plain fopen, fclose, access and system.
//
//   std::FILE* const deck = TuvoFOpen("parts\\bracket.inp", "r", __FILE__, __LINE__);   // null: not opened, see errno
//   TuvoFClose(deck, __FILE__, __LINE__);                                                // 0
//
// Paths and commands are narrow text; paths take '/' and '\' on both systems. Exhausted memory is the failure of each
// function, with no file touched. Nothing is locked: for one thread at a time while files are tracked.
#pragma once

#include <TuvoUtil/Export.h>

#include <cstdio>

// Opens a file with a mode of fopen; the caller closes the stream with TuvoFClose. Null, with errno set, when it cannot
// be opened, for a directory on both systems, and for a null path or mode. `file`, which may be null, and `line` say who
// opens it; the tracker copies path and file.
TUVOUTIL_API std::FILE* TuvoFOpen(const char* path, const char* mode, const char* file, int line);

// Closes a stream, tracked or not: the result of fclose, but always 0 for a tracked one, so that who must know whether
// everything was written flushes first. EOF for a null stream.
TUVOUTIL_API int TuvoFClose(std::FILE* stream, const char* file, int line);

// Whether a file or directory exists (mode 0) and may be written (2), read (4) or both (6): 0, else -1 with errno set;
// any other mode gives -1.
TUVOUTIL_API int TuvoAccess(const char* path, int mode, const char* file, int line);

// Runs a command with the system's shell (/bin/sh; cmd) and waits. Its exit status, 128 + n when signal n ended it on
// Linux; -1 when no shell could be started, and for null. The shell reads the command: never build one from names that
// come from outside.
TUVOUTIL_API int TuvoSystem(const char* command, const char* file, int line);
