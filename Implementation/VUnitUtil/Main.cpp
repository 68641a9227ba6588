#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"
#include "VUnit/Catalogue.h"
#include "VUnitUtil/UnitSystems.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>

#include <cstring>

namespace {

// Nobody is told when the file cannot be read: the catalogue is then empty.
void LoadFrom(const char* directory)
{
    constexpr char name[] = "\\unit.xml";  // with this divider on every system
    ScratchBuffer<char, 512> path(modules::VUnitUtil);
    if (path.Append(directory, std::strlen(directory)) && path.Append(name, sizeof name))
        VUnitUtlFillObject(path.Data(), nullptr);
}

}  // namespace

void VUnitUtlMain(const char* directory)
{
    if (catalogue::Exists())
        return;
    catalogue::Get();
    if (directory != nullptr) {
        LoadFrom(directory);
        catalogue::SetDirectory(VBuStrDup(directory, modules::VUnitUtil, __LINE__));
    }
    if (const _UnitSystemStr* const system = units::FindOrAppendSystem({-1, -1, -1, -1}))
        catalogue::SetEmptySystemId(system->id);
}

const char* VUnitUtlGetPath()
{
    return catalogue::Directory();
}
