// The selection that a user typed, read, and shown in its short form.
#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <cstdio>
#include <initializer_list>

int main()
{
    for (const char* const typed : {"5 3-1,3:4", "100-105, 103-110 7", "1-5,x", "-5"}) {
        int* ids = nullptr;
        const int count = UtlGenerateIdListFromString(typed, &ids, 0);
        if (count < 0) {
            std::printf("\"%s\" is not a list of ids\n", typed);
            continue;
        }
        char* text = UtlStrGenerateIdStringSafe(ids, count, nullptr);
        std::printf("\"%s\": %d ids, %s\n", typed, count, text);
        VBU_FREE(text, __FILE__, __LINE__);
        VBU_FREE(ids, __FILE__, __LINE__);
    }

    int* ids = nullptr;
    char everyThird[] = "1:10,3";
    const int count = UtlGetIncrementalIdList(everyThird, &ids, ':', ',');
    char blank[] = " ";
    char* text = UtlGenerateStringFromIdList(ids, count, blank);
    std::printf("\"%s\": %s\n", everyThird, text);
    VBU_FREE(text, __FILE__, __LINE__);
    VBU_FREE(ids, __FILE__, __LINE__);
}
