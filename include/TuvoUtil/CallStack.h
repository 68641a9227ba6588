// Call stacks: of the present place as a text, for crash messages, and of allocations, for the leak checker.
//
//   void OnCrash(int signal)
//   {
//       std::string text;
//       tuvo::utl::GetCallStack(text, signal);   // "Signal SIGSEGV caught\n\tat Solve(Model&) in Solve.cpp: ..."
//       std::fputs(text.c_str(), stderr);
//       std::_Exit(1);
//   }
//   tuvo::utl::AddSIgnalHandler(OnCrash);
//
// Names and lines come from the debug information of the program and its modules, which is read when it is first asked
// for. On Windows the system's reader is for one thread at a time, which is seen to among the functions of this library.
#pragma once

#include <TuvoUtil/Export.h>

#include <string>

namespace tuvo::utl {

// Calls `handler` when SIGINT, SIGABRT, SIGFPE, SIGILL, SIGSEGV or SIGTERM arrives; null brings the system's own
// handling back. On Linux the handler stays installed, interrupted calls are restarted, and in the thread that called
// this function it runs on a stack of its own, so that a stack overflow reaches it too. On Windows it is called once for
// each signal, for SIGINT on another thread.
TUVOUTIL_API void AddSIgnalHandler(void (*handler)(int));

// Appends to `text` the line "Signal NAME caught", unless the number is 0, and the stack of the calling thread, the
// innermost frame first, one or two lines each:
//
//   	at FUNCTION in FILE: line: 12: address: 0x94101234
//
//   	SymGetLineFromAddr64 returned error code 487.
//   	at FUNCTION, address 0x94101234.
//
// The name is empty for any signal but those above, and so is a function that is not known. The address is the start of
// the function, 0 when that is not known, as a decimal number behind "0x". When memory is exhausted the text ends early.
// Allocates, so that it is not safe in a signal handler: it may hang when the heap was interrupted or is damaged.
TUVOUTIL_API void GetCallStack(std::string& text, int signalNumber);

}  // namespace tuvo::utl

// The call-stack provider for VMemSetGetFuncInfoPtr (Memory.h). Takes addresses alone when a block is allocated and
// resolves them when a report asks, even if the plug-in that allocated is unloaded by then. Always 0.
//
// The three frames of the checker are always "TuvoMemory at 0 in TuvoMemory"; the fourth is the caller of the function
// of Memory.h. A function is named without blanks: without its parameters, "{anonymous}" for an unnamed namespace, "_"
// for any other blank that has to stay. One that is not known is named by its place in its module, as libmesh.so+0x1a2b.
// Names are cut to 51 characters, file names, which are without their folders, to 47.
//
// `frames` may hold 125 of the innermost callers. When memory is exhausted there are none (*depth is 0).
TUVOUTIL_API int TuvoCallStackProvider(int* depth, char*** frames);
