// A session of chronometers with a clock of its own and a log that is kept. For processes of their own: the library reads
// its settings once.
#pragma once

#include "platform/Platform.h"

#include <TuvoUtil/Benchmark.h>
#include <basutl/BuChrono.h>
#include <basutl/BuLogger.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class BenchmarkSession
{
public:
    using Section = tuvo::benchmark::Benchmark;

    explicit BenchmarkSession(const wchar_t* level = L"2", const wchar_t* threshold = L"0.5",
                              const std::optional<std::wstring>& trace = std::nullopt)
    {
        platform::SetEnvironmentValue(L"QD_BENCH_LEVEL", level);
        platform::SetEnvironmentValue(L"QD_BENCH_THRESHOLD_SEC", threshold);
        platform::SetEnvironmentValue(L"QD_BENCH_TRACE", trace);
        BuSetTickSource([] { return Ticks(); });
        BuLogger::GetInstance().SetSink(Receive, nullptr);
        Section first(L"first", tuvo::benchmark::BENCH_LEVEL_0);
        Section::GetSessionBenchLevel(nullptr);
        TakeLog();
    }
    ~BenchmarkSession()
    {
        BuLogger::GetInstance().SetSink(nullptr, nullptr);
        BuSetTickSource(nullptr);
    }
    BenchmarkSession(const BenchmarkSession&) = delete;
    BenchmarkSession& operator=(const BenchmarkSession&) = delete;

    static void Wait(double seconds) { Ticks() += static_cast<long long>(seconds * 1e9); }

    // What was logged since the last call; texts of other levels than 6 begin with "LEVEL:".
    static std::string TakeLog() { return std::exchange(Log(), {}); }

    // Runs a program of words: "(NAME" opens a section and ")" closes it, "+SECONDS" waits, "!NAME" records a step.
    static void Run(const std::string& program)
    {
        std::vector<std::unique_ptr<Section>> open;
        for (std::size_t at = 0; at < program.size();) {
            const std::size_t end = std::min(program.find(' ', at), program.size());
            const std::string text = program.substr(at + 1, end - at - 1);
            switch (program[at]) {
                case '(':
                    open.push_back(
                        std::make_unique<Section>(platform::Widen(text).c_str(), tuvo::benchmark::BENCH_LEVEL_0));
                    break;
                case ')':
                    open.pop_back();
                    break;
                case '!':
                    open.back()->RecordElapsedTime(L"%S", text.c_str());
                    break;
                default:
                    Wait(std::stod(text));
            }
            at = std::min(program.find_first_not_of(' ', end), program.size());
        }
    }

private:
    static long long& Ticks()
    {
        static long long ticks = 1'000'000'000;
        return ticks;
    }
    static std::string& Log()
    {
        static std::string log;
        return log;
    }
    static void Receive(int level, const wchar_t* text, void*)
    {
        Log() += (level != 6 ? std::to_string(level) + ':' : std::string()) + platform::Narrow(text);
    }
};
