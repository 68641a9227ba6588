// Arrays that the caller holds as a pointer variable and a count, grown, shrunk and rearranged element by element.
//
// Elements are plain bytes of a given size. For arrays that grow by many elements there are the growing arrays of
// Memory.h: here every change of the length is one reallocation at most, and one move of what follows.
//
//   int* ids = nullptr;
//   int count = 0;
//   UtlExpandArrayByOne(reinterpret_cast<void**>(&ids), &count, sizeof(int));       // ids is {0}
//   ids[0] = 7;
//   UtlInsertArrayMember(reinterpret_cast<void**>(&ids), &count, sizeof(int), 0);   // {0, 7}
//   UtlFreeAndInit(reinterpret_cast<void**>(&ids));                                 // ids is null
//
// Rules for all of it:
//  - `array` is the address of the pointer variable, whose block comes from VBuMalloc (Memory.h) and is null while the
//    array has no element. What is freed here leaves null in the variable.
//  - Sizes are in bytes; indices count from 0. A null address or array does nothing, unless said otherwise.
//  - Exhausted memory is reported as by VBuMalloc; so is a size that is 0 or negative. Where the array becomes null then,
//    its old block stays allocated, as with realloc: keep a copy of the pointer to free it.
//  - Functions without state, but those that allocate or free share the rules of Memory.h for threads.
#pragma once

#include <TuvoUtil/Export.h>

// ---- One element more or less --------------------------------------------------------------------------------------

// Appends an element of zero bytes. *count grows in any case. An array of count 0 is allocated anew, whatever its pointer
// holds; all elements of a null array with a count are zero. When memory is exhausted the array becomes null, with a
// line about it on standard error.
TUVOUTIL_API void UtlExpandArrayByOne(void** array, int* count, int elementSize);

// Makes room for one element in front of the one at `index`: those from there on move up, and the new one is zero. An
// index outside the array appends. Exhausted memory as with UtlExpandArrayByOne.
TUVOUTIL_API void UtlInsertArrayMember(void** array, int* count, int elementSize, int index);

// Removes the element at `index`; those behind it move down. An index outside the array removes the last one. The block
// keeps its size, and is freed with its only element. Nothing happens to an array without elements.
TUVOUTIL_API void UtlRemoveArrayMember(void** array, int* count, int elementSize, int index);

// ---- Elements replaced ---------------------------------------------------------------------------------------------

// Puts `newCount` pointers in the place of the one at `index` of an array of pointers. `newMembers` lies outside the
// array and may be null when newCount is 0, which removes the pointer, and frees the array with its only one. The block
// is reallocated to elementSize bytes a pointer; elementSize is that of a pointer, and a smaller one counts as it.
//
// Always 0. Nothing is changed when memory is exhausted, when the index lies outside the array, and when newCount is
// negative or the new count would not fit an int.
TUVOUTIL_API int UtlReplaceMemberWithArray(void*** array, int* count, int elementSize, int index, int newCount,
                                           void** newMembers);

// Exchanges two elements. The array must have both; a negative index or a size below 1 does nothing.
TUVOUTIL_API void UtlSwapArrayMembers(void** array, int first, int second, int elementSize);

// ---- Blocks --------------------------------------------------------------------------------------------------------

// Stores a new block of count * elementSize zero bytes in *array, whose old value is not looked at, and returns it; null
// when it cannot be had. With a null `array` nothing is allocated and the result is null.
TUVOUTIL_API void* UtlCallocAndLink(void** array, short count, short elementSize);

// Reallocates an array to `count` elements and sets the last one to zero: meant for growth by one. A null array gets all
// its elements, zero. When memory is exhausted the array becomes null. A count or size of 0 frees it.
TUVOUTIL_API void UtlReCalloc(void** array, short count, short elementSize);

// Frees `count` rows, of which any may be null, and then the array of rows. A negative count frees the array alone. A
// count of 0 frees nothing: the array of rows stays the caller's.
TUVOUTIL_API void UtlFree2DArray(int count, void** rows);

// Frees a block and sets its pointer to null.
TUVOUTIL_API void UtlFreeAndInit(void** pointer);
