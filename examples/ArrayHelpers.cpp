// The nodes along a path, kept in an array that a plain structure holds: one more, one in between, one less, one refined.
#include <TuvoUtil/ArrayHelpers.h>

#include <cstdio>
#include <initializer_list>

namespace {

struct Path
{
    int count = 0;
    int* nodes = nullptr;

    void** Variable() { return reinterpret_cast<void**>(&nodes); }
};

void Print(const char* what, const Path& path)
{
    std::printf("%-9s", what);
    for (int i = 0; i < path.count; ++i)
        std::printf(" %d", path.nodes[i]);
    std::printf("\n");
}

void Append(Path& path, int node)
{
    UtlExpandArrayByOne(path.Variable(), &path.count, sizeof node);
    if (path.nodes != nullptr)
        path.nodes[path.count - 1] = node;
}

}  // namespace

int main()
{
    Path path;
    for (const int node : {101, 102, 104})
        Append(path, node);
    Print("appended", path);
    UtlInsertArrayMember(path.Variable(), &path.count, sizeof(int), 2);
    if (path.nodes == nullptr)
        return 1;
    path.nodes[2] = 103;
    Print("inserted", path);
    UtlRemoveArrayMember(path.Variable(), &path.count, sizeof(int), 0);
    Print("removed", path);
    UtlSwapArrayMembers(path.Variable(), 0, 2, sizeof(int));
    Print("swapped", path);
    UtlFreeAndInit(path.Variable());
    std::printf("freed: %s\n", path.nodes == nullptr ? "yes" : "no");
}
