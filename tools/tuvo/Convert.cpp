// tuvo convert: values of one quantity from one unit system to another.
#include "platform/Platform.h"
#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Conversion.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/UnitSystems.h"
#include "tools/tuvo/WorkProgress.h"

#include <TuvoUtil/Units.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <vector>

namespace tool {
namespace {

struct Options
{
    std::vector<std::string> values;
    std::string type;
    std::string toType;
    std::string from;
    std::string to;
    std::string catalogue;
    int digits = DefaultDigits;
    bool factor = false;
    bool plain = false;
    bool equation = false;

    bool ReadsInput() const { return values.empty() ? !factor : values.front() == "-"; }
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo convert 210000 --type Pressure --from mm,ton,sec,kelvin --to in,lbf,sec,fahrenheit\n"
    "  tuvo convert 20 100 --type Temperature --from m,kg,sec,centigrade --to m,kg,sec,fahrenheit\n"
    "  tuvo convert --factor --type Density --from mm,n,sec --to m,kg,sec\n"
    "  tuvo convert --type Force --from in,lbf,sec --to m,kg,sec < forces.txt > newtons.txt\n"
    "\n"
    "A unit system is the name of one (see tuvo units --systems), its id, or a list of its units in the order\n"
    "length, mass, time, heat. A list may hold a force (n, kn, dyn, kgf, ozf, lbf, kip, pdl) in place of the mass;\n"
    "without the fourth unit temperatures are in kelvin.\n"
    "\n"
    "From standard input values are read one a line. Each line of the input gives one line of the output, an empty\n"
    "one where there is nothing to convert.";

// Converts texts one after the other and says on standard error which ones it could not convert.
class Converter
{
public:
    Converter(const Conversion& conversion, const Options& options) : m_conversion(conversion), m_options(options) {}

    // Sets `line` to the result of one value, as a number or as an equation; to nothing when the value is bad. `place`
    // and `number` say where it stands.
    void Convert(std::string_view text, bool asEquation, const char* place, long long number, std::string& line)
    {
        line.clear();
        double result = 0.0;
        if (const std::string problem = Problem(text, result); !problem.empty()) {
            if (++m_failures <= MostMessages)
                PostError(place + (' ' + std::to_string(number)) + ": " + problem);
            return;
        }
        if (asEquation)
            line.append(Trimmed(text)).append(Label(m_conversion.SourceUnit())).append(" = ");
        m_conversion.AppendResult(line, result, m_options.digits);
        if (asEquation)
            line.append(Label(m_conversion.TargetUnit()));
    }

    // Says how many were bad in all.
    ExitCode Finish(long long total, const char* places) const
    {
        if (m_failures == 0)
            return Done;
        if (total > 1)
            PostError(std::to_string(m_failures) + " of " + std::to_string(total) + ' ' + places +
                      " could not be converted" + (m_failures > MostMessages ? "; only the first are listed" : ""));
        return WorkFailed;
    }

private:
    static constexpr int MostMessages = 20;

    static std::string Label(const std::string& unit) { return unit.empty() ? unit : ' ' + unit; }

    std::string Problem(std::string_view text, double& result) const
    {
        double value = 0.0;
        std::string problem = ReadNumber(text, value);
        if (!problem.empty())
            return problem;
        result = m_conversion.Convert(value);
        return std::isfinite(result) ? problem : Quoted(text) + " has no finite result";
    }

