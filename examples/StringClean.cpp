// A line of a deck, as users write it, cleaned and read field by field; names of parts in an order that people expect.
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringClean.h>

#include <cstdio>

namespace {

// Prints a text that the caller of a function owns, and frees it.
void Show(const char* what, char* text)
{
    std::printf("%-20s \"%s\"\n", what, text != nullptr ? text : "");
    VBuFree(text, __FILE__, __LINE__);
}

}  // namespace

int main()
{
    char line[] = "  GRID \t 12 ,  wing\t spar \r\n";
    UtlRemoveEmbeddedExcessBlanks(line, line);
    UtlRemoveBlanksBesideDelimiter(line, line, ',');
    UtlClearString(line);
    std::printf("%-20s \"%s\"\n", "cleaned", line);

    // Columns are counted from 1.
    const char card[] = "GRID    12        1.0     -2.5    3e2";
    int id = 0;
    _TvPoint3Str point = {};
    char keyword[9];
    if (UtlReadString(card, 1, 8, keyword) == 0 && UtlReadInt(card, 9, 8, &id) == 0 &&
        UtlReadPoint3(card, 17, 8, &point) == 0)
        std::printf("%-20s %s %d at (%g, %g, %g)\n", "fields", keyword, id, point.x, point.y, point.z);

    Show("without quotes", UtlClearDoubleQuotesFromString("\" M8 bolt \""));
    Show("a path for a title", UtlCutShortFileName("C:\\models\\wing\\spar.inp", 18));
    Show("a name for a file", UtlReplaceInvalidCharsInFileName("Load case 1/2: landing?", '_'));

    char first[] = "bolt10", second[] = "Bolt9", third[] = "bolt010b";
    char* names[] = {first, second, third};
    UtlSortStringInAlphaNumricOrder(3, names);
    char text[32];
    UtlSnprintf(text, sizeof text, "%s, %s, %s", names[0], names[1], names[2]);
    std::printf("%-20s %s\n", "sorted", text);
}
