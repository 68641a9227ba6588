// Gathers the decks of a model from all its folders, keeps a backup of one, and clears the work away.
#include <TuvoUtil/Environment.h>
#include <TuvoUtil/FileSystem.h>
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>
#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuFileUtl.h>

#include <string>

namespace {

void Write(const std::string& path, const char* text)
{
    std::FILE* const file = TuvoFOpen(path.c_str(), "wb", __FILE__, __LINE__);
    std::fputs(text, file);
    TuvoFClose(file, __FILE__, __LINE__);
}

void PrintDecks(const std::string& folder)
{
    char** names = nullptr;
    int count = UtlGetFileNamesRecursively(folder.c_str(), "*.inp", &names);
    for (int i = 0; i < count; ++i) {
        const std::string path = folder + '/' + names[i];
        std::printf("%s: %s\n", BuString(BuFileUtl(path.c_str()).GetFileName()).ToNarrow().c_str(),
                    UtlCheckIsFileTrueBinery(path.c_str()) == 1 ? "binary" : "text");
    }
    UtlFreeStringList(count, names);
}

}  // namespace

int main()
{
    BuString work;
    VEnvGetTempFileName(L".", L"decks", 0, work);
    const std::string folder = work.ToNarrow();
    BuFileUtl(work + L"/parts").CreateDir();
    Write(folder + "/model.inp", "GRID,1,0.0\n");
    Write(folder + "/parts/bolt.inp", "GRID,2,0.5\n");
    Write(folder + "/parts/result.inp", "\x01\x02");

    PrintDecks(folder);
    std::printf("backup: %d\n", UtlBackupFile((folder + "/model.inp").c_str(), nullptr));
    PrintDecks(folder);
    char* const way = UtlGetRelativeDirectoryPath((folder + "/a/../x").c_str(), folder.c_str());
    std::printf("from there to x: %s\n", way);
    VBuFree(way, __FILE__, __LINE__);
    std::printf("removed: %d\n", BuRemoveDirectory(work) == nullptr);
}
