// A mesh file of a machine with the other byte order: a count, a name and the node ids, read value by value and then as
// an array.
#include <TuvoUtil/BinaryRead.h>
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/TrackedFile.h>

#include <cstdio>

namespace {

constexpr char FileName[] = "mesh.bin";

bool WriteMesh()
{
    constexpr unsigned char bytes[] = {0,    0,    0,   3,                                // 3 nodes
                                       0,    4,    'w', 'i', 'n', 'g',                    // a name of 4 characters
                                       0,    0,    0,   7,   0,   0,   1, 0, 0, 1, 0, 0,  // their ids
                                       0x3F, 0x80, 0,   0};  // a scale, in single precision
    std::FILE* const file = TuvoFOpen(FileName, "wb", __FILE__, __LINE__);
    if (file == nullptr)
        return false;
    const bool isWritten = std::fwrite(bytes, sizeof bytes, 1, file) == 1 && std::fflush(file) == 0;
    TuvoFClose(file, __FILE__, __LINE__);
    return isWritten;
}

}  // namespace

int main()
{
    std::FILE* const file = WriteMesh() ? TuvoFOpen(FileName, "rb", __FILE__, __LINE__) : nullptr;
    if (file == nullptr)
        return 1;
    const int count = UtlRead4byteInt(file, 1);
    char* name = UtlReadVariableString(file, 1);
    int ids[3] = {};
    const bool isWhole = count == 3 && std::fread(ids, sizeof ids, 1, file) == 1;
    UtlConvert4byteInt(ids, 3);
    const float scale = UtlRead4byteFloat(file, 1);
    std::printf("%s: %d nodes, %d %d %d, scale %g\n", name, count, ids[0], ids[1], ids[2], static_cast<double>(scale));
    std::printf("whole: %d\n", isWhole);
    std::printf("behind the end: %d\n", UtlRead2byteInt(file, 1));
    VBU_FREE(name, __FILE__, __LINE__);
    TuvoFClose(file, __FILE__, __LINE__);
    std::remove(FileName);
}
