// Comparison of narrow texts: wildcards, order without case, lookup, search and replacement.
//
// Not for regular expressions, nor for the letters of any language but English: texts are compared byte by byte, and
// letters, digits and white space are those of ASCII.
//
//   UtlStrWildCmp("node_*", "node_12")                        // 1
//   UtlStrCompi("Steel", "steel")                             // 0
//   char* text = UtlReplaceString("a--b-", "-", "+");         // "a+b"
//   VBU_FREE(text, __FILE__, __LINE__);
//
// What is special to each function that gives a new text, and to the two that compare with a pattern in pieces:
//
//   function                             empty pattern or set   empty piece or field               the caller frees
//   UtlReplaceString                     replacement + text     dropped; a leading one is " "      the result
//   UtlReplaceStringWithNothing          ""                     -                                  the result
//   UtlReplaceStringWithString           a copy of the text     -                                  the result
//   UtlSearchAndReplaceByMatchWholeWord  a copy of the text     -                                  the result
//   UtlCompareStrings,                   0                      a leading one matches anything,    nothing
//   UtlCompareCompleteWord                                      any other is a blank that must occur
//
// Rules for all of it:
//  - A whole word is an occurrence with a separator, or an end of the text, on either side. Separator is every byte but
//    the ASCII letters and digits, '_', '"' and '\''. So text in quotes is no whole word, and bytes above 127 separate.
//  - Exhausted memory gives null where a text is given, else what is said; the arguments are never changed.
//  - Cost is linear in the lengths of the texts unless said otherwise, whatever they hold.
//  - Functions that give a new text, or that say "memory", allocate and follow the thread rule of Memory.h. The others
//    may be called from any thread.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuArrayTempl.h>

// ---- Wildcards -----------------------------------------------------------------------------------------------------

// Whether the whole of `text` matches `pattern`, in which '*' stands for any run of characters, the empty one included,
// and '?' for exactly one. Case matters; there is no escape. 1 on a match, else 0; an empty pattern matches the empty
// text alone, null matches nothing. Cost: at worst the length of the text times that of the longest part of the pattern
// between two '*'.
TUVOUTIL_API int UtlStrWildCmp(const char* pattern, const char* text);

// The same; with `ignoreCase` not 0 letters match in either case.
TUVOUTIL_API int UtlStrMatchString(char* pattern, const char* text, int ignoreCase);

// ---- Patterns in pieces --------------------------------------------------------------------------------------------

// Whether `first` matches the pattern `second`, in which every `token` stands for any text: 1 or 0. The token divides
// the pattern into pieces; `first` has to begin with the first piece, end with the last one unless the pattern ends with
// a token, and hold the others in this order. The rules are looser than those of wildcards:
//  - A piece need not begin behind the one before, only not before its start: "AB*B" matches "AB".
//  - Without a token in the pattern, `first` has only to begin with it: "abc" matches "a".
//  - The first piece is taken without white space at its ends; up to two line feeds inside (without any, the first
//    carriage return) count as blanks. If nothing is left it matches anything.
//  - Any other empty piece, made by two tokens in a row, is a blank that must occur: "a**c" matches "a c", not "abc".
//  - A pattern of one token matches only the text that is equal to it. An equal text always matches.
//  - With `caseSensitive` 0 text and pattern are compared in upper case, and the token has to be given in upper case.
//  - A token of two or more characters needs one of !@#$%^*` that is not in the pattern, else the result is 0.
//
//   UtlCompareStrings("model_12.dat", "MODEL*.DAT", "*", 0)     // 1; "model_12.txt" gives 0
//
// 0 as well when an argument is null or empty, the token is longer than the pattern, or memory is exhausted.
TUVOUTIL_API int UtlCompareStrings(const char* first, const char* second, const char* token, int caseSensitive);

// The same; with `wholeWord` not 0 every piece has to be found as a whole word, but the blank between two tokens, which
// is none: "bolt*m8" matches "bolt, long, m8", not "bolts m8". An equal text matches all the same.
TUVOUTIL_API int UtlCompareCompleteWord(const char* first, const char* second, const char* token, int caseSensitive,
                                        int wholeWord);

