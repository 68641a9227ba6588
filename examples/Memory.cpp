// Tracked allocation: texts and growing arrays that know who asked for them.
#include <TuvoUtil/Memory.h>

#include <cstdio>

namespace {

// Collects the multiples of 7 below a limit; gives their number. The caller frees the array.
int MultiplesOfSeven(int limit, void**& numbers)
{
    int count = 0;
    for (int i = 7; i < limit; i += 7) {
        void* number = reinterpret_cast<void*>(static_cast<std::size_t>(i));
        VBuBlockAllocAndAppend(&count, &numbers, sizeof(void*), 1, &number, 8, __FILE__, __LINE__);
        if (numbers == nullptr)
            return 0;  // memory is exhausted
    }
    return count;
}

}  // namespace

int main()
{
    char* name = VBuStrDup("bolt M12", __FILE__, __LINE__);
    std::printf("%s\n", name);
    VBU_FREE(name, __FILE__, __LINE__);
    std::printf("after VBU_FREE the pointer is %s\n", name == nullptr ? "null" : "dangling");

    // An array that is made to exact size with each append.
    int count = 0;
    void* loads = nullptr;
    const double first[] = {100.0, 250.0};
    const double second[] = {-75.5};
    VBuAllocAndCopy(count, loads, sizeof(double), 2, first, __FILE__, __LINE__);
    VBuAllocAndCopy(count, loads, sizeof(double), 1, second, __FILE__, __LINE__);
    for (int i = 0; i < count; ++i)
        std::printf("load %d: %g\n", i, static_cast<const double*>(loads)[i]);
    VBU_FREE(loads, __FILE__, __LINE__);

    // An array of pointers that keeps room for more.
    void** numbers = nullptr;
    const int found = MultiplesOfSeven(100, numbers);
    std::printf("%d multiples of 7 below 100, the last is %zu\n", found,
                reinterpret_cast<std::size_t>(numbers[found - 1]));
    VBU_FREE(numbers, __FILE__, __LINE__);

    std::printf("memory mode %d, leak checker %s\n", VMemoryGetMode(), MovraIsMemCheckActive() != 0 ? "on" : "off");
}
