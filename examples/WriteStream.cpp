// A part saved into a file, and the checksum of what was saved without reading it again.
#include <TuvoUtil/WriteStream.h>

#include <cstdio>

namespace {

struct Part
{
    const char* name;
    int material;
    double thickness;
    _TvPoint2Str origin;
};

void Save(const Part& part, IWriteStream& stream)
{
    stream.WriteString(part.name);
    stream.WriteInt(part.material);
    stream.WriteDouble(part.thickness);
    stream.WritePoint2(part.origin);
}

void TellDiskIsFull()
{
    std::printf("the disk is full\n");
}

constexpr char FileName[] = "part.bin";

}  // namespace

int main()
{
    const Part part = {"bracket", 3, 2.5, {100.0, -20.0}};
    IWriteStream* const file = CreateBinaryFileWriter(FileName, 1, TellDiskIsFull, 0);
    if (file == nullptr || !file->IsValid())
        return 1;
    Save(part, *file);
    std::printf("%lld bytes, error %d\n", file->Tell(), VxGetLastBinaryFileError());
    delete file;

    IWriteStreamBasedChecksum* const sum = CreateWriteStreamBasedChecksum();
    if (sum == nullptr)
        return 1;
    Save(part, *sum);
    std::printf("checksum %08X\n", sum->GetChecksum());
    delete sum;
    std::remove(FileName);
}
