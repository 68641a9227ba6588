#include "tools/tuvo/Expression.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/Pointer.h"
#include "tools/tuvo/Suggest.h"

#include <TuvoUtil/EquationEvaluator.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

namespace tool {
namespace {

// What the evaluator's callback looks variables up in. It must not throw, so the first name that has no value is kept in
// the size in which names come.
struct Lookup
{
    const Variables& variables;
    mutable bool hasUnknown = false;
    mutable char unknown[256] = "";

    static double ValueOf(const char* name, const void* context)
    {
        const Lookup& lookup = *static_cast<const Lookup*>(context);
        const auto found = lookup.variables.find(std::string_view(name));
        if (found != lookup.variables.end())
            return found->second;
        if (!lookup.hasUnknown)
            std::memcpy(lookup.unknown, name, sizeof lookup.unknown);
        lookup.hasUnknown = true;
        return std::numeric_limits<double>::quiet_NaN();
    }
};

std::string Problem(const std::string& reason, std::string_view expression, std::size_t place,
                    const std::string& hint = {})
{
    const std::string where =
        place == expression.size() ? "the end" : "character " + std::to_string(CharacterNumber(expression, place));
    return reason + " at " + where + hint + PointerTo(expression, place);
}

// The place of the first variable of this name.
std::size_t PlaceOf(std::string_view name, std::string_view expression)
{
    for (std::size_t open = 0; (open = expression.find('<', open)) != expression.npos;) {
        const std::size_t close = std::min(expression.find('>', open), expression.size());
        if (expression.substr(open + 1, close - open - 1) == name)
            return open;
        open = close;
    }
    return 0;
}

std::string UnknownProblem(const Lookup& lookup, const std::string& expression)
{
    std::vector<std::string> known;
    for (const auto& [name, value] : lookup.variables)
        known.push_back(name);
    return Problem("there is no value for " + Quoted(lookup.unknown), expression, PlaceOf(lookup.unknown, expression),
                   DidYouMean(lookup.unknown, known));
}

}  // namespace

std::string EvaluateExpression(const std::string& expression, const Variables& variables, double& value)
{
    if (expression.empty())
        return "there is no expression";
    if (const std::size_t place = expression.find('\0'); place != expression.npos)
        return Problem("invalid character", expression, place);
    const Lookup lookup{variables};
    VEquationEvaluator evaluator(&lookup, Lookup::ValueOf);
    value = evaluator.Evaluate(expression.c_str());
    const char* const position = evaluator.GetErrorPosition();
    if (position == nullptr)
        return lookup.hasUnknown ? UnknownProblem(lookup, expression) : std::string();
    const char* const message = evaluator.GetErrorString();
    return Problem(message != nullptr ? message : "a name without \">\" or with more than 255 characters", expression,
                   static_cast<std::size_t>(position - expression.c_str()));
}

}  // namespace tool
