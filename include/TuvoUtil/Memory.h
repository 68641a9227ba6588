// Tracked allocation: heap memory that knows the source file and line that asked for it.
//
// Everything that this library hands out comes from here and is given back here. With the leak checker off the
// functions are thin wrappers of the block heap (FixedHeap.h). With it on, each block is reported to the checker
// (LeakChecker.h), and in the memory modes 2 and 4 it carries a header of 16 bytes in front of the pointer that the
// caller sees.
//
//   char* name = VBuStrDup("bolt", __FILE__, __LINE__);
//   VBU_FREE(name, __FILE__, __LINE__);   // name is null now
//
// Rules for all of it:
//  - `file` is read during the call alone. Null stands for the default file name.
//  - Nothing throws. Exhausted memory, and a size that does not fit, is reported on standard error and to the message
//    handler of basutl, and gives null.
//  - Blocks are aligned to 8 bytes only: do not keep types of a higher alignment in them.
//  - Not locked: allocate and free from one thread at a time, and start leak checking before other threads run.
#pragma once

#include <TuvoUtil/Export.h>

#include <cstddef>

// Always 0. The condition of the loop in VBU_FREE, kept as a variable so that a debugger can hold a release in it.
extern TUVOUTIL_API int __VxFreeLoopCount__;

// Frees the block of a pointer variable, which is evaluated once, and sets the variable to null.
#define VBU_FREE(pointer, file, line) VBuFreeVariable((pointer), (file), (line))

// ---- Blocks --------------------------------------------------------------------------------------------------------

// Allocates `size` bytes, uninitialised. `kind` is 0, or 1 or 2 as client modules choose, and nothing else: a header
// with another kind is not recognised. Leak reports name kind 1 as made by an object factory. A size of 0 is reported as
// an error and gives null. While checking is active without an initialised checker (MovraInitMemory) every allocation
// fails.
TUVOUTIL_API void* VBuMalloc(std::size_t size, const char* file, int line, int kind);

// Allocates count * size bytes, all zero. A count or size of 0 is reported as an error and gives null.
TUVOUTIL_API void* VBuCalloc(std::size_t count, std::size_t size, const char* file, int line);

// Gives a block of `size` bytes with the content of `block`, as far as it fits, in place of `block`. A null block is
// allocated anew. A size of 0 is reported as an error, frees the block and gives null. On failure the block stays as it
// was. A block that carries a header always moves, and becomes one of kind 0. In the modes without headers the checker
// is not told: a leak report then names the place of the first allocation, and a block that moved is reported although
// it was freed.
TUVOUTIL_API void* VBuRealloc(void* block, std::size_t size, const char* file, int line);

// Gives a block back; null does nothing. A block may be freed whether or not the checker was active when it was made.
TUVOUTIL_API void VBuFree(void* block, const char* file, int line);

// What VBU_FREE does.
template <typename T>
inline void VBuFreeVariable(T*& pointer, const char* file, int line)
{
    do {
        VBuFree(pointer, file, line);
        pointer = nullptr;
    } while (__VxFreeLoopCount__ != 0);
}

// A copy of a text, its terminator included. Null for null and when memory is exhausted. The caller frees it.
TUVOUTIL_API char* VBuStrDup(const char* text, const char* file, int line);

// Tells an active checker of a block that was obtained elsewhere; null is ignored. In a mode with headers the caller
// must have reserved 16 bytes for the header at `block`, in front of its own `size` bytes; the pointer is not moved.
TUVOUTIL_API void VBuAddPointer(void* block, std::size_t size, const char* file, int line, int kind);

// Tells an active checker that a block is released, without freeing it. Null is reported as an error first.
TUVOUTIL_API void VBuDeletePointer(void* block, const char* file, int line);

// ---- Growing arrays ------------------------------------------------------------------------------------------------
//
// The second and third function grow arrays by a capacity that is never stored but computed from the element count: it
// is the count rounded up to its leading decimal digit (7 -> 7, 37 -> 40, 100 -> 100, 250 -> 300, 1234 -> 2000). So one
// array must be grown by one of these functions only, from its start: an array of 37 elements made to exact size by
// other means has no room for the 38th.
//
// Elements have at least one byte, and the source lies outside the array. When a block cannot be had, the array pointer
// becomes null, the count stays, and the old block stays allocated as with realloc: keep a copy of the pointer to free
// it. Byte counts above INT_MAX are given as INT_MAX.

// Appends `addCount` elements to an array of `count`, reallocating it to the exact size; an array with count 0 is
// allocated anew. With a null source room is made, but nothing copied nor counted. 0 done, 1 memory exhausted, -1
// nothing to do: addCount is 0, or a count is negative.
TUVOUTIL_API int VBuAllocAndCopy(int& count, void*& array, std::size_t elementSize, int addCount, const void* source,
                                 const char* file, int line);