    const Conversion& m_conversion;
    const Options& m_options;
    long long m_failures = 0;
};

// Puts the equal signs of all equations below each other.
void AlignEquations(std::vector<std::string>& lines)
{
    std::size_t widest = 0;
    for (const std::string& line : lines)
        if (!line.empty())
            widest = std::max(widest, line.find('='));
    for (std::string& line : lines)
        if (!line.empty())
            line.insert(0, widest - line.find('='), ' ');
}

ExitCode ConvertArguments(const Conversion& conversion, const Options& options)
{
    Converter converter(conversion, options);
    std::vector<std::string> lines(options.values.size());
    for (std::size_t i = 0; i < lines.size(); ++i)
        converter.Convert(options.values[i], !options.plain, "value", static_cast<long long>(i) + 1, lines[i]);
    if (!options.plain)
        AlignEquations(lines);
    for (const std::string& line : lines)
        if (options.plain || !line.empty())
            std::cout << line << '\n';
    return converter.Finish(static_cast<long long>(lines.size()), "values");
}

// Reads the next line of the input. Whoever waits for the results sees those so far before there is a wait for more.
bool GetLine(std::string& line)
{
    if (std::cin.rdbuf()->in_avail() <= 0)
        std::cout.flush();
    return static_cast<bool>(std::getline(std::cin, line));
}

ExitCode ConvertLines(const Conversion& conversion, const Options& options)
{
    constexpr char ByteOrderMark[] = "\xEF\xBB\xBF";
    Converter converter(conversion, options);
    WorkProgress progress("lines", 0, WorkProgress::OnFreeTerminal);
    std::string line;
    std::string result;
    long long number = 0;
    while (std::cout && GetLine(line)) {
        if (++number == 1 && line.rfind(ByteOrderMark, 0) == 0)
            line.erase(0, sizeof ByteOrderMark - 1);
        if (Trimmed(line).empty())
            result.clear();
        else
            converter.Convert(line, options.equation, "line", number, result);
        result += '\n';
        std::cout.write(result.data(), static_cast<std::streamsize>(result.size()));
        progress.Advance();
    }
    if (std::cin.bad())
        throw Failure("cannot read standard input");
    return converter.Finish(number, "lines");
}

void PrintFactor(const Conversion& conversion, const Options& options)
{
    const double factor = conversion.Factor();
    const double offset = conversion.Offset();
    if (!std::isfinite(factor) || !std::isfinite(offset))
        throw Failure("the conversion has no finite factor");
    const bool shows = options.plain || offset != 0.0;
    const auto name = [](const std::string& unit) { return unit.empty() ? "value" : unit; };
    std::string line;
    if (!options.plain)
        line = name(conversion.TargetUnit()) + " = " + name(conversion.SourceUnit()) + " * ";
    AppendNumber(line, factor, options.digits);
    if (shows)
        line += options.plain ? " " : (offset < 0 ? " - " : " + ");
    if (shows)
        conversion.AppendResult(line, options.plain ? offset : std::abs(offset), options.digits);
    std::cout << line << '\n';
}

// The system that an option names. Quantities that are the same in all systems need none.
int SystemOf(const CatalogueFile& catalogue, const std::string& text, const char* option, const DataType& type)
{
    if (!text.empty())
        return FindUnitSystem(catalogue, text);
    if (!IsIndependentOfSystem(type))
        throw Failure(std::string(option) + " is required for the data type " + Quoted(type.name), WrongUsage);
    return VUnitUtlGetBaseUnitSystemId();
}

Conversion MakeConversion(const CatalogueFile& catalogue, const Options& options)
{
    const DataType& from = FindDataType(catalogue, options.type);
    const DataType& to = options.toType.empty() ? from : FindDataType(catalogue, options.toType);
    const int fromSystem = SystemOf(catalogue, options.from, "--from", from);
    const int toSystem = SystemOf(catalogue, options.to, "--to", to);
    return Conversion(catalogue, {from, fromSystem}, {to, toSystem});
}

ExitCode Run(const Options& options)
{
    constexpr int InputStream = 0;
    if (options.values.size() > 1 && std::count(options.values.begin(), options.values.end(), "-") > 0)
        throw Failure("\"-\" stands for standard input and cannot be mixed with values", WrongUsage);
    if (options.plain && options.equation)
        throw Failure("--plain and --equation exclude each other", WrongUsage);
    if (options.values.empty() && options.ReadsInput() && platform::IsTerminal(InputStream))
        throw Failure("there is no value to convert", WrongUsage);

    const CatalogueFile catalogue = LoadCatalogue(options.catalogue);
    const Conversion conversion = MakeConversion(catalogue, options);
    if (options.factor)
        PrintFactor(conversion, options);
    return options.ReadsInput() ? ConvertLines(conversion, options) : ConvertArguments(conversion, options);
}

}  // namespace

Command AddConvert(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("convert", "Convert values between unit systems");
    const auto options = std::make_shared<Options>();
    command.add_option("VALUE", options->values, "Values to convert; - reads them from standard input")->type_name("");
    command.add_option("--type", options->type, "Data type of the values: its name or id")
        ->required()
        ->type_name("TYPE");
    command.add_option("--to-type", options->toType, "Data type of the results when it is another one")
        ->check(NotEmpty())
        ->type_name("TYPE");
    command.add_option("--from", options->from, "Unit system of the values")->type_name("SYSTEM");
    command.add_option("--to", options->to, "Unit system of the results")->type_name("SYSTEM");
    command.add_option("--digits", options->digits, "Significant digits shown at most, 1 to 17")
        ->check(CLI::Range(1, 17).description(""))
        ->type_name("N")
        ->capture_default_str();
    command.add_flag("--factor", options->factor, "Show the factor and the offset of the conversion");
    command.add_flag("--plain", options->plain, "Show numbers only, as for standard input");
    command.add_flag("--equation", options->equation, "Show values, results and units also for standard input");
    AddCatalogueOption(command, options->catalogue);
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
