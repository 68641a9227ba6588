// Cleanup of narrow text: blanks, quotes, control characters; copies, letter case, names, fixed fields, sorting,
// printf-style text.
//
// Not for splitting (StringBreak.h), searching and replacing (StringMatch.h) or what a number looks like (NumberText.h).
//
//   char text[] = "  bolt \t M8 ";
//   UtlRemoveEmbeddedExcessBlanks(text, text);   // " bolt M8 "
//   UtlClearString(text);                        // "bolt M8"
//
// A text is bytes up to its NUL; white space is blank, \t, \n, \v, \f and \r, letters and digits are those of ASCII,
// whatever the locale. Functions that give a new text follow the thread rule of Memory.h; all others may be called from
// any thread.
//
//  form                  | null or empty source               | who owns what
//  ----------------------|------------------------------------|---------------------------------------------------------
//  (source, target)      | the target becomes ""              | the caller both. The target has room for the source with
//                        |                                    | its NUL, and may be the source or overlap it. What it
//                        |                                    | holds behind the result's NUL is undefined.
//  (text) in place       | null: nothing happens; "" stays    | the caller
//  result char*, char**  | null: null; "": a copy "", unless  | the caller frees the new text with VBuFree. Null also
//                        | said otherwise                     | when memory is exhausted.
//
// A null target or output is skipped. Cost is linear in the length of the text where nothing else is said.
#pragma once

#include <TuvoUtil/Export.h>
#include <TuvoUtil/Types.h>

#include <cstddef>

// ---- Blanks --------------------------------------------------------------------------------------------------------

// Removes all white space.
TUVOUTIL_API void UtlRemoveAllBlanks(const char* source, char* target);

// Removes the white space before the last '/'; what follows it stays: "a b/c d" gives "ab/c d".
TUVOUTIL_API void UtlRemoveAllEmbeddedBlanks(const char* source, char* target);

// Shrinks every run of white space, those at the ends too, to its first character: "  a \t b " gives " a b ".
TUVOUTIL_API void UtlRemoveEmbeddedExcessBlanks(const char* source, char* target);

// Shrinks every run of \t to one; other white space stays, and ends a run.
TUVOUTIL_API void UtlRemoveEmbeddedExcessTabs(const char* source, char* target);

// Removes white space at the front.
TUVOUTIL_API void UtlRemoveLeadingBlanks(const char* source, char* const target);

// Ends `target` where the trailing white space of `source` begins, without copying: `target` is the source, or holds a
// copy of it. The source "ab  " leaves "xy" of a target "xyzw".
TUVOUTIL_API void UtlRemoveTrailingBlanks(const char* source, char* const target);

// Stores the first character of `text` that is no white space in `start` (its NUL when there is none), and overwrites
// the white space at the end with NULs. A null text gives a null start.
TUVOUTIL_API void UtlRemoveBlanksAtEnds(char* text, char*& start);

// Removes the white space before and after each `delimiter`: "a , b" with ',' gives "a,b". A delimiter that is white
// space itself stays.
TUVOUTIL_API void UtlRemoveBlanksBesideDelimiter(const char* source, char* target, char delimiter);

// In place: the first \n and one more, or when there is none the first \r, become blanks; then the white space at both
// ends goes. Further line ends inside stay.
TUVOUTIL_API void UtlClearString(char* const text);

// A new text without white space at the ends.
TUVOUTIL_API char* VStrUtlGetStringWithNoSpacesAtEnds(const char* text);

// A new text of `count` blanks; null for a negative count.
TUVOUTIL_API char* UtlStrGetStringBlank(int count);

// ---- Quotes, delimiters and control characters ---------------------------------------------------------------------

// Removes every double and single quote.
TUVOUTIL_API void UtlRemoveQuotes(const char* source, char* target);

// A copy; where the text begins and ends with a double quote, both become blanks and the copy is cleaned with
// UtlClearString. One double quote alone gives "".
TUVOUTIL_API char* UtlClearDoubleQuotesFromString(const char* text);

// The same for a text that begins with r" and ends with a double quote. r" alone gives "".
TUVOUTIL_API char* UtlClearPythonString(const char* text);

// Stores a new text without the first occurrence of `delimiter`, a whole text; a plain copy when there is none, or the
// delimiter is null or empty.
TUVOUTIL_API void UtlRemoveFirstAppearenceOfDelimeter(const char* text, const char* delimiter, char** result);

// Removes every \r, and no other control character.
TUVOUTIL_API void UtlRemoveCtrlCharacters(const char* source, char* const target);

// Stores a new text without \r; null for an empty one.
TUVOUTIL_API void UtlStrRemoveCarriageReturn(const char* text, char** result);

// In place: every character that occurs in `characters` becomes the first one of `replacement`. An empty replacement
// puts NULs there; a null argument changes nothing.
TUVOUTIL_API void UtlReplaceChar(char* text, const char* characters, const char* replacement);

// 1 for the bytes up to 127 and for those that are one of these letters and signs in Latin-1: ¡ ° ² ¿ Á Ä É Í Ñ Ó Ö Ú Ü
// ß á ä é í ñ ó ö ú ü; else 0.
TUVOUTIL_API int UtlIsAscii(char c);

// ---- Copies --------------------------------------------------------------------------------------------------------

// Copies at most `size` characters, up to the source's NUL, and gives their number, a copied NUL included. One more NUL
// follows when that number is below `size`; a source of `size` characters and more leaves no NUL at all. 0 for a null
// source, which makes the target "", and for a size below 1, which writes nothing.
TUVOUTIL_API int UtlStrncpy(char* target, const char* source, int size);

