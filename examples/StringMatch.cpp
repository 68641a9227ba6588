// Finding and renaming the parts of a model by their names, as a user would type it.
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringMatch.h>

#include <cstdio>

namespace {

const char* const Names[] = {"bolt_m8_12", "Bolt_M10_3", "plate, left", "plate, right", "weld.seam.017"};

void ShowMatches(const char* pattern)
{
    std::printf("%s:", pattern);
    for (const char* const name : Names)
        if (UtlStrWildCmp(pattern, name) != 0)
            std::printf(" [%s]", name);
    std::printf("\n");
}

// Prints a text that the library gave, and gives it back.
void Show(const char* title, char* text)
{
    std::printf("%s: %s\n", title, text != nullptr ? text : "no memory");
    VBU_FREE(text, __FILE__, __LINE__);
}

}  // namespace

int main()
{
    ShowMatches("bolt_*");
    ShowMatches("*.???");
    char anyBolt[] = "bolt_m?_*";
    std::printf("without case \"%s\" %s\n", anyBolt,
                UtlStrMatchString(anyBolt, "BOLT_M8_4", 1) != 0 ? "fits" : "fails");
    std::printf("\"plate...right\" finds %s\n",
                UtlCompareStrings(Names[3], "plate...right", "...", 1) != 0 ? Names[3] : "");

    Show("fields", UtlReplaceString("8, 12;16", ";, ", " | "));
    Show("removed", UtlReplaceStringWithNothing("Bolt_M8_copy", "_COPY", 0));
    char formula[] = "x + max_x * \"x\"", variable[] = "x", value[] = "0.25";
    Show("whole words", UtlSearchAndReplaceByMatchWholeWord(formula, variable, value));

    BuArrayTempl<int> positions;
    std::printf("%d dots:", UtlFindSubstringLocationsInString(Names[4], ".", positions));
    for (const int position : positions)
        std::printf(" %d", position);
    std::printf("\n");
}
