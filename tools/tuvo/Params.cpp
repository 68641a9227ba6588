// tuvo params: the debug parameters of a configuration file, shown and set.
#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"

#include <TuvoUtil/DebugConfig.h>
#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace tool {
namespace {

struct Options
{
    std::string file;
    std::vector<std::string> arguments;  // NAME, or NAME=TEXT
    std::vector<std::string> removed;
    bool dropComments = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo params MovraDebug.config                         all parameters\n"
    "  tuvo params MovraDebug.config TraceLevel              the text of one\n"
    "  tuvo params MovraDebug.config TraceLevel=3 Check=on   sets two, added unless they are there\n"
    "  tuvo params MovraDebug.config --remove TraceLevel\n"
    "\n"
    "A line of the file is \"name : text\". Setting and removing write the file anew, as a whole, with its parameters\n"
    "alone; a file with comments or other lines is left as it is unless --drop-comments is given.";

constexpr char Between[] = " : ";          // a name and its text
constexpr std::size_t LongestLine = 1023;  // what a line of the file may hold; more is read as a second line

[[noreturn]] void FailForMemory()
{
    throw Failure("memory is exhausted");
}

struct CloseFile
{
    void operator()(std::FILE* file) const { TuvoFClose(file, "tuvo", __LINE__); }
};

// The number of lines of a file that hold more than white space, as they are read: a long one is several, and what a NUL
// hides is one more.
int CountLines(const std::string& path)
{
    const std::unique_ptr<std::FILE, CloseFile> file(TuvoFOpen(path.c_str(), "r", "tuvo", __LINE__));
    int lines = 0;
    bool isEmpty = true;
    std::size_t column = 0;
    for (int c = 0; file != nullptr && (c = std::getc(file.get())) != EOF;) {
        isEmpty = isEmpty || c == '\n' || c == '\0' || column == LongestLine;
        column = c == '\n' ? 0 : column % LongestLine + 1;
        if (isEmpty && c != '\0' && !BuIsSpace(c)) {
            isEmpty = false;
            ++lines;
        }
    }
    return lines;
}

// Refuses what would not be the same when the file is read again.
void CheckParameter(const std::string& name, const std::string& text)
{
    if (name.empty() || name.front() == '#' || name.back() == ' ' || name.find_first_of(":\r\n") != name.npos)
        throw Failure(Quoted(name) +
                          " cannot be a name: it is empty, begins with \"#\", ends with a blank, or holds a "
                          "colon or a line end",
                      WrongUsage);
    if (text.empty() || BuIsSpace(text.front()) || text.find_first_of("\r\n") != text.npos)
        throw Failure(Quoted(text) + " cannot be the text of " + Quoted(name) +
                          ": it is empty, begins with white space, or holds a line end",
                      WrongUsage);
}

// The parameters of a file.
class ParameterFile
{
public:
    explicit ParameterFile(const std::string& path) : m_path(path)
    {
        const int result = m_parameters.ReadParamsWithValues(m_module, BuString(path.c_str()), 0, 1);
        const int code = platform::LastNativeError();
        if (result == 1)
            throw Failure("cannot read the file " + path + ": " + platform::Narrow(platform::NativeErrorText(code)));
        if (result != 0)
            throw Failure("cannot read the file " + path + " to its end");
    }

    std::string Text(const std::string& name)
    {
        BuString text;
        const int result = m_parameters.GetCustomConfigInfo(&m_module, BuString(name.c_str()), nullptr, nullptr, &text);
        if (result == 1)
            throw Failure(m_path + " has no parameter " + Quoted(name));
        if (result != 0)
            FailForMemory();
        return text.ToNarrow();
    }

    void Set(const std::string& name, const std::string& text)
    {
        CheckParameter(name, text);
        if (m_parameters.CheckAndAddParamWithValue(&m_module, BuString(name.c_str()), BuString(text.c_str())) < 0)
            FailForMemory();
    }

    void Remove(const std::string& name)
    {
        if (m_parameters.RemoveParameter(&m_module, BuString(name.c_str())) != 0)
            throw Failure(m_path + " has no parameter " + Quoted(name));
    }

    // Each parameter as a line of the file would show it; those without a name, which no file gets, are left out.
    std::vector<std::string> Lines()
    {
        BuTemplateArray<BuString> names;
        BuTemplateArray<BuString> texts;
        if (m_parameters.GetModuleInfo(m_module, names, texts) != 0)
            FailForMemory();
        std::vector<std::string> lines;
        for (int i = 0; i < names.GetCount(); ++i)
            if (!names[i].IsEmpty())
                lines.push_back(names[i].ToNarrow() + Between + texts[i].ToNarrow());
        return lines;
    }

    void Write()
    {
        for (const std::string& line : Lines())
            if (line.size() > LongestLine)
                throw Failure(
                    Quoted(line) + " does not fit into the " + std::to_string(LongestLine) + " bytes of a line",
                    WrongUsage);
        if (m_parameters.WriteInfoToFile(m_module, nullptr) != 0)
            throw Failure("cannot write the file " + m_path + "; it is as it was");
    }

private:
    std::string m_path;
    BuString m_module = L"file";
    UtlParamInfo m_parameters;
};

void CheckComments(const std::string& path, ParameterFile& parameters)
{
    const int others = CountLines(path) - static_cast<int>(parameters.Lines().size());
    if (others > 0)
        throw Failure(path + " has " +
                      (others == 1 ? "a line that is no parameter or is repeated"
                                   : std::to_string(others) + " lines that are no parameters or are repeated") +
                      "; --drop-comments writes it without");
}

ExitCode Run(const Options& options)
{
    ParameterFile parameters(options.file);
    const auto isSetting = [](const std::string& argument) { return argument.find('=') != argument.npos; };
    const bool isChanged =
        !options.removed.empty() || std::any_of(options.arguments.begin(), options.arguments.end(), isSetting);
    if (isChanged && !options.dropComments)
        CheckComments(options.file, parameters);

    std::vector<std::string> lines;
    if (options.arguments.empty() && !isChanged)
        lines = parameters.Lines();
    for (const std::string& name : options.removed)
        parameters.Remove(name);
    for (const std::string& argument : options.arguments) {
        const std::size_t sign = argument.find('=');
        if (sign == argument.npos)
            lines.push_back(parameters.Text(argument));
        else
            parameters.Set(argument.substr(0, sign), argument.substr(sign + 1));
    }
    if (isChanged)
        parameters.Write();
    for (const std::string& line : lines)
        std::cout << Printable(line) << '\n';
    return Done;
}

}  // namespace

Command AddParams(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("params", "Show and set the debug parameters of a configuration file");
    const auto options = std::make_shared<Options>();
    command.add_option("FILE", options->file, "The configuration file")->required()->check(NotEmpty())->type_name("");
    command
        .add_option("NAME", options->arguments,
                    "A parameter whose text is shown, or one to be set, as NAME=TEXT; all are listed without any")
        ->type_name("");
    command.add_option("--remove", options->removed, "Remove a parameter; may be given again")
        ->type_name("NAME")
        ->take_all()
        ->allow_extra_args(false);
    command.add_flag("--drop-comments", options->dropComments, "Write a file that has comments without them");
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
