// tuvo info: what the library found on this machine and how it is set up.
#include "platform/Platform.h"
#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Table.h"

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/SystemInfo.h>
#include <basutl/BuString.h>
#include <basutl/BuVariable.h>

#include <iostream>
#include <memory>
#include <vector>

namespace tool {
namespace {

// The variables that the library, its parts and this program read.
constexpr const char* Switches[] = {
    "BU_LOG_LEVEL",
    "DISABLE_VX_HEAP",
    "MOVRA_MEM_DEBUG",
    "NO_COLOR",
    "QD_DVPWARNING_ENABLE",
    "QD_DVP_DEBUG_VERSION",
    "QD_BENCH_LEVEL",
    "QD_BENCH_THRESHOLD_SEC",
    "QD_ENABLE_DLL_UNLOAD_WARNING",
    "QD_TEMP_PATH",
    "TEMP",
    "TMP",
    "TMPDIR",
    "TUVO_CATALOGUE",
};

std::string Counted(int count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string ProcessorText()
{
    std::string usable = std::to_string(platform::UsableProcessors()) + " usable";
    const int cores = TuvoGetSystemPhysicalCores();
    if (cores == 0)
        return usable;
    return usable + " of " + Counted(TuvoGetSystemLogicalCores(), "logical processor") + ", " + Counted(cores, "core") +
           ", " + Counted(TuvoGetSystemCPUCount() - 1, "package");  // that count starts at 1
}

std::string BlockHeapText()
{
    if (IsVxHeapEnabled())
        return "on";
    for (const char* const name : {"DISABLE_VX_HEAP", "QD_DVP_DEBUG_VERSION"})
        if (BuVariableGetBoolean(name, false))
            return std::string("off, switched off by ") + name;
    return "off, there was no memory for it";
}

std::string MemoryModeText()
{
    return std::to_string(VMemoryGetMode()) +
           (MovraIsMemCheckActive() != 0 ? ", leak checking on" : ", leak checking off");
}

std::string TextOr(const BuString& text, const char* otherwise)
{
    return text.IsEmpty() ? otherwise : platform::Narrow(text.GetText());
}

std::string LibraryFile()
{
    const std::wstring file = platform::ModuleFile(reinterpret_cast<const void*>(&TuvoGetAppDirectory));
    const std::wstring resolved = platform::CanonicalPath(file.c_str());
    return platform::Narrow(resolved.empty() ? file : resolved);
}

std::string CatalogueText(const std::string& given)
{
    try {
        return ReadCatalogueFile(FindCatalogue(given)).path;
    } catch (const Failure& failure) {
        return failure.what();
    }
}

ExitCode Run(const std::string& catalogue)
{
    BuString temporary;
    VEnvGetTempPath(temporary);
    Table table({{""}, {""}});
    table.AddRow({"Program", "tuvo " TUVO_VERSION});
    table.AddRow({"Library", TuvoUtil_get_module_info(2)});
    table.AddRow({"Library file", LibraryFile()});
    table.AddRow({"Built for", TUVO_BUILT_FOR});
    table.AddRow({"Processors", ProcessorText()});
    table.AddRow({"Block heap", BlockHeapText()});
    table.AddRow({"Memory mode", MemoryModeText()});
    table.AddRow({"Library folder", TextOr(TuvoGetAppDirectory(), "unknown")});
    table.AddRow({"Temporary folder", TextOr(temporary, "unknown")});
    table.AddRow({"User folder", TextOr(VEnvGetUserDirectory(), "not set")});
    table.AddRow({"Unit catalogue", CatalogueText(catalogue)});
    table.AddRow({"Log", LogLevel() < 0 ? "off" : "from level " + std::to_string(LogLevel()) + " on"});

    std::string title = "Environment";
    for (const char* const name : Switches)
        if (const auto value = platform::EnvironmentValue(platform::Widen(name).c_str())) {
            table.AddRow({title, std::string(name) + '=' + platform::Narrow(*value)});
            title.clear();
        }
    std::cout << table.Text();
    return Done;
}

}  // namespace

Command AddInfo(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("info", "Show versions, machine, memory set-up and folders");
    const auto catalogue = std::make_shared<std::string>();
    AddCatalogueOption(command, *catalogue);
    command.footer(
        "Examples:\n"
        "  tuvo info\n"
        "  DISABLE_VX_HEAP=1 tuvo info");
    return {&command, [catalogue] { return Run(*catalogue); }};
}

}  // namespace tool