// Copies the whole source. Always 0.
TUVOUTIL_API int Utilstrcpy(char* target, const char* source);

// strncpy: `size` characters, filled up with NULs, without a NUL when the source has `size` characters or more. A size
// below 1 does nothing. Always 0.
TUVOUTIL_API int Utilstrncpy(char* target, char* source, int size);

// A copy, and its length in *length. Null, with *length unchanged, for null, exhausted memory, and a text whose length
// an int cannot say.
TUVOUTIL_API char* UtlStrDup(const char* text, int* length);

// The same in capitals.
TUVOUTIL_API char* UtlToUpperStrDup(const char* text, int* length);

// New texts in small letters and in capitals.
TUVOUTIL_API char* UtlStrToLower(const char* text);
TUVOUTIL_API char* UtlStrToUpper(const char* text);

// Sets `count` characters to `c`, without a NUL behind them; nothing for a count below 1.
TUVOUTIL_API void UtlStrFillChar(char* text, char c, int count);

// ---- File names ----------------------------------------------------------------------------------------------------

// The part of `path` behind its last '/', else behind its last '\', else the path itself: "a/b\c" gives "b\c". Null for
// null. Nothing is allocated.
TUVOUTIL_API const char* UtlStrBaseName(const char* path);

// A new text of at most `maximumLength` bytes that shows a path in little room: the path itself when it fits, else its
// beginning, "..." and the last name with the separator before it ("C:\models\wing\spar.inp" in 18 bytes is
// "C:\mod...\spar.inp"), else "..." and the end of the path, and below 4 bytes the end alone. UTF-8 characters are not
// cut apart, which may cost up to 3 bytes. Null for a negative length.
TUVOUTIL_API char* UtlCutShortFileName(const char* path, int maximumLength);

// A new text in which `replacement` stands for every character that a file's name may not hold on one of the systems:
// < > : " / \ | ? * and codes below 32. A replacement that is one of these, or NUL, leaves them out. Names that are
// reserved as a whole ("CON", "..") are not looked for.
TUVOUTIL_API char* UtlReplaceInvalidCharsInFileName(const char* name, char replacement);

// A new text with '/' for every '\', as a URL wants its path.
TUVOUTIL_API char* UtlUrlStrReplaceFilePathSep(const char* path);

// ---- Fixed fields --------------------------------------------------------------------------------------------------
//
// A field is `width` characters from `column`, the first being 1, as far as the text reaches; \n and \r end it. White
// space at its ends does not belong to it. A field without anything else, outside the text, with a column or width below
// 1, or of a null text is empty.

// Reads a decimal integer with an optional sign into *value. 0 done, 1 empty, 2 no integer or none that an int can hold;
// *value is 0 then. VStrUtlReadInt is the same. (UtlStrGetInt of NumberText.h takes anything.)
TUVOUTIL_API int UtlReadInt(const char* text, int column, int width, int* value);
TUVOUTIL_API int VStrUtlReadInt(const char* text, int column, int width, int* value);

// Reads three fields of `width` characters each, which follow one another, as x, y and z with the results of strtod in
// the C locale. 0 done, 1 a field is empty, 2 a field is no number; such a coordinate is 0 and 2 goes before 1.
TUVOUTIL_API int UtlReadPoint3(const char* text, int column, int width, _TvPoint3Str* point);

// Copies the field to `target`, which has room for `width` characters and a NUL, and may overlap the text. 0 done, 1
// empty: the target is "".
TUVOUTIL_API int UtlReadString(const char* text, int column, int width, char* target);

// Stores the field as a new text. 0 done, 1 empty, -1 memory exhausted: *value is null then.
TUVOUTIL_API int VStrUtlReadString(const char* text, int column, int width, char** value);

// ---- Sorting -------------------------------------------------------------------------------------------------------
//
// Sorts in place, whether or not memory is left. Equal entries keep their order, null entries come last. A null array or
// a count below 2 does nothing. Cost: n log n comparisons; n log² n when memory for n pointers is not to be had.

// By bytes, ASCII letters without case.
TUVOUTIL_API void UtlSortStringInAlphabaticOrder(int count, char** strings);

// The same, but digits that stand side by side count as one number, however many they are, and zeros in front of it for
// nothing: "bolt9", "Bolt10", "bolt010b".
TUVOUTIL_API void UtlSortStringInAlphaNumricOrder(int count, char** strings);

// Sorts rows by their text in one column (the first being 0) as UtlSortStringInAlphaNumricOrder does. Each row must have
// that column; a null row counts as a row with null there. A negative index does nothing.
TUVOUTIL_API void UtlSortColumnArrayGivenColumnIndex(int rowCount, char*** rows, int columnIndex);

// ---- Formatted text ------------------------------------------------------------------------------------------------
//
// What sprintf and snprintf write in the C locale, whatever the host's locale, at any length. As with those, formats
// and arguments have to fit each other: never use a text from outside as a format. The target may not be among the
// arguments. Wide texts (%ls) have to be ASCII; a null text prints as "(null)".

// Without a bound: the target has room for the whole text and its NUL. Gives the length of the text. -1, with an empty
// target, when the C library fails. A null format counts as "".
TUVOUTIL_API int UtlSprintf(char* target, const char* format, ...);

// Writes at most `size` bytes, the last of them a NUL, and gives the length that the whole text has: the text was cut
// when that is `size` or more. A size of 0 writes nothing. Otherwise as UtlSprintf.
TUVOUTIL_API int UtlSnprintf(char* target, std::size_t size, const char* format, ...);
