// A host offers a check of its installation; a component runs it without knowing the host.
#include <TuvoUtil/IntegrityCheck.h>
#include <basutl/BuString.h>

#include <cstdio>

namespace {

BuString g_lastFile;

int CheckInstallation()
{
    return g_lastFile.Find(L"broken") < 0 ? 0 : 7;
}

void KeepLastFile(const wchar_t* path)
{
    g_lastFile = path;
}

void Load(const wchar_t* path)  // of the component
{
    TuvoCISetLastFilePath(path);
    std::printf("%s: %d\n", BuString(path).ToNarrow().c_str(), TuvoCICheckIntegrity());
}

}  // namespace

int main()
{
    Load(L"early.inp");
    TuvoCIRegisterCheckCIFunc(CheckInstallation);
    TuvoCIRegisterSetFilePathFunc(KeepLastFile);
    Load(L"bracket.inp");
    Load(L"broken.inp");
}
