#include <TuvoUtil/EquationEvaluator.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <iterator>

namespace evaluator {

// What a step has read: its value, and where it ends. Two registers on most systems.
struct Step
{
    double value;
    const char* end;
};

// Reads expressions. The state that outlives a reading stands in the evaluator.
class Parser
{
public:
    explicit Parser(VEquationEvaluator& evaluator) : m_evaluator(evaluator) {}

    Step Sum(const char* cursor);
    Step Product(const char* cursor);
    Step Atom(const char* cursor);

    Step Fail(VEQN_EVAL_ERROR code, const char* cursor) { return FailAt(cursor, code, cursor); }

private:
    static constexpr int MostLevels = 1000;  // of parentheses; the stack is not ours to use up

    Step FailAt(const char* position, VEQN_EVAL_ERROR code, const char* cursor)
    {
        m_evaluator.m_error = code;
        m_evaluator.m_errorPosition = position;
        return {0.0, cursor};
    }

    void Take(const char*& cursor) { m_evaluator.m_lastCharacter = *cursor++; }

    bool TakeIf(const char*& cursor, char c)
    {
        const bool stands = *cursor == c;
        if (stands)
            Take(cursor);
        return stands;
    }

    void SkipBlanks(const char*& cursor)
    {
        while (TakeIf(cursor, ' ')) {
        }
    }

    bool FactorFollows(const char* cursor) const;
    bool NumberFollows(const char* cursor) const;

    // The value of an operand is `sign`, 1 or -1, times what it says; 0 when it fails.
    Step Operand(const char* cursor, double sign);
    Step Group(const char* cursor, double sign);
    Step Variable(const char* cursor, double sign);
    Step Number(const char* cursor, double sign);

    VEquationEvaluator& m_evaluator;
    char m_name[256];  // of the variable that is read
};

Step Parser::Sum(const char* cursor)
{
    Step sum = Product(cursor);
    for (;;) {
        SkipBlanks(sum.end);
        const char next = *sum.end;
        if (next != '+' && next != '-')
            return sum;
        Take(sum.end);
        const Step term = Product(sum.end);
        sum = {next == '+' ? sum.value + term.value : sum.value - term.value, term.end};
    }
}

Step Parser::Product(const char* cursor)
{
    Step product = Atom(cursor);
    for (;;) {
        SkipBlanks(product.end);
        const char* const place = product.end;
        if (TakeIf(product.end, '/')) {
            const Step divisor = Atom(product.end);
            // Kept: what follows in the product is not read, so that "1/0*3" fails at the "*".
            if (divisor.value == 0.0)
                return FailAt(place, VEQN_EVAL_DIVISION_BY_ZERO, divisor.end);
            product = {product.value / divisor.value, divisor.end};
        } else if (TakeIf(product.end, '*') || FactorFollows(product.end)) {
            const Step factor = Atom(product.end);
            product = {product.value * factor.value, factor.end};
        } else {
            return product;
        }
    }
}

// Whether a factor stands at the cursor that multiplies without an operator.
bool Parser::FactorFollows(const char* cursor) const
{
    if (*cursor == '(')
        return m_evaluator.m_depth < MostLevels;
    // Kept: a blank behind ")" ends the product, white space that belongs to the number does not: "(2)\t3" is 6.
    return m_evaluator.m_lastCharacter == ')' && NumberFollows(cursor);
}

// Whether a number stands at the cursor, the sign of which could not be that of a sum.
bool Parser::NumberFollows(const char* cursor) const
{
    if (*cursor == '+' || *cursor == '-')
        return false;
    const char* end = nullptr;
    BuReadDouble(cursor, &end);
    return end != cursor;
}

Step Parser::Atom(const char* cursor)
{
    SkipBlanks(cursor);
    // Kept: one "-", then one "+", and no blank behind them unless a number follows, which may have a sign of its own:
    // "--5" is 5, "- (2)" fails.
    const double sign = TakeIf(cursor, '-') ? -1.0 : 1.0;
    TakeIf(cursor, '+');
    return Operand(cursor, sign);
}

Step Parser::Operand(const char* cursor, double sign)
{
    switch (*cursor) {
        case '(':
            return Group(cursor, sign);
        case '<':
            return Variable(cursor, sign);
        default:
            return Number(cursor, sign);
    }
}

Step Parser::Group(const char* cursor, double sign)
{
    if (m_evaluator.m_depth >= MostLevels)
        return Fail(VEQN_EVAL_PARENTHESES, cursor);
    Take(cursor);
    ++m_evaluator.m_depth;
    Step sum = Sum(cursor);
    if (!TakeIf(sum.end, ')'))
        return Fail(VEQN_EVAL_PARENTHESES, sum.end);
    --m_evaluator.m_depth;
    return {sign * sum.value, sum.end};
}

Step Parser::Variable(const char* cursor, double sign)
{
    if (m_evaluator.m_callback == nullptr)
        return Fail(VEQN_EVAL_NO_CALLBACK, cursor);
    Take(cursor);
    char* end = m_name;
    char* const last = std::end(m_name) - 1;
    for (; *cursor != '>' && *cursor != '\0' && end != last; ++end) {
        *end = *cursor;
        Take(cursor);
    }
    if (*cursor != '>')
        return Fail(VEQN_EVAL_NAME_LENGTH, cursor);
    std::fill(end, std::end(m_name), '\0');
    const double value = m_evaluator.m_callback(m_name, m_evaluator.m_context);
    Take(cursor);
    return {sign * value, cursor};
}

Step Parser::Number(const char* cursor, double sign)
{
    const char* end = nullptr;
    const double value = BuReadDouble(cursor, &end);
    if (end == cursor)
        return Fail(VEQN_EVAL_INVALID_CHARACTER, cursor);
    m_evaluator.m_lastCharacter = end[-1];
    return {sign * value, end};
}

}  // namespace evaluator