// ---- Order and lookup ----------------------------------------------------------------------------------------------

// Order of two texts without case, as bytes of the lower-case texts: -1, 0 or 1. Null is as the empty text. A text of
// more than 255 characters on either side is equal to anything.
TUVOUTIL_API int UtlStrCompi(const char* first, const char* second);

// Index of the first of `count` entries that is equal to `text`; -1 when there is none, and for a null or empty text.
// Null entries, and a null list, are equal to nothing.
TUVOUTIL_API int UtlFindStringInList(int count, char** list, char* text);

// Whether the characters after the last '.' of `name` are exactly `extension`, which is given without a dot: 1 or 0. 0
// without a '.' in the name and for null; "a." has the empty extension.
TUVOUTIL_API int UtlStrExtensionMatch(const char* name, const char* extension);

// Whether any character of `characters` occurs in `text`: 1 or 0; 0 for null and when memory is exhausted. Characters are
// those of the wide texts: the bytes of an 'é' are not looked for one by one. Cost: when either holds bytes above 127,
// the length of one text times that of the other, and memory for both as wide texts.
TUVOUTIL_API int UtlStringHasOneofCharacter(const char* text, const char* characters);

// Stores all positions, counted in bytes from 0, at which `pattern` occurs in `text`, in rising order, occurrences that
// overlap included; gives their number. What `positions` held is dropped. 0 for null or empty arguments. -1, with no
// positions, when memory is exhausted or one does not fit an int.
TUVOUTIL_API int UtlFindSubstringLocationsInString(const char* text, const char* pattern, BuArrayTempl<int>& positions);

// ---- Replacement ---------------------------------------------------------------------------------------------------
//
// Each gives a new text, which the caller frees with VBuFree. A null replacement is as the empty text.

// Puts `replacement` in place of every run of characters from the set `delimiters`; a run at the end is dropped. A text
// that begins with a delimiter gives a blank, the replacement and then the rest, in which a second delimiter at once
// stays as it is ("--a" gives "+ +-a" for "-" and "+"); and when it begins with all of `delimiters` as they stand, one
// more replacement in front:
//
//   UtlReplaceString("a--b-", "-", "+")      // "a+b"
//   UtlReplaceString("-a-b", "-", "+")       // "+ +a+b"
//   UtlReplaceString("-a-b", "-,", "+")      // " +a+b"
//
// Null delimiters are as none: the replacement and then the text. Null for a null text.
TUVOUTIL_API char* UtlReplaceString(const char* text, const char* delimiters, const char* replacement);

// Removes every occurrence of `pattern`, left to right, none inside another. With `caseSensitive` 0 the text is searched
// as if in upper case, and so a pattern with a lower-case letter is not found; what stays keeps its case. A null or empty
// text or pattern gives a new empty text.
TUVOUTIL_API char* UtlReplaceStringWithNothing(const char* text, const char* pattern, int caseSensitive);

// Puts `replacement` in place of every occurrence of `word` that is a whole word. The search goes on behind each
// occurrence, replaced or not, and a replacement counts as the neighbour of what follows it. Null for a null text; a copy
// of the text for a null or empty word.
//
//   UtlSearchAndReplaceByMatchWholeWord("x+x_1 \"x\" x", "x", "y")     // "y+x_1 \"x\" y"
TUVOUTIL_API char* UtlSearchAndReplaceByMatchWholeWord(char* text, char* word, char* replacement);

// Puts `replacement` in place of every occurrence of `pattern`, left to right, none inside another. With `caseSensitive`
// 0 letters match in either case; with `wholeWord` not 0 only whole words are replaced, as by the function above. Null
// for a null text; a copy of the text for a null or empty pattern.
TUVOUTIL_API char* UtlReplaceStringWithString(const char* text, const char* pattern, const char* replacement,
                                              int caseSensitive, int wholeWord);
