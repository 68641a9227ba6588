// The leak checker: everything that tracked allocation (Memory.h) hands out, with its origin, until it is freed.
//
// A host calls MovraInitMemory at its start and MovraPrintMemoryLeak at its end. Whoever sets the environment variable
// MOVRA_MEM_DEBUG, to whatever value, gets a report; all others pay nothing. docs/leak-check.md is the guide.
//
//   MovraInitMemory();
//   VMemSetGetFuncInfoPtr(TuvoCallStackProvider);   // CallStack.h
//   ...
//   char report[] = "leaks.txt", stacks[] = "stacks.txt", data[] = "pass.log";
//   MovraPrintMemoryLeak(report, stacks, data, nullptr);
//
// The memory mode (VMemoryGetMode) says how it is done:
//
//   0  fast: releases are only noted and taken into account before the report. A block takes with it whatever lived at
//      its address before or after, so that a leak may be missed
//   1  accurate: a release removes its record at once
//   2  first pass: the report is a data file with the sequence indices of what leaked, for mode 3
//   3  second pass: only what the first pass listed is recorded and reported; a run has to repeat the first one exactly
//   4  what MOVRA_MEM_DEBUG switches on: accurate, and told of blocks that are freed twice or were never allocated
//
// In modes 2 and 4 blocks carry a header, and their bytes are set to 1 when they are made and when they are freed.
//
// Rules for all of it:
//  - A record keeps the last 15-character name in the path of the source file; only a backslash separates.
//  - With call stacks on (the second setting of VMemorySetMode, or MOVRA_MEM_DEBUG) reports leave out what has no call
//    stack: without a provider (VMemSetGetFuncInfoPtr) they are empty.
//  - The files of the checker are looked for in the user directory (VEnvSetUserDirectory): QDLeak_SuppressionInfo.dat
//    names what is not to be reported, QD_LeakInfoTmpData.log is the data file that a second pass starts from.
//  - What finds no memory for its record is not reported. Byte counts are int and wrap above 2 GB.
//  - Not locked: start before other threads allocate, and check one thread.
#pragma once

#include <TuvoUtil/Export.h>

// Installs the checker, without which a check that is started lets every allocation fail. When MOVRA_MEM_DEBUG is set,
// or checking is active already, starts it in mode 4 with call stacks on and the counter at 0.
TUVOUTIL_API void MovraInitMemory();

// Starts or restarts checking in the present mode, tells so, and tracks files (TrackedFile.h). Mode 2 becomes mode 3
// while a data file is loaded.
TUVOUTIL_API void MovraStartMemoryLeakCheck();

// Stops checking and the tracking of files. In mode 4 only the latter: a message tells that checking goes on.
TUVOUTIL_API void MovraStopMemoryLeakCheck();

// Installs the checker and starts the second pass: loads the data file of the user directory, which is removed, and
// checks in mode 3; 0. Without a data file it starts a first pass, in mode 2; 1. Says on standard error which it was. A
// data file that ends too early counts as far as it goes.
TUVOUTIL_API int MovraStartSecondPass();

// Bytes in use that the checker knows of. In mode 0 freed blocks count until the next report.
TUVOUTIL_API int MovraGetMemoryInUse();

// Shows bytes in use, the peak, bytes allocated and freed, and the number of records in a message box, and the files
// that are open as console messages; nothing while inactive. Peak and allocated bytes are counted in modes 0, 1 and 3
// alone, freed bytes in mode 1.
TUVOUTIL_API void MovraPrintMemoryUsage();

// Reports what was not freed, sorted by file, line and size, what has the same origin in one line; nothing while
// inactive. The report is written to `reportFile`, and added, with call stacks when they are on, to `appendFile`, which
// may be null. The total is shown in a message box and stored in *leakedBytes, which may be null. Afterwards the
// checker starts anew: what is still allocated is forgotten.
//
// A message box tells when there is nothing to report and when a file cannot be opened or written (null is such a
// file), or memory is exhausted. Then *leakedBytes is 0 and nothing is forgotten; only a file that turns out to be too
// long for its disk is removed and the check goes on as after a report.
//
// In mode 2 the list of leaks is written to `tmpDataFile` instead. To be found by a second pass it has to be the data
// file of the user directory.
TUVOUTIL_API void MovraPrintMemoryLeak(char* reportFile, char* appendFile, char* tmpDataFile, int* leakedBytes);