namespace {

using evaluator::Parser;
using evaluator::Step;

double Run(VEquationEvaluator& evaluator, Step (Parser::*step)(const char*), const char*& cursor)
{
    Parser parser(evaluator);
    const Step done = cursor != nullptr ? (parser.*step)(cursor) : parser.Fail(VEQN_EVAL_INVALID_CHARACTER, cursor);
    cursor = done.end;
    return done.value;
}

}  // namespace

VEquationEvaluator::VEquationEvaluator(const void* context, double (*callback)(const char* name, const void* context))
    : m_context(context), m_callback(callback)
{}

VEquationEvaluator::VEquationEvaluator() = default;
VEquationEvaluator::VEquationEvaluator(const VEquationEvaluator& other) = default;
VEquationEvaluator& VEquationEvaluator::operator=(const VEquationEvaluator& other) = default;
VEquationEvaluator::~VEquationEvaluator() = default;

double VEquationEvaluator::Evaluate(const char* text)
{
    m_error = VEQN_EVAL_NO_ERROR;
    m_depth = 0;
    m_lastCharacter = '\0';
    Parser parser(*this);
    if (text == nullptr)
        return parser.Fail(VEQN_EVAL_INVALID_CHARACTER, text).value;
    const Step sum = parser.Sum(text);
    if (m_depth != 0 || *sum.end == ')')
        return parser.Fail(VEQN_EVAL_PARENTHESES, sum.end).value;
    if (*sum.end != '\0')
        return parser.Fail(VEQN_EVAL_INVALID_CHARACTER, sum.end).value;
    // Kept: a code that a step has set does not change the value: "1+" is 1 with code 2.
    return sum.value;
}

char* VEquationEvaluator::GetErrorPosition()
{
    return const_cast<char*>(m_errorPosition);
}

const char* VEquationEvaluator::GetErrorString()
{
    // Kept: two messages in one, and none.
    static constexpr const char* messages[] = {
        "no error",
        "parentheses don't match",
        "invalid character",
        "division by zero",
        "invalid function pointer for getvariableval proclength of variable name is more then 255",
        nullptr};
    return messages[m_error];
}

double VEquationEvaluator::ParseSummands(const char*& cursor)
{
    return Run(*this, &Parser::Sum, cursor);
}

double VEquationEvaluator::ParseFactors(const char*& cursor)
{
    return Run(*this, &Parser::Product, cursor);
}

double VEquationEvaluator::ParseAtom(const char*& cursor)
{
    return Run(*this, &Parser::Atom, cursor);
}
