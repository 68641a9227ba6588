// Keeps a copy of a model folder before it is changed, and puts it back.
#include <TuvoUtil/Environment.h>
#include <TuvoUtil/Messages.h>
#include <basutl/BuFileUtl.h>

#include <cstdio>

namespace {

class ConsoleHost : public TuvoEnvUpdater
{
public:
    void WriteConsoleMessage(_TuvoMessageType, const wchar_t* text, bool) override
    {
        std::printf("%s\n", BuString(text).ToNarrow().c_str());
    }
};

bool Exists(const BuString& path)
{
    return BuFileUtl(path).FileIsExisting();
}

}  // namespace

int main()
{
    ConsoleHost host;
    TuvoEnvUpdater::SetUpdater(&host);

    BuString work;  // a name that nobody has; here it becomes a folder
    VEnvGetTempFileName(L".", L"model", 0, work);
    const BuString model = work + L"/model";
    const BuString backup = work + L"/backup";
    const BuString part = model + L"/parts/bracket.inp";
    BuFileUtl(model + L"/parts").CreateDir();
    BuFileUtl::GetFreeFileName(part, true);

    std::printf("copied: %d\n", VEnvCopyFileOrFolder(model, backup, true, true, TUVO_COPY_FILES));
    BuFileUtl::RemoveAFile(part);
    std::printf("put back: %d, ", VEnvCopyFileOrFolder(backup, model, true, true, TUVO_MOVE_FILES));
    std::printf("there: %d, backup: %d\n", Exists(part), BuFileUtl(backup).DirectoryIsExisting());

    VEnvCopyFileOrFolder(backup, model, true, true, TUVO_COPY_FILES);
    VEnvCopyFileOrFolder(part, part, true, true, TUVO_COPY_FILES);

    BuFileUtl::RemoveAFile(part);
    for (const BuString& folder : {model + L"/parts", model, work})
        BuFileUtl::RemoveADirectory(folder);
    TuvoEnvUpdater::SetUpdater(nullptr);
}
