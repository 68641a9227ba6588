// Numbers as text: what looks like a number, the layout of one, values with a precision that suits them, integers from
// fixed columns.
//
// Not for reading numbers in general (basutl/BuNumber.h). Nothing depends on the locale; white space, letters and digits
// are those of ASCII. Every function may be called from any thread, UtlConstructFormat as far as Memory.h allows it.
//
//   std::string format;
//   UtlGetFormatOfNumberWithSpace("  12.50", format);   // "%7.2f", which prints 12.5 as it stood
//   TuvoUtilFormatDoubleValue(0.5, nullptr);            // L"0.50000"
//
//  function                        | null | empty or blank         | who owns what
//  --------------------------------|------|------------------------|------------------------------------------------
//  UtlIsValidNumber                | false| false                  | changes the caller's text: its end is cut
//  UtlIsFloatValue                 | 0    | 1                      |
//  UtlIsStringHasAlphabet          | false| false                  |
//  UtlStrGetInt                    | 1    | 1; a blank field 0     |
//  UtlConstructFormat              |      |                        | the caller frees the result with VBuFree
//  UtlGetFormatOfNumberWithSpace   | the format "%10.6e"           | the text stays as it is
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuString.h>

#include <string>

// Whether a text, apart from white space at its ends, holds nothing but + - . E e and digits and does not begin with E
// or e. Neither order nor count is checked: "1-2", ".." and "5e" are true. White space at the end of `text` is cut off,
// unless there is nothing else.
TUVOUTIL_API bool UtlIsValidNumber(char* text);

// 0 when the whole text is one decimal number that a float can hold, 1 when it is not: the sense is the opposite of the
// name. White space, hexadecimal digits, inf, nan and magnitudes that round to more than a float give 1; too small ones
// read as zero and give 0, and so does null.
TUVOUTIL_API int UtlIsFloatValue(char* text);

// Whether any character is a letter.
TUVOUTIL_API bool UtlIsStringHasAlphabet(char* text);

// Reads the integer in `width` characters from `column` (the first is 1), as far as the text reaches. Blanks in front
// are skipped; then, up to a blank, \n or \r, every digit is taken, every '+' or '-' sets the sign of the whole, and all
// else is passed over: "1x2" gives 12, "1-2" gives -12. What an int cannot hold wraps.
//
// 0 done; 1, with *value 0, when the field is empty: behind the end of the text, or a column or width below 1. A field
// of blanks is not empty and gives 0. A null value is skipped.
TUVOUTIL_API int UtlStrGetInt(int* value, char* text, int column, int width);

// A new text "%WIDTHs" or, when `rightAligned` is 0, "%-WIDTHs"; -5 and 0 give "%--5s". Null when memory is exhausted.
TUVOUTIL_API char* UtlConstructFormat(int width, int rightAligned);

// Stores the printf format that prints a number in the layout of `text`: so many blanks in front, digits before and
// after the point (14 at most), and an exponent. "123" gives "%3.0f", "123." "%3.0f.", "1.5e3" "%7.1e".
//
// A number with digits before its point, no sign, no zeros in front of others, 15 digits at most and, if it has one, an
// exponent as printf writes it ("e+03", behind one digit and a point with digits or none) is printed back as it stood.
// A sign is not counted; without digits before the point, or with several before an exponent, zeros at the end make the
// width smaller, which may become negative.
//
// "%10.6e" for null, an empty text, one that UtlIsValidNumber refuses or that has no digits, and when memory is
// exhausted.
TUVOUTIL_API void UtlGetFormatOfNumberWithSpace(const char* text, std::string& format);

// Prints `value` with the decimals that suit the magnitude of *reference, or its own when that is null: 3 from 99.999, 4
// from 0.999, 5 from 0.099 and so on to 11 from 9.9e-08, the ranges being closed and the first one counting. From 10000
// on and below 1e-8 it is printed with one significant digit ("1e+04", "0"). Zero is never printed with a minus sign.
// Empty for a magnitude from 1e-8 to below 9.9e-8, for nan, and when memory is exhausted.
TUVOUTIL_API BuString TuvoUtilFormatDoubleValue(const double& value, double* reference);
