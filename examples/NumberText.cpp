// Numbers that a user typed, echoed in the layout that they had, and values printed with decimals that suit them.
#include <TuvoUtil/NumberText.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main()
{
    for (const char* const typed : {"  12.50", "123", "1.5e+03", "0.0012"}) {
        std::string format;
        UtlGetFormatOfNumberWithSpace(typed, format);
        char doubled[40];
        std::snprintf(doubled, sizeof doubled, format.c_str(), 2.0 * std::atof(typed));
        std::printf("\"%s\" twice, as \"%s\": \"%s\"\n", typed, format.c_str(), doubled);
    }

    char number[] = "2.5", noNumber[] = "2.5x";
    std::printf("a float: %s %d, %s %d\n", number, UtlIsFloatValue(number), noNumber, UtlIsFloatValue(noNumber));

    for (const double value : {12345.0, 250.0, 0.5, 5e-7})
        std::printf("%s\n", TuvoUtilFormatDoubleValue(value, nullptr).ToNarrow().c_str());
}
