// tuvo ids: what a list of ids means that somebody typed.
#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/IdListProblem.h"

#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace tool {
namespace {

struct Options
{
    std::string text;
    std::string separator;
    std::string range;
    int step = 0;  // 0: none
    bool keepDuplicates = false;
    bool lenient = false;
    bool wildcard = false;
    bool compact = false;
    bool count = false;

    char Separator() const { return separator.empty() ? ',' : separator.front(); }
    char Range() const { return range.empty() ? ':' : range.front(); }
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo ids \"5 3-1,3:4\"                          5 1 2 3 4\n"
    "  tuvo ids \"5 3-1,3:4\" --keep-duplicates        5 1 2 3 3 4\n"
    "  tuvo ids \"12 10-15 30\" --compact              12,10-11,13-15,30\n"
    "  tuvo ids \"1;3..5\" --lenient --separator \";\" --range .\n"
    "  tuvo ids \"1:10\" --step 3                      1 4 7\n"
    "  tuvo ids \"20?\" --wildcard --count             10\n"
    "  tuvo ids - --compact < ids.txt\n"
    "\n"
    "Items are divided by commas and blanks, in standard input by line ends as well; \"-\" and \":\" make a range. Ids "
    "below\n"
    "1 are left out, and so are those that came before. --lenient takes every text: items are divided by one "
    "character\n"
    "alone, what is no number is 0, and all ids are kept.";

struct FreeTracked
{
    void operator()(void* block) const { VBuFree(block, "tuvo", __LINE__); }
};
using Text = std::unique_ptr<char, FreeTracked>;

// Ids that the library made.
struct Ids
{
    std::unique_ptr<int[], FreeTracked> ids;
    int count = 0;
};

template <typename Read>
Ids Take(Read read)
{
    int* ids = nullptr;
    const int count = read(&ids);
    return {std::unique_ptr<int[], FreeTracked>(ids), count};
}

[[noreturn]] void FailForMemory()
{
    throw Failure("memory is exhausted");
}

Ids ReadStrict(const std::string& text, bool keepDuplicates)
{
    // Line ends divide items here, as blanks do.
    std::string line = text;
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    Ids ids = Take([&](int** list) { return UtlGenerateIdListFromString(line.c_str(), list, keepDuplicates); });
    if (ids.count >= 0)
        return ids;
    const std::string problem = IdListProblem(text);
    if (problem.empty())
        FailForMemory();
    throw Failure(problem);
}

Ids ReadLenient(const std::string& text, const Options& options)
{
    const char separator[] = {options.Separator(), '\0'};
    const char range[] = {options.Range(), '\0'};
    Ids ids = Take([&](int** list) { return UtlGetIdListFromGivenSet(text.c_str(), list, separator, range); });
    if (ids.count == 0 && !text.empty())
        FailForMemory();
    return ids;
}

Ids ReadSteps(const std::string& text, const Options& options)
{
    std::string list = text + options.Separator() + std::to_string(options.step);
    Ids ids = Take(
        [&](int** steps) { return UtlGetIncrementalIdList(list.data(), steps, options.Range(), options.Separator()); });
    // None is right for a list that is shorter than the step.
    if (ids.count == 0 && ReadLenient(text, options).count >= options.step)
        FailForMemory();
    return ids;
}

Ids ReadWildcard(const std::string& text)
{
    if (text.find('?') == text.npos)
        throw Failure("the pattern " + Quoted(text) + " has no \"?\"");
    std::string pattern = text;
    Ids ids = Take([&](int** list) { return UtlGetIdListFromWildCard(pattern.data(), list, '?'); });
    if (ids.count == 0)
        FailForMemory();
    return ids;
}

Ids Read(const std::string& text, const Options& options)
{
    if (options.wildcard)
        return ReadWildcard(text);
    if (options.step > 0)
        return ReadSteps(text, options);
    return options.lenient ? ReadLenient(text, options) : ReadStrict(text, options.keepDuplicates);
}

void Print(const Ids& ids, const Options& options)
{
    if (options.count) {
        std::cout << ids.count << '\n';
        return;
    }
    char blank[] = " ";
    const Text text(options.compact ? UtlStrGenerateIdStringSafe(ids.ids.get(), ids.count, nullptr)
                                    : UtlGenerateStringFromIdList(ids.ids.get(), ids.count, blank));
    if (text == nullptr && ids.count > 0)
        FailForMemory();
    std::cout << (text != nullptr ? text.get() : "") << '\n';
}

// All of standard input, without the end of its last line.
std::string ReadInput()
{
    std::string text((std::istreambuf_iterator<char>(std::cin)), std::istreambuf_iterator<char>());
    if (std::cin.bad())
        throw Failure("cannot read standard input");
    for (const char end : {'\n', '\r'})
        if (!text.empty() && text.back() == end)
            text.pop_back();
    return text;
}

void CheckOptions(const Options& options)
{
    const bool takesSeparators = options.lenient || options.step > 0;
    for (const auto& [name, value] :
         {std::pair("--separator", &options.separator), std::pair("--range", &options.range)}) {
        if (!value->empty() && !takesSeparators)
            throw Failure(std::string(name) + " goes with --lenient or --step", WrongUsage);
        if (value->size() > 1)
            throw Failure(std::string(name) + " is one character, not " + Quoted(*value), WrongUsage);
    }
    if (options.wildcard && takesSeparators)
        throw Failure("--wildcard goes neither with --lenient nor with --step", WrongUsage);
    if (options.keepDuplicates && (takesSeparators || options.wildcard))
        throw Failure("--lenient, --step and --wildcard keep duplicates without --keep-duplicates", WrongUsage);
    if (options.compact && options.count)
        throw Failure("--compact and --count exclude each other", WrongUsage);
}

ExitCode Run(const Options& options)
{
    CheckOptions(options);
    Print(Read(options.text == "-" ? ReadInput() : options.text, options), options);
    return Done;
}

}  // namespace

Command AddIds(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("ids", "Read lists of ids such as \"1,5,10-20\"");
    const auto options = std::make_shared<Options>();
    command.add_option("TEXT", options->text, "The list; - reads it from standard input")->required()->type_name("");
    command.add_flag("--keep-duplicates", options->keepDuplicates, "Keep ids that came before");
    command.add_flag("--lenient", options->lenient, "Take every text, and keep all ids");
    command
        .add_option("--separator", options->separator, "What divides the items of a lenient list; a comma otherwise")
        ->type_name("C");
    command.add_option("--range", options->range, "What makes a range in a lenient list; a colon otherwise")
        ->type_name("C");
    command.add_option("--step", options->step, "Take every N-th id of a lenient list, whole steps only")
        ->check(CLI::Range(1, INT_MAX).description(""))
        ->type_name("N");
    command.add_flag("--wildcard", options->wildcard,
                     "TEXT is a pattern: the ids from the one with 0 to the one with 9 for each ?");
    command.add_flag("--compact", options->compact, "Show runs of ids as ranges");
    command.add_flag("--count", options->count, "Show only how many ids there are");
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
