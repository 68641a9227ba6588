// Breaking narrow text into fields: fixed widths, numbers, delimiters, tokens, groups in brackets and quotes.
//
// Not for wide text (BuString::ExtractWords) nor for lists of ids (IdList.h).
//
//   char text[] = "a,,b";
//   char** fields = nullptr;
//   const int count = UtlStringTok(text, &fields, ",");   // 3: "a", "", "b", which stand in `text`
//   VBuFree(fields, __FILE__, __LINE__);
//
// Callers depend on who changes the text, who frees what, and what becomes of nothing between two delimiters:
//
//   function                               text      fields                    "a,,b"        the caller frees
//   UtlBreakString                         kept      in the caller's buffer    -             nothing
//   UtlOptimizeBreakString                 kept      in the caller's buffer    -             nothing
//   UtlBreakStringToGivenDataType          changed   numbers in a shared block skipped       nothing
//   UtlStringTok                           changed   in the text               ""            the array
//   UtlTokenize                            kept      one new string a call     not produced  each string
//   UtlBreakStringIntoChars                kept      new strings               " "           strings and array
//   UtlBreakStringIntoStringsDbg           changed   in the text               skipped       the array
//   VbUtlBreakStringIntoStringsDbg         changed   new strings               skipped       strings and array
//   UtlBreakStringIntoStringsAndVariables  changed   in the text or the array  skipped (a)   the array
//   UtlGetStringsIncludedInDelimiters      kept      new strings               ""            strings and array
//   (a) or " " with the option of continuous delimiters
//
// Rules for all of it:
//  - "Strings and array" are freed by UtlFreeStringList. Never give it a list whose fields stand in a text.
//  - A field " " in front of the others stands for nothing before a leading delimiter. In the two functions whose fields
//    stand in the text it is one constant of the library: never written to, never freed.
//  - Bytes are bytes: delimiters above 127 work like others; white space is blank \t \n \v \f \r, whatever the locale.
//    Null delimiters count as none, and without delimiters the whole text is one field.
//  - Exhausted memory, more fields than an int can count, a null text and a null output give 0 fields and a null array
//    unless said otherwise. The text is then as it was.
//  - Cost: linear in the text, whatever it holds.
//  - Functions without process-wide state may be called from any thread as far as Memory.h allows it.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuString.h>

// ---- Fixed widths --------------------------------------------------------------------------------------------------

// Copies `count` fields of widths[i] characters (below 0 counts as 0) one behind the other into `buffer`, a NUL after
// each, and stores their starts in `fields`. The field that meets the end of the source takes what is left, those after
// it are empty. Nothing behind the last field is read. Gives `count`, 0 when an argument is null. Widths {2, 3} make "ab"
// and "cde" of "abcdefg".
//
// A field takes its width + 1 bytes of the buffer, the one that meets the end its characters + 2, those after it 2, or
// 1 when their width is 0: widths[i] + 2 bytes for each field always suffice.
TUVOUTIL_API int UtlBreakString(int count, char** const fields, char* source, int* const widths, char* buffer);

// The same for a source shorter than `fastLength`. In another every field takes exactly widths[i] + 1 bytes of the buffer,
// filled up with NULs where the source has ended.
TUVOUTIL_API int UtlOptimizeBreakString(int count, char** const fields, const char* source, int* const widths,
                                        char* buffer, int fastLength);

// ---- Numbers -------------------------------------------------------------------------------------------------------

// Reads numbers divided by white space into an array of int (type 0), float (1) or double (2) and stores its address in
// *values; any other type stores no numbers. Gives the number of fields, which is 1 with the value 0 for a text without
// any. A number is what the field begins with, as BuReadInt and BuReadDouble read it; 0 when there is none.
//
// The array is one block of the process: its values hold until the next call. In the text, white space becomes blanks,
// and the blank behind each field a NUL.
TUVOUTIL_API int UtlBreakStringToGivenDataType(char* text, void** values, int type);

// ---- Delimiters ----------------------------------------------------------------------------------------------------

// Divides at each occurrence of the first character of `delimiter`, over which it writes a NUL; nothing is left out.
// A field of nothing after a last delimiter stands in the array but is not counted: "a,,b," gives 3, and "" gives 1.
TUVOUTIL_API int UtlStringTok(char* text, char*** fields, const char* delimiter);

// The next token from *cursor on, which is moved behind it. Blanks and tabs that are delimiters are skipped, any other
// delimiter is a token of its own, and so is what stands between delimiters. Null at the end of the text, for null, and,
// with the cursor where it was, when memory is exhausted. "x = (1,2)" with " =(),": x, =, (, 1, a comma, 2, ).
TUVOUTIL_API char* UtlTokenize(char** cursor, char* delimiters);

