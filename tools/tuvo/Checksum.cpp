// tuvo checksum: the checksums of files, and whether files still have those of a list.
#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/TextFile.h"
#include "tools/tuvo/WorkProgress.h"

#include <TuvoUtil/Checksum.h>
#include <TuvoUtil/TrackedFile.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tool {
namespace {

struct Options
{
    std::vector<std::string> files;
    std::string list;
    bool isFinal = false;
    bool showsProgress = false;
};

constexpr char Examples[] =
    "Examples:\n"
    "  tuvo checksum model.bin\n"
    "  tuvo checksum --final model.bin results.bin > list.txt\n"
    "  tuvo checksum --final --check list.txt\n"
    "  tuvo checksum - < model.bin\n"
    "\n"
    "A checksum is the CRC-32 of the bytes as the library stores it, without its final inversion; --final shows the\n"
    "usual CRC-32 of other programs. A list has a checksum and a name on each line, as this command writes them. The\n"
    "exit code is 1 when a file cannot be read, with --check also when one has another checksum or the list is no\n"
    "list.";

// ---- Reading -------------------------------------------------------------------------------------------------------

struct StreamCloser
{
    void operator()(std::FILE* stream) const
    {
        if (stream != stdin)
            TuvoFClose(stream, "tuvo", __LINE__);
    }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

Stream Open(const std::string& path)
{
    Stream stream(path == "-" ? stdin : TuvoFOpen(path.c_str(), "rb", "tuvo", __LINE__));
    if (stream == nullptr)
        FailToRead(path);
    platform::SetBinary(stream.get());
    return stream;
}

// Hands the bytes of a file to take(bytes, size), piece by piece.
template <typename Take>
void ReadPieces(const std::string& path, Take take)
{
    const Stream stream = Open(path);
    std::vector<char> piece(std::size_t{1} << 20);
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), stream.get()))
        take(piece.data(), size);
    if (std::ferror(stream.get()) != 0)
        FailToRead(path);
}

constexpr double Mebibyte = 1 << 20;

// In bytes; 0 when it is not known.
double SizeOf(const std::string& path)
{
    platform::FileStatus status;
    const bool isKnown = path != "-" && platform::Status(platform::Widen(path).c_str(), status);
    return isKnown && status.kind == platform::FileKind::Regular ? static_cast<double>(status.size) : 0.0;
}

unsigned int ChecksumOf(const std::string& path, const Options& options)
{
    VChecksum checksum;
    WorkProgress progress("MiB", SizeOf(path) / Mebibyte,
                          options.showsProgress ? WorkProgress::Always : WorkProgress::OnTerminal);
    ReadPieces(path, [&](const char* bytes, std::size_t size) {
        checksum.Compute(size, bytes);
        progress.Advance(static_cast<double>(size) / Mebibyte);
    });
    return options.isFinal ? ~checksum.GetChecksum() : checksum.GetChecksum();
}

// Nothing, after a message, when the file cannot be read.
std::optional<unsigned int> TryChecksumOf(const std::string& path, const Options& options)
{
    try {
        return ChecksumOf(path, options);
    } catch (const Failure& failure) {
        PostError(failure.what());
        return std::nullopt;
    }
}

// ---- Lists ---------------------------------------------------------------------------------------------------------

constexpr std::size_t Digits = 8;

std::string Text(unsigned int checksum)
{
    char digits[Digits + 1];
    std::snprintf(digits, sizeof digits, "%08x", checksum);
    return digits;
}

struct Entry
{
    unsigned int checksum = 0;
    std::string path;
};

// A line of a list: eight digits, a blank, a second one or a '*' as other programs write it, and the name.
bool ReadEntry(std::string_view line, Entry& entry)
{
    const char* const end = line.data() + std::min(line.size(), Digits);
    const auto result = std::from_chars(line.data(), end, entry.checksum, 16);
    if (line.size() < Digits || result.ptr != end ||
        (line.size() > Digits && line[Digits] != ' ' && line[Digits] != '\t'))
        return false;
    line.remove_prefix(std::min(line.size(), Digits + 1));
    if (!line.empty() && (line.front() == ' ' || line.front() == '*'))
        line.remove_prefix(1);
    entry.path = line;
    return !line.empty();
}

std::vector<Entry> ReadList(const std::string& path)
{
    std::vector<Entry> entries;
    std::istringstream lines(ReadText(path));
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && !ReadEntry(line, entries.emplace_back()))
            throw Failure(SourceName(path) + ":" + std::to_string(number) +
                          ": a line of a list is a checksum of 8 digits, a blank and a name, not " + Quoted(line));
    }
    if (entries.empty())
        throw Failure("there is no checksum in " + SourceName(path));
    return entries;
}

// ---- The command ---------------------------------------------------------------------------------------------------

ExitCode Show(const Options& options)
{
    ExitCode code = Done;
    for (const std::string& path : options.files) {
        const std::optional<unsigned int> checksum = TryChecksumOf(path, options);
        if (checksum)
            std::cout << Text(*checksum) + "  " + Printable(path) + '\n';
        else
            code = WorkFailed;
    }
    return code;
}

ExitCode Check(const Options& options)
{
    const std::vector<Entry> entries = ReadList(options.list);
    std::size_t good = 0, inverted = 0;
    for (const Entry& entry : entries) {
        const std::optional<unsigned int> checksum = TryChecksumOf(entry.path, options);
        const bool isGood = checksum == entry.checksum;
        good += isGood ? 1 : 0;
        inverted += checksum == ~entry.checksum ? 1 : 0;
        if (checksum)
            std::cout << Printable(entry.path) + (isGood ? ": OK\n" : ": DIFFERS, now " + Text(*checksum) + '\n');
    }
    if (good == entries.size())
        return Done;
    PostError(std::to_string(entries.size() - good) + " of " + std::to_string(entries.size()) +
              " files do not have the checksum of the list" +
              (inverted == 0     ? ""
               : options.isFinal ? "; was it made without --final?"
                                 : "; was it made with --final?"));
    return WorkFailed;
}

ExitCode Run(const Options& options)
{
    if (options.list.empty() && options.files.empty())
        throw Failure("FILE is required", WrongUsage);
    if (!options.list.empty() && !options.files.empty())
        throw Failure("--check takes the files from its list, and no others", WrongUsage);
    return options.list.empty() ? Show(options) : Check(options);
}

}  // namespace

Command AddChecksum(CLI::App& tuvo)
{
    CLI::App& command = *tuvo.add_subcommand("checksum", "Show the CRC-32 of files, or check a list of them");
    const auto options = std::make_shared<Options>();
    command.add_option("FILE", options->files, "The files; - reads standard input")->check(NotEmpty())->type_name("");
    command.add_flag("--final", options->isFinal, "Invert checksums at the end, as the usual CRC-32 is");
    command
        .add_option("--check", options->list, "Compare the files of a list with its checksums; - for standard input")
        ->check(NotEmpty())
        ->type_name("LIST");
    command.add_flag("--progress", options->showsProgress, "Show how far each file is, on standard error");
    command.footer(Examples);
    return {&command, [options] { return Run(*options); }};
}

}  // namespace tool
