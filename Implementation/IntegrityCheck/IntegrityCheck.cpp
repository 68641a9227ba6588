#include <TuvoUtil/IntegrityCheck.h>

namespace {

using Check = int (*)();
using SetFilePath = void (*)(const wchar_t* path);

constinit Check g_check = nullptr;
constinit SetFilePath g_setFilePath = nullptr;

}  // namespace

void TuvoCIRegisterCheckCIFunc(int (*check)())
{
    g_check = check;
}

void TuvoCIRegisterSetFilePathFunc(void (*setFilePath)(const wchar_t* path))
{
    g_setFilePath = setFilePath;
}

int TuvoCICheckIntegrity()
{
    return g_check == nullptr ? -1 : g_check();
}

void TuvoCISetLastFilePath(const wchar_t* path)
{
    if (g_setFilePath != nullptr)
        g_setFilePath(path);
}
