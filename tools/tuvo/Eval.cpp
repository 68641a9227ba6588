// tuvo eval: the value of an expression that somebody typed.
#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Expression.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/WorkProgress.h"

#include <TuvoUtil/TrackedFile.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tool {
namespace {

struct Options
{
    std::vector<std::string> arguments;  // the expression, unless there is a file, and the variables
    std::string file;
    int digits = DefaultDigits;
    bool showsProgress = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo eval \"1 + 2*3\"                          7\n"
    "  tuvo eval \"2*(<width> + 1.5)\" width=4        11\n"
    "  tuvo eval \"<area>/2\" a=3 \"area=<a>*<a>\"      4.5\n"
    "  tuvo eval --file formulas.txt width=4\n"
    "  tuvo eval - < formulas.txt > values.txt\n"
    "\n"
    "Numbers, + - * /, parentheses and variables in angle brackets; \"2(3)\" is a product too. The value of a\n"
    "variable may be an expression of those before it. Each line of a file gives one line of the output, an empty\n"
    "one where there is no value. \"--\" goes in front of an expression that begins with two minus signs, or with a\n"
    "minus and a letter.";

std::string Text(double value, int digits)
{
    return std::isnan(value) ? "nan" : NumberText(value, digits);  // never "-nan"
}

void Define(Variables& variables, const std::string& argument)
{
    const std::size_t sign = argument.find('=');
    if (sign == argument.npos)
        throw Failure(Quoted(argument) + " is not of the form name=value", WrongUsage);
    double value = 0.0;
    const std::string name = argument.substr(0, sign);
    const std::string problem =
        EvaluateExpression(std::string(Trimmed(std::string_view(argument).substr(sign + 1))), variables, value);
    if (!problem.empty())
        throw Failure("the value of " + Quoted(name) + ": " + problem);
    variables[name] = value;
}

// Evaluates the lines of a file and says on standard error which ones it could not evaluate.
class LineEvaluator
{
public:
    LineEvaluator(const Variables& variables, int digits) : m_variables(variables), m_digits(digits) {}

    // The value of the next line as text; empty when there is none.
    std::string Next(const std::string& line)
    {
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        const bool isMarked = ++m_lines == 1 && line.rfind(byteOrderMark, 0) == 0;
        const std::string expression(Trimmed(std::string_view(line).substr(isMarked ? byteOrderMark.size() : 0)));
        double value = 0.0;
        const std::string problem = expression.empty() ? "" : EvaluateExpression(expression, m_variables, value);
        if (problem.empty())
            return expression.empty() ? "" : Text(value, m_digits);
        if (++m_failures <= MostMessages)
            PostError("line " + std::to_string(m_lines) + ": " + problem);
        return {};
    }

    ExitCode Finish() const
    {
        if (m_failures == 0)
            return Done;
        PostError(std::to_string(m_failures) + " of " + std::to_string(m_lines) + " lines could not be evaluated" +
                  (m_failures > MostMessages ? "; only the first are listed" : ""));
        return WorkFailed;
    }

private:
    static constexpr int MostMessages = 20;

    const Variables& m_variables;
    int m_digits;
    long long m_lines = 0;
    long long m_failures = 0;
};

// Evaluates `lineCount` lines, 0 when nobody knows how many there are.
ExitCode EvaluateLines(std::istream& input, const Variables& variables, const Options& options, std::size_t lineCount)
{
    LineEvaluator evaluator(variables, options.digits);
    WorkProgress progress("lines", static_cast<double>(lineCount),
                          options.showsProgress ? WorkProgress::Always : WorkProgress::OnFreeTerminal);
    std::string line;
    while (std::cout) {
        if (input.rdbuf()->in_avail() <= 0)
            std::cout.flush();  // whoever waits for the results sees those so far
        if (!std::getline(input, line))
            break;
        std::cout << evaluator.Next(line) << '\n';
        progress.Advance();
    }
    if (input.bad())
        throw Failure("cannot read standard input");
    return evaluator.Finish();
}

struct CloseFile
{
    void operator()(std::FILE* file) const { TuvoFClose(file, "tuvo", __LINE__); }
};

std::string ReadFile(const std::string& path)
{
    const std::unique_ptr<std::FILE, CloseFile> file(TuvoFOpen(path.c_str(), "rb", "tuvo", __LINE__));
    std::string text;
    char block[65536];
    while (file != nullptr) {
        const std::size_t count = std::fread(block, 1, sizeof block, file.get());
        text.append(block, count);
        if (count == 0 && std::ferror(file.get()) == 0)
            return text;
        if (count == 0)
            break;
    }
    const int code = platform::LastNativeError();
    throw Failure("cannot read the file " + path + ": " + platform::Narrow(platform::NativeErrorText(code)));
}

ExitCode EvaluateOne(const std::string& argument, const Variables& variables, int digits)
{
    double value = 0.0;
    const std::string problem = EvaluateExpression(std::string(Trimmed(argument)), variables, value);
    if (!problem.empty())
        throw Failure(problem);
    std::cout << Text(value, digits) << '\n';
    return Done;
}

ExitCode Run(const Options& options)
{
    const bool hasFile = !options.file.empty();
    if (!hasFile && options.arguments.empty())
        throw Failure("EXPR is required", WrongUsage);
    Variables variables;
    for (std::size_t i = hasFile ? 0 : 1; i < options.arguments.size(); ++i)
        Define(variables, options.arguments[i]);
    const std::string& source = hasFile ? options.file : options.arguments.front();
    if (source == "-")
        return EvaluateLines(std::cin, variables, options, 0);
    if (!hasFile)
        return EvaluateOne(source, variables, options.digits);
    const std::string text = ReadFile(source);
    std::istringstream lines(text);
    const auto lineEnds = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    const std::size_t lineCount = lineEnds + (text.empty() || text.back() == '\n' ? 0 : 1);
    return EvaluateLines(lines, variables, options, lineCount);
}

}  // namespace

Command AddEval(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("eval", "Evaluate expressions such as \"2*(<width> + 1.5)\"");
    const auto options = std::make_shared<Options>();
    command
        .add_option("EXPR", options->arguments,
                    "The expression, - for those in standard input, and its variables as name=value")
        ->type_name("");
    command.add_option("--file", options->file, "Evaluate the lines of a file in place of EXPR; - for standard input")
        ->check(NotEmpty())
        ->type_name("FILE");
    command.add_option("--digits", options->digits, "Significant digits shown at most, 1 to 17")
        ->check(CLI::Range(1, 17).description(""))
        ->type_name("N")
        ->capture_default_str();
    command.add_flag("--progress", options->showsProgress, "Show how far the lines of a file are, on standard error");
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
