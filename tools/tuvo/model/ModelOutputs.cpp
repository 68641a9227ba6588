#include "tools/tuvo/model/ModelOutputs.h"

#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/model/BinaryModel.h"
#include "tools/tuvo/model/ReportFile.h"

#include <TuvoUtil/Benchmark.h>

#include <iterator>
#include <utility>

namespace tool {
namespace {

using tuvo::benchmark::BENCH_LEVEL_1;
using tuvo::benchmark::Benchmark;

bool IsSameFile(const std::string& a, const std::string& b)
{
    if (a == b)
        return true;
    platform::FileStatus statusA, statusB;
    return platform::Status(platform::Widen(a).c_str(), statusA) &&
           platform::Status(platform::Widen(b).c_str(), statusB) && statusA.kind == platform::FileKind::Regular &&
           statusA.device == statusB.device && statusA.file == statusB.file;
}

void CheckPaths(const OutputOptions& options, const std::string& deck)
{
    const std::pair<const char*, const std::string*> paths[] = {{"--report", &options.report},
                                                                {"--write", &options.binary},
                                                                {"--html", &options.page},
                                                                {"--leaks", &options.leaks},
                                                                {"the deck", &deck}};
    for (const auto& one : paths)
        for (const auto* other = &one + 1; other < std::end(paths); ++other)
            if (!one.second->empty() && IsSameFile(*one.second, *other->second))
                throw Failure(
                    std::string(one.first) + " and " + other->first + " are the same file, " + Quoted(*one.second),
                    WrongUsage);
}

std::unique_ptr<OutputFile> Open(const std::string& path)
{
    return path.empty() ? nullptr : std::make_unique<OutputFile>(path);
}

}  // namespace

void AddOutputOptions(CLI::App& command, OutputOptions& options)
{
    command.add_option("--report", options.report, "Write the tables as report tables")
        ->check(NotEmpty())
        ->type_name("FILE");
    command.add_option("--write", options.binary, "Write a binary model file")->check(NotEmpty())->type_name("FILE");
    command.add_option("--leaks", options.leaks, "Write a leak report of this run; it is empty when nothing leaked")
        ->check(NotEmpty())
        ->type_name("FILE");
    CLI::Option* const page =
        command.add_option("--html", options.page, "Write a page with the tables and a picture of the model")
            ->check(NotEmpty())
            ->type_name("FILE");
    command.add_flag("--colour-sets", options.coloursSets, "Colour the picture by element set, not by element type")
        ->needs(page);
}

ModelOutputs::ModelOutputs(const OutputOptions& options, const std::string& deck)
    : m_deck(deck), m_coloursSets(options.coloursSets)
{
    CheckPaths(options, deck);
    m_report = Open(options.report);
    m_binary = Open(options.binary);
    m_page = Open(options.page);
}

void ModelOutputs::Write(const Model& model, const std::vector<std::size_t>& sets,
                         const std::vector<SummaryTable>& tables, const ModelUnits& units)
{
    const UnitSystem* const system = units.System();
    if (m_report != nullptr) {
        const Benchmark section(L"write the report", BENCH_LEVEL_1);
        WriteReport(tables, *m_report);
    }
    if (m_binary != nullptr) {
        const Benchmark section(L"write the binary file", BENCH_LEVEL_1);
        WriteBinaryModel(model, system != nullptr ? system->name : "", *m_binary);
    }
    if (m_page != nullptr) {
        const Benchmark section(L"write the page", BENCH_LEVEL_1);
        m_page->Append(ModelPage(model, {m_deck, system != nullptr ? system->Title() : "", tables,
                                         m_coloursSets ? GroupBySet(model, sets) : GroupByType(model)}));
    }
    for (const Output* const output : {&m_report, &m_binary, &m_page})
        if (*output != nullptr)
            (*output)->Keep();
}

}  // namespace tool
