// Reading binary files, those of machines with the other byte order too: arrays turned round in place, values and texts
// read one by one from a stream.
//
//   std::FILE* const file = TuvoFOpen("mesh.bin", "rb", __FILE__, __LINE__);   // text mode would change bytes
//   const int nodeCount = UtlRead4byteInt(file, 1);   // 00 00 01 02 gives 258
//   char* const name = UtlReadVariableString(file, 1);
//
// Arrays need not be aligned; a null array or an `n` of 0 or less does nothing. `swap` is 0 for bytes as they stand, and
// anything else to turn them round.
//
// The end of the stream is no failure: bytes that are missing are 0, so that nothing at all reads as 0. Ask feof and
// ferror where it matters. A null stream is one at its end. May be called from any thread, for one stream from one at a
// time.
#pragma once

#include <TuvoUtil/Export.h>

#include <cstdio>

// ---- Arrays --------------------------------------------------------------------------------------------------------

// Exchanges the two bytes of each element.
TUVOUTIL_API void UtlConvert2byteInt(unsigned short* values, int n);

// Reverses the four bytes of each element. The second one always gives 0.
TUVOUTIL_API void UtlConvert4byteInt(int* values, int n);
TUVOUTIL_API float UtlConvert4byteFloat(float* values, int n);

// Writes the last four bytes of each element, last one first, over its first four: 01 02 03 04 05 06 07 08 becomes
// 08 07 06 05 05 06 07 08. This is not the other byte order, and a second call does not undo it; files and callers
// depend on it. Always gives 0.
TUVOUTIL_API double UtlConvert8byteDouble(double* values, int n);

// ---- Values from a stream ------------------------------------------------------------------------------------------

// The next value, with the bytes as `swap` says; a double is turned as UtlConvert8byteDouble does it. The first one gives
// 0 to 65535.
TUVOUTIL_API int UtlRead2byteInt(std::FILE* fp, int swap);
TUVOUTIL_API int UtlRead4byteInt(std::FILE* fp, int swap);
TUVOUTIL_API float UtlRead4byteFloat(std::FILE* fp, int swap);
TUVOUTIL_API double UtlRead8byteDouble(std::FILE* fp, int swap);

// The next text: a length, read as UtlRead2byteInt does, and so many bytes, to which a NUL is added. The caller frees it
// with VBuFree. Null for the length 0, and when memory is exhausted; nothing but the length is read then.
TUVOUTIL_API char* UtlReadVariableString(std::FILE* fp, int swap);
