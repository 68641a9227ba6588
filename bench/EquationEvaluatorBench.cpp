// Expressions from text, each time anew, against muParser and against reading their numbers alone.

#include <TuvoUtil/EquationEvaluator.h>
#include <basutl/BuCharacter.h>

#include <benchmark/benchmark.h>
#include <muParser.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

struct Variable
{
    const char* name;
    double value;
};

Variable g_variables[] = {{"length", 120.0}, {"width", 40.0}, {"radius", 8.5}, {"t", 2.5}};

double ValueOf(const char* name, const void*)
{
    const auto* const found = std::find_if(std::begin(g_variables), std::end(g_variables),
                                           [&](const Variable& known) { return std::strcmp(known.name, name) == 0; });
    return found != std::end(g_variables) ? found->value : 0.0;
}

std::string Terms(std::size_t count)
{
    std::mt19937 random(4);
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        char term[40];
        std::snprintf(term, sizeof term, "%c%.2f", "+-"[random() % 2], static_cast<double>(random() % 100'000) / 100);
        text += term;
    }
    return text.substr(1);
}

// ---- Ours and the peers --------------------------------------------------------------------------------------------

struct Ours
{
    VEquationEvaluator evaluator{nullptr, ValueOf};
    std::string text;

    double operator()() { return evaluator.Evaluate(text.c_str()); }
};

// muParser writes variables without brackets.
struct MuParser
{
    mu::Parser parser;
    std::string text;

    explicit MuParser(std::string expression) : text(std::move(expression))
    {
        text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == '<' || c == '>'; }), text.end());
        for (Variable& variable : g_variables)
            parser.DefineVar(variable.name, &variable.value);
    }

    double operator()()
    {
        parser.SetExpr(text);
        return parser.Eval();
    }
};

// The numbers alone, at places that are known.
struct FromChars
{
    std::string text;
    std::vector<const char*> numbers;

    explicit FromChars(std::string expression) : text(std::move(expression))
    {
        const char* const last = text.data() + text.size();
        for (const char* next = text.data(); next != last;) {
            double value = 0.0;
            if (BuIsDigit(*next)) {
                numbers.push_back(next);
                next = std::from_chars(next, last, value).ptr;
            } else {
                ++next;
            }
        }
    }

    double operator()() const
    {
        double sum = 0.0;
        for (const char* const number : numbers) {
            double value = 0.0;
            std::from_chars(number, text.data() + text.size(), value);
            sum += value;
        }
        return sum;
    }
};

template <typename Work>
void Run(benchmark::State& state, Work work)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(work());
}

void RunOurs(benchmark::State& state, const std::string& text)
{
    Ours ours{{nullptr, ValueOf}, text};
    const double value = ours();
    if (!(std::abs(value - MuParser(text)()) <= 1e-12 * std::abs(value)) ||
        std::strcmp(ours.evaluator.GetErrorString(), "no error") != 0)
        state.SkipWithError("not the value of muParser");
    Run(state, std::move(ours));
}

// Every number is found: their sum is that of our evaluator when every operator is "+".
void RunFromChars(benchmark::State& state, const std::string& text)
{
    FromChars numbers(text);
    std::string sum = text;
    for (char& c : sum)
        c = std::strchr("*/-", c) != nullptr ? '+' : (std::strchr("()", c) != nullptr ? ' ' : c);
    if (VEquationEvaluator().Evaluate(sum.c_str()) != numbers())
        state.SkipWithError("not the numbers of the text");
    Run(state, std::move(numbers));
}

void Add(const std::string& work, const std::string& text)
{
    const std::string name = "EquationEvaluator/" + work;
    benchmark::RegisterBenchmark((name + "/ours").c_str(), RunOurs, text);
    benchmark::RegisterBenchmark((name + "/muparser").c_str(),
                                 [text](benchmark::State& state) { Run(state, MuParser(text)); });
    if (text.find('<') == text.npos)
        benchmark::RegisterBenchmark((name + "/from_chars").c_str(), RunFromChars, text);
}

[[maybe_unused]] const bool g_registered = [] {
    Add("7 characters", "1+2*3-4");
    Add("formula", "2.5*(120.25-3.75)/(1+0.3)-17.5*(40-8.5)*4");
    Add("200 terms", Terms(200));
    Add("variables", "<length>*<width>-3.14159*<radius>*<radius>*<t>");
    for (const std::size_t times : {1, 10, 100}) {
        Ours ours{{nullptr, ValueOf}, Terms(200 * times)};
        benchmark::RegisterBenchmark(("EquationEvaluator/terms/" + std::to_string(times) + 'x').c_str(),
                                     [ours](benchmark::State& state) { Run(state, ours); });
    }
    return true;
}();

}  // namespace
