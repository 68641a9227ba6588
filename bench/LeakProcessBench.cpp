// Whole runs of a small program under the leak checker, the leak sanitizer and heaptrack.

#include <benchmark/benchmark.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

struct Folder
{
    Folder()
    {
        std::string pattern = (fs::temp_directory_path() / "leaks-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        path = pattern;
    }
    ~Folder() { fs::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    fs::path path;
};

// Runs a program beside this one and gives its exit code.
int Run(const std::string& before, const std::string& program, const std::string& after)
{
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    const std::string command = before + '\'' + (folder / program).string() + "' " + after + " >/dev/null 2>&1";
    return WEXITSTATUS(std::system(command.c_str()));
}

struct Checker
{
    const char* who;
    const char* work;
    std::string before;
    const char* program;
    std::string after;
    int exitCode;
    std::string output;  // of the report; empty for none
};

bool HasReport(const Checker& checker)
{
    std::ifstream stream(checker.output, std::ios::binary);
    return checker.output.empty() || stream.peek() != std::ifstream::traits_type::eof();
}

void Measure(benchmark::State& state, const Checker& checker)
{
    for (auto _ : state)
        if (Run(checker.before, checker.program, checker.after) != checker.exitCode || !HasReport(checker))
            state.SkipWithError("has not run, or found no leak");
}

[[maybe_unused]] const bool g_registered = [] {
    static const Folder folder;
    const std::string report = (folder.path / "report.log").string();
    const std::string trace = (folder.path / "trace").string();
    constexpr int LsanFoundLeaks = 23;
    const Checker checkers[] = {
        {"ours", "plain", "", "leak_workload", report, 0, report},
        {"ours", "with call stacks", "", "leak_workload", report + " stacks", 0, report},
        {"lsan", "", "", "leak_workload_lsan", report, LsanFoundLeaks, ""},
        {"heaptrack", "", "heaptrack -r -o '" + trace + "' ", "leak_workload_malloc", report, 0, ""},
        {"malloc", "plain", "", "leak_workload_malloc", report, 0, ""},
    };
    for (const std::string work : {"plain", "with call stacks"})
        for (const Checker& checker : checkers)
            if (*checker.work == '\0' || checker.work == work)
                benchmark::RegisterBenchmark(("LeakProcess/" + work + '/' + checker.who).c_str(), Measure, checker)
                    ->UseRealTime()
                    ->Unit(benchmark::kMillisecond);
    return true;
}();

}  // namespace
