// Where a host leaves its integrity check, so that components which do not know the host can run it, and tell it which
// file they work on.
//
//   TuvoCIRegisterCheckCIFunc(CheckInstallation);   // the host: int CheckInstallation()
//   TuvoCISetLastFilePath(L"model/bracket.inp");    // a component: goes to what was registered for paths
//   if (TuvoCICheckIntegrity() != 0) ...            // what CheckInstallation() gives
//
// Only the two functions are kept here. Nothing is locked: register at start-up.
#pragma once

#include <TuvoUtil/Export.h>

// Registers the function behind one of the calls below in place of the one before; null removes it.
TUVOUTIL_API void TuvoCIRegisterCheckCIFunc(int (*check)());
TUVOUTIL_API void TuvoCIRegisterSetFilePathFunc(void (*setFilePath)(const wchar_t* path));

// Runs the host's check and gives its result as it is; by convention 0 says that all is well. -1 when none is
// registered.
TUVOUTIL_API int TuvoCICheckIntegrity();

// Hands a path, null included, to the host as it is; the text is the caller's and lives for the call only. Nothing
// happens when no function is registered: a path set before is not kept for one that comes later.
TUVOUTIL_API void TuvoCISetLastFilePath(const wchar_t* path);
