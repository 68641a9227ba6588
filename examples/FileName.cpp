// A path of a deck, cut into the pieces that a title bar, a log and a new file beside it need.
#include <TuvoUtil/FileName.h>
#include <TuvoUtil/Memory.h>

#include <cstdio>

namespace {

// Prints a text that the caller of a function owns, and frees it.
void Show(const char* what, char* text)
{
    std::printf("%-20s %s\n", what, text != nullptr ? text : "-");
    VBuFree(text, __FILE__, __LINE__);
}

}  // namespace

int main()
{
    const char path[] = "/models/wing.old/spar.inp";
    Show("name", UtlGetFileNameGivenFullPath(path));
    Show("name with folder", UtlGetFileNameWithParentDir(path));
    Show("folder", UtlGetParentDir(path));
    Show("extension", UtlMiscGetFileExtension(path));
    Show("no extension", UtlMiscGetFileExtension("spar"));

    char converted[] = "/models/wing.old/spar.inp";
    UtlConvertFileSepToTarget(converted);
    Show("directory", UtlGetDirectoryPathFromFileName(converted));

    char name[1024];
    UtlGetBaseFileNameFromFullPath("/models/wing.old/../spar.inp", name);
    std::printf("%-20s %s\n", "last name", name);
    std::printf("%-20s %d %d\n", "file or directory", UtlIsFileOrDir("."), UtlIsFileOrDir("./no such file"));
}
