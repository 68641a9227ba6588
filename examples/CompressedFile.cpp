// Finds a model under whatever name it was stored. Unpacking is one call more: UtlGetUnzippedFileName(name).
#include <TuvoUtil/CompressedFile.h>
#include <TuvoUtil/Environment.h>
#include <TuvoUtil/Memory.h>
#include <basutl/BuFileUtl.h>

#include <cstdio>
#include <string>

int main()
{
    BuString model;
    VEnvGetTempFileName(L".", L"model", 0, model);
    const std::string path = model.ToNarrow();
    for (const wchar_t* const suffix : {L"", L".gz", L"zip"}) {
        const BuString stored = BuFileUtl::GetFreeFileName(model + suffix, true);
        char* const name = UtlCheckFileIsCompressed(path.c_str());
        std::printf("stored as model%s: %s\n", BuString(suffix).ToNarrow().c_str(),
                    name == nullptr ? "not compressed" : name + path.size());
        VBuFree(name, __FILE__, __LINE__);
        BuFileUtl::RemoveAFile(stored);
    }
}
