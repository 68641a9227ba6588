#include <TuvoUtil/ArrayHelpers.h>

#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

// The input is a sequence of operations, each of what to do, where and with what. Law: the array is what a vector of
// pointers becomes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<void*> model;
    void** array = nullptr;
    auto* const variable = reinterpret_cast<void**>(&array);
    int count = 0;
    for (; size >= 3; data += 3, size -= 3) {
        const int index = model.empty() ? 0 : data[1] % static_cast<int>(model.size());
        const auto place = model.begin() + index;
        void* const value = reinterpret_cast<void*>(std::uintptr_t{data[2]});
        const int operation = model.empty() ? 0 : data[0] % 4;
        if (operation == 0) {
            UtlExpandArrayByOne(variable, &count, sizeof value);
            array[count - 1] = value;
            model.push_back(value);
        } else if (operation == 1) {
            UtlInsertArrayMember(variable, &count, sizeof value, index);
            model.insert(place, nullptr);
        } else if (operation == 2) {
            UtlRemoveArrayMember(variable, &count, sizeof value, index);
            model.erase(place);
        } else {
            UtlSwapArrayMembers(variable, index, count - 1, sizeof value);
            std::vector<void*> inserted(data[2] % 7, value);
            UtlReplaceMemberWithArray(&array, &count, sizeof value, index, data[2] % 7, inserted.data());
            std::swap(*place, model.back());
            model.insert(model.erase(place), inserted.begin(), inserted.end());
        }
        if (std::vector<void*>(array, array + count) != model || (array == nullptr) != model.empty())
            std::abort();
    }
    UtlFreeAndInit(variable);
    return 0;
}
