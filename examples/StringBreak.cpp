// A line of a solver deck and a command line, taken apart.
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <cstdio>

namespace {

void Print(const char* title, int count, char** fields)
{
    std::printf("%-10s", title);
    for (int i = 0; i < count; ++i)
        std::printf(" [%s]", fields[i]);
    std::printf("\n");
}

}  // namespace

int main()
{
    // Fixed columns: the fields are copied into a buffer of the caller.
    char card[] = "GRID    1       0.0     12.5";
    int widths[] = {8, 8, 8, 8};
    char* columns[4];
    char buffer[4 * (8 + 2)];
    Print("columns", UtlBreakString(4, columns, card, widths, buffer), columns);

    // Fields of nothing count: they stand in the text, the array is the caller's.
    char shell[] = "7,steel,,0.8";
    char** fields = nullptr;
    int count = UtlStringTok(shell, &fields, ",");
    Print("fields", count, fields);
    VBuFree(fields, __FILE__, __LINE__);

    // Groups stay whole.
    char command[] = "set  title 'front rail'  nodes [1 2 3]";
    count = UtlBreakStringIntoStringsAndVariables(command, &fields, " ");
    Print("command", count, fields);
    VBuFree(fields, __FILE__, __LINE__);

    // New strings, freed with their array.
    count = UtlGetStringsIncludedInDelimiters("f(x) + g(y)", '(', ')', &fields);
    Print("arguments", count, fields);
    UtlFreeStringList(count, fields);

    // Token by token.
    char expression[] = "x = (1, 2)";
    char delimiters[] = " =(),";
    std::printf("%-10s", "tokens");
    for (char *cursor = expression, *token; (token = UtlTokenize(&cursor, delimiters)) != nullptr;) {
        std::printf(" [%s]", token);
        VBuFree(token, __FILE__, __LINE__);
    }

    char numbers[] = "0.0  12.5\t-3";
    void* values = nullptr;
    count = UtlBreakStringToGivenDataType(numbers, &values, 2);
    std::printf("\n%-10s", "numbers");
    for (int i = 0; i < count; ++i)
        std::printf(" %g", static_cast<double*>(values)[i]);
    std::printf("\n");
}
