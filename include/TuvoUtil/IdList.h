// Lists of ids and of values as users type them, and back to text.
//
// Two grammars read ids, kept apart on purpose: a strict one for what users type, which rejects what it does not know,
// and a lenient one with separators of the caller's choice, which accepts everything.
//
//   int* ids;
//   UtlGenerateIdListFromString("5 3-1,3:4", &ids, 0)               // 5 ids: 5 1 2 3 4
//   UtlStrGenerateIdStringSafe(ids, 5, nullptr)                     // "5,1-3,4"
//   UtlGetIdListFromGivenSet("7:3;10", &ids, ";", ":")              // 6 ids: 3 4 5 6 7 10
//
// | function                       | empty field                  | frees with VBuFree         | bad text, no memory |
// |--------------------------------|------------------------------|----------------------------|---------------------|
// | UtlGenerateIdListFromString    | none; a leading ',' is odd   | the ids                    | -1, *ids untouched  |
// | UtlGetIdListFromGivenSet       | id 0                         | the ids                    | 0, *ids null        |
// | UtlGetIdListFromWildCard       | id 0                         | the ids                    | 0, *ids null        |
// | UtlGetIncrementalIdList        | id 0                         | the ids                    | 0, *ids null        |
// | UtlGetFloatListFromString      | 0.0                          | the values                 | 0, *values untouched|
// | UtlGetTvCoordValuesFromString  | skipped                      | the values                 | 1, *values null     |
// | the functions that print       | not applicable               | the text                   | null                |
//
// Rules for all of it:
//  - A field ends at each separator; the rest behind the last separator is one more field unless it is empty.
//  - Only the first character of a separator counts when a text is read; printing takes it whole. An empty separator
//    divides nothing.
//  - Numbers read as by atoi and atof in the C locale: white space in front and anything behind them is passed over, a
//    field that is no number is 0. Ids above 2147483647 wrap.
//  - A range may be given either way round and is always read upwards. Ids are never sorted.
//  - A null result pointer gives the result of a bad text. More results than an int counts are exhausted memory.
//  - Cost is linear in the text and the results; only the results take memory, and what is needed to know duplicates.
//  - Texts are not changed, unless said otherwise. Any thread.
#pragma once

#include <TuvoUtil/Export.h>

// ---- Ids from text -------------------------------------------------------------------------------------------------

// Reads ids and ranges, "5,7-12 20:18", divided by commas and blanks; '-' and ':' both make a range. Stores a new array
// of the ids greater than 0 in the order of the text and returns their number; unless `keepDuplicates` is not 0, an id
// counts where it first stands only. The array is there, and to be freed, when the number is 0 too ("0").
//
// Returns -1, with *ids as it was, when the text is null, empty or blank; holds any other character, line ends and tabs
// included; has an item without a lower bound ("-5"), or a bound of ten characters or more; and when memory is exhausted.
//
// What looks odd and holds: a missing upper bound is 0 ("5-" is 1 to 5), one of -1 is none ("5--1" is 5), another
// negative one counts ("5--3" is 1 to 5). Of two range signs in an item the ':' wins when it stands first ("1:5-9" is 1
// to 5), else the number ends there ("1-10:2" is 1 to 10). A text that begins with a comma has an empty item, which is
// dropped, and the lower bound behind further separators reads as 0: ",,5" gives no id, ",,1-3" gives 1 2 3.
TUVOUTIL_API int UtlGenerateIdListFromString(const char* text, int** ids, int keepDuplicates);

// Reads ids and ranges divided by `setSeparator` (null: ","), the bounds of a range by `rangeSeparator` (null: ":").
// Stores a new array of all ids, duplicates and those below 1 included, and returns their number. Of more than two
// bounds the first and the last count: "2:4:9" is 2 to 9. "1,,3" is 1 0 3, ":5" is 0 to 5, "5:" is 5.
//
// Returns 0 with *ids null when the text is null or empty and when memory is exhausted.
TUVOUTIL_API int UtlGetIdListFromGivenSet(const char* text, int** ids, const char* setSeparator,
                                          const char* rangeSeparator);

// The range from the pattern with every wildcard (0: '?') replaced by '0' to the one with '9' in its place: "1??" is
// 100 to 199, and "?5" all ids from 5 to 95, not only those that end in 5. The text "low:high" that this makes is read
// as by UtlGetIdListFromGivenSet. Returns 0 with *ids null for a pattern that is null or has no wildcard.
TUVOUTIL_API int UtlGetIdListFromWildCard(char* pattern, int** ids, char wildcard);

// Every n-th id of a list, n being the number behind the last `stepSeparator` (0: ','). The list in front of it is read
// as by UtlGetIdListFromGivenSet, with the step separator between its items and `rangeSeparator` (0: ':') in its ranges.
// Only whole steps count: of c ids c / n are taken, from the first on: "1:9,2" is 1 3 5 7, "1:10,2" is 1 3 5 7 9.
//
// Returns 0 with *ids null for a null text, without a step separator, for a step below 1, and when no id is left.
TUVOUTIL_API int UtlGetIncrementalIdList(char* text, int** ids, char rangeSeparator, char stepSeparator);

// ---- Text from ids -------------------------------------------------------------------------------------------------

// A new text of the ids with `separator` (null: ",") between them; null without ids and when memory is exhausted.
TUVOUTIL_API char* UtlGenerateStringFromIdList(int* ids, int count, char* separator);

// The same with runs of ids, each one more than the one before, joined by `rangeSeparator` (null: "-"); items are
// divided by commas. A run at the very end is closed one id early, so the last id stands for itself: 1 2 3 7 is "1-3,7",
// 1 2 3 is "1-2,3" and 1 2 is "1-1,2". With the range separator "," or "" the inner ids of a run are left out.
TUVOUTIL_API char* UtlStrGenerateIdStringSafe(int* ids, int count, const char* rangeSeparator);

// ---- Values --------------------------------------------------------------------------------------------------------

// A new text of the values as "%f" prints them, with `separator` (null: ",") between them: "1.500000,2.000000". Null
// without values and when memory is exhausted.
TUVOUTIL_API char* UtlGenerateStringFromFloatList(float* values, int count, char* separator);

// Reads the values between separators (null: ",") into a new array and returns their number; an empty field is 0. Returns
// 0, with *values as it was, when the text is null or empty and when memory is exhausted.
TUVOUTIL_API int UtlGetFloatListFromString(const char* text, float** values, const char* separator);

// Reads decimal numbers divided by commas and blanks, for instance coordinates, and checks them: an optional '-', digits
// and at most one point, no exponent, none smaller than 1e-7 ("1..", with nothing behind the second point, is 1). White
// space around the whole text is removed in place. `reserved` is not used.
//
// Returns 0 and stores a new array and its count; null and 0 when there is no value among blanks and commas. Otherwise
// returns 1, stores null and 0, and writes one of these to `message`, which needs 53 bytes (null: it is not wanted):
//   "No values found!"                                      the text is null or empty
//   "A value can have only one decimal point!"              two points, and something behind them
//   "The '-' sign is specified twice for the same number!"  two signs, and something behind them; this one comes first
//   "Alpha value is entered!"                               a letter
//   "Non numeric value is entered!"                         another character where a number begins
//   "Invalid value!"                                        another character in a number, a sign included
//   "Enter non zero values!"                                a value below 1e-7
//   "Memory is exhausted!"
TUVOUTIL_API int UtlGetTvCoordValuesFromString(char* text, int* count, double** values, char* reserved, char* message);