// Divides at each occurrence of the first character of `delimiter`. Nothing in front of a delimiter gives " ", nothing
// behind the last one gives no field: ",a" gives " ", "a"; "a,," gives "a", " "; "" gives 0. The array has room for the
// next full ten fields.
TUVOUTIL_API int UtlBreakStringIntoChars(const char* text, char*** fields, const char* delimiter);

// Divides at runs of `delimiters`, by the rules of strtok but without its memory: the delimiter behind each field
// becomes a NUL. `file` (a literal) and `line` are recorded with the array.
//
// A leading delimiter gives the field " ", and the field after it begins right there, further delimiters included:
// ",a,b" gives " ", "a", "b"; ",,a" gives " ", ",a"; "," gives " ", ""; "" gives one empty field.
TUVOUTIL_API int UtlBreakStringIntoStringsDbg(char* text, char*** fields, const char* delimiters, const char* file,
                                              int line);

// The same fields as new strings; their number goes to *count as well, when that is not null. The inner call's array
// stays allocated, and is reported under `file` and `line` while leaks are checked. Of the failures only exhausted
// memory may leave the text divided.
TUVOUTIL_API int VbUtlBreakStringIntoStringsDbg(char* text, int* count, char*** fields, const char* delimiters,
                                                const char* file, int line);

// ---- Groups --------------------------------------------------------------------------------------------------------

// Divides a command line as UtlBreakStringIntoStringsDbg does, but not at blanks in groups: [..], <..>, {..} and '..'.
// Groups do not nest, the first closing character ends them, whatever opened them; one that is not closed ends with
// the text. Brackets and quotes stay in the fields. A null or empty text gives 0 and leaves *fields as it was.
//
// With the delimiter " ", "set  x [a b]  'c d'" gives set, x, [a b], 'c d'. Further:
//  - Runs of white space outside groups shrink to their first character before; right behind a run that has shrunk '<'
//    and '>' do not yet count as brackets: "x  <p  q>" gives x, <p q>.
//  - With '.' as the first delimiter, groups in quotes are not divided at '.' either.
//  - Every '#' outside groups becomes a blank. While there is a '#' in a group, every grave accent becomes '#', and
//    while there is a protected '.', every '~' becomes '.'.
//
// With the option of continuous delimiters, what follows a leading delimiter is rewritten first, byte by byte, as
// UtlStrGetResolvedContinuousDelimString does, so that the field between two delimiters is " ", and then divided at the
// option's delimiters; when these begin with ',', every ',' of a field becomes a blank. Fields of a rewritten text that
// is longer than the original stand behind the array, in its block.
TUVOUTIL_API int UtlBreakStringIntoStringsAndVariables(char* text, char*** fields, const char* delimiters);

// Switches the option of continuous delimiters on (not 0) or off (0, as at start), process-wide, until the next call.
// `delimiters` is kept as a pointer, not copied; " " at start. One thread at a time.
TUVOUTIL_API void UtlSetBreakContinuousDelimsOption(int enable, char* delimiters);

// Makes nothing between delimiters visible to a splitter that skips it: takes away a blank before and behind each
// delimiter, makes the other blanks delimiters, and puts a blank between every two equal ones: "1, ,3" stays, "1 2,,3"
// becomes "1,2, ,3" with ",". Equal are characters like the first one of `delimiter`.
//
// Gives 1 when `delimiter` occurs in the text, even if nothing changed. 0, with the text unchanged, when it does not, for
// a null or empty delimiter and when memory is exhausted.
TUVOUTIL_API int UtlStrGetResolvedContinuousDelimString(BuString& text, const char* delimiter);

// ---- Segments and lists --------------------------------------------------------------------------------------------

// The texts between `open` and the next `close` as new strings; `open` inside a segment is text. A segment that is not
// closed is left out. "f(a)(b" with '(' and ')' gives "a". Without segments 0 and a null array.
TUVOUTIL_API int UtlGetStringsIncludedInDelimiters(const char* text, char open, char close, char*** segments);

// Frees `count` strings and their array, and sets `count` to 0. A count of 0 frees nothing, not even the array, a
// negative one only the array.
TUVOUTIL_API void UtlFreeStringList(int& count, char** list);

// Ends each of `count` strings at its first occurrence of `marker`, in place. A null or empty marker and null strings
// change nothing.
TUVOUTIL_API void UtlTrimStrings(int count, char** strings, char* marker);
