// Expressions that a user typed into fields of a form, with the lengths of a plate as variables.
#include <TuvoUtil/EquationEvaluator.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <limits>

namespace {

struct Variable
{
    const char* name;
    double value;
};

constexpr Variable Plate[] = {{"length", 120.0}, {"width", 40.0}, {"hole", 8.5}};

double Value(const char* name, const void* context)
{
    const auto* const variables = static_cast<const Variable*>(context);
    for (const Variable* variable = variables; variable != variables + std::size(Plate); ++variable)
        if (std::strcmp(variable->name, name) == 0)
            return variable->value;
    return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

int main()
{
    VEquationEvaluator evaluator(Plate, Value);
    for (const char* const typed : {"<length> - 2*<hole>", "(<length>/2)(<width>)", "-<width>/(4-2^2)",
                                    "1/(<hole> - 8.5)", "2*(<length>+<width>", "3*<height>"}) {
        const double value = evaluator.Evaluate(typed);
        if (std::strcmp(evaluator.GetErrorString(), "no error") == 0)
            std::printf("%s = %g\n", typed, value);
        else
            std::printf("%s\n%*s %s\n", typed, static_cast<int>(evaluator.GetErrorPosition() - typed) + 1, "^",
                        evaluator.GetErrorString());
    }
}