// Appends `addCount` elements, reallocating only when the capacity does not suffice. `initialCount` is the number of
// elements that the first block has room for; 0 sizes it by the rule above. While blocks carry headers, a call with
// another initialCount than that of the array's block writes a console message and goes on.
//
// Gives the bytes appended; with a null source, or when memory was exhausted (*array is null), the bytes by which the
// block grew beyond its elements, 0 when it did not. 0 also when there is nothing to do: addCount is 0 on an empty
// array, a count is negative, or `count` or `array` is null.
TUVOUTIL_API int VBuBlockAllocAndAppend(int* count, void*** array, std::size_t elementSize, int addCount, void** source,
                                        int initialCount, const char* file, int line);

// Gives an array the capacity for `newCount` elements. While old and new count are below `initialCount`, or have the
// same capacity, only *count is set to newCount, a null array stays null, and the result is 0. Otherwise the array is
// reallocated and the result is its size in bytes; *count is then left for the caller to set. -1 when newCount is 0 or
// negative, or `count` or `array` is null.
TUVOUTIL_API int UtlBlockReallocArray(int* count, void*** array, std::size_t elementSize, int newCount,
                                      int initialCount);

// ---- Memory mode ---------------------------------------------------------------------------------------------------

// The memory mode, 0 to 4; 2 at start. The modes are those of the leak checker (LeakChecker.h); blocks carry headers in
// the modes 2 and 4 while the checker is active.
TUVOUTIL_API int VMemoryGetMode();

// Sets the memory mode and the second setting, which switches call stacks in leak reports on when it is not 0. A
// negative mode becomes 0, one of 5 or more becomes 2. Modes 2 and 3 warn when the environment variable MOVRA_MEM_DEBUG
// is not set. Gives the previous mode, and drops the checker's records when that is not the mode asked for. Mode 0 in
// mode 4 is refused: 1, and nothing is changed.
TUVOUTIL_API int VMemorySetMode(int mode, int second);

// 1 while the leak checker is active, else 0.
TUVOUTIL_API int MovraIsMemCheckActive();

// ---- Block headers -------------------------------------------------------------------------------------------------
//
// These work on the header of 16 bytes that blocks carry while the checker is active in mode 2 or 4. `block` is the
// pointer that the caller of VBuMalloc was given, unless said otherwise.

// Moves *block back to the start of its header and adds the header to *size (null is allowed); 0. A null *block leaves
// only the size to be raised. 1, and nothing changed, when the checker is inactive or the block carries no header. 0,
// and nothing changed, in the modes without headers.
TUVOUTIL_API int MovraMemChkGetActualPtr(void** block, std::size_t* size);

// Stores the bytes that a block of `size` takes in the present mode, active checker or not: 16 more in modes 2 and 4,
// at most SIZE_MAX.
TUVOUTIL_API void MovraMemChkGetActualSize(std::size_t size, std::size_t* actual);

// Stores the size that was asked for when the block was allocated; 0. Gives 1, and stores nothing, without an active
// checker in mode 2 or 4, for null, and for a block without a header or of kind 2.
TUVOUTIL_API int MovraMemChkGetAllocInfo(void* block, std::size_t* size);

// Moves *block, the start of a header, forward to the pointer for the caller when the checker is active in mode 2 or 4.
// Always 0.
TUVOUTIL_API int MovraMemChkGetClientPtr(void** block);

// The initial count that VBuBlockAllocAndAppend keeps in the header; -1 when none is set, and wherever
// MovraMemChkGetAllocInfo gives 1.
TUVOUTIL_API int MovraMemChkGetInitialCount(void* block);

// Sets that count; a block without a header, or of kind 2, is left alone. 0; 1 without an active checker in mode 2
// or 4.
TUVOUTIL_API int MovraMemChkSetInitialCount(void* block, int count);

// ---- Call stacks and names of leak records -------------------------------------------------------------------------

// Installs what captures call stacks for the leak checker (null removes it); always 0. TuvoCallStackProvider
// (CallStack.h) is one. The provider is called with *depth -1 to capture the stack into *frames, one malloc'ed block in
// a form of its own, and with the captured depth to resolve it: *frames then is a malloc'ed array of 104-byte frames,
// each with the name of the function in its first 52 bytes, the line as a 32-bit integer (-1 when unknown) and the name
// of the file in the last 48. The first three frames are those of the checker. It stores the number of frames in
// *depth; 0 when there are none.
TUVOUTIL_API int VMemSetGetFuncInfoPtr(int (*provider)(int* depth, char*** frames));

// Captures a call stack with the provider and gives its depth; 0 without a provider.
TUVOUTIL_API int VMemoryGetCallStack(char*** frames);

// Has the provider resolve a captured stack, which may replace *frames, and gives the new depth. Without a provider, or
// with a depth below 1, nothing happens and `depth` is the result.
TUVOUTIL_API int VMemoryResolveCallStack(int depth, char*** frames);

// Sets the file name of allocations that pass null; "Unknown" stands for null. Kept as a pointer, not copied.
TUVOUTIL_API void VMemLeakChkSetFile(const char* file);
