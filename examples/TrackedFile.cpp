// Writes a deck and reads it again. Each call says where it stands, so that leak checking can name the line that opened
// a file which was never closed.
#include <TuvoUtil/Environment.h>
#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuFileUtl.h>

#include <string>

namespace {

bool WriteDeck(const char* path)
{
    std::FILE* const deck = TuvoFOpen(path, "w", __FILE__, __LINE__);
    if (deck == nullptr)
        return false;
    std::fputs("GRID,1,0.0,0.0,0.0\nGRID,2,1.0,0.0,0.0\n", deck);
    const bool isWritten = std::fflush(deck) == 0;  // closing a tracked file does not tell
    TuvoFClose(deck, __FILE__, __LINE__);
    return isWritten;
}

int CountLines(const char* path)
{
    std::FILE* const deck = TuvoFOpen(path, "r", __FILE__, __LINE__);
    if (deck == nullptr)
        return -1;
    int count = 0;
    for (int c = std::fgetc(deck); c != EOF; c = std::fgetc(deck))
        count += c == '\n';
    TuvoFClose(deck, __FILE__, __LINE__);
    return count;
}

}  // namespace

int main()
{
    BuString name;
    VEnvGetTempFileName(L".", L"deck", 0x2f, name);
    const std::string path = name.ToNarrow();

    std::printf("exists: %d\n", TuvoAccess(path.c_str(), 0, __FILE__, __LINE__));
    std::printf("written: %d\n", WriteDeck(path.c_str()));
    std::printf("readable and writable: %d\n", TuvoAccess(path.c_str(), 6, __FILE__, __LINE__));
    std::printf("lines: %d\n", CountLines(path.c_str()));
    BuFileUtl::RemoveAFile(name);
    std::printf("lines without a file: %d\n", CountLines(path.c_str()));
    std::printf("status of a command: %d\n", TuvoSystem("exit 3", __FILE__, __LINE__));
}
