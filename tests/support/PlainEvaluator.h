// The evaluator's grammar a second time, without recursion: open parentheses stand on a stack. The oracle of its test
// and of its fuzz target.
#pragma once

#include <basutl/BuNumber.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Equal to the sign of a zero; one nan is as good as another.
inline bool IsSameNumber(double left, double right)
{
    return std::isnan(left) ? std::isnan(right) : left == right && std::signbit(left) == std::signbit(right);
}

class PlainEvaluator
{
public:
    using Values = std::function<double(const std::string& name)>;

    explicit PlainEvaluator(Values values) : m_values(std::move(values)) {}

    double result = 0.0;
    int code = 0;
    const char* position = nullptr;  // only beside a code

    void Evaluate(const char* text)
    {
        m_first = m_next = text;
        code = m_depth = 0;
        m_levels.assign(1, {});
        for (double value = 0.0;;) {
            if (!Operand(value))
                continue;  // a parenthesis was opened
            while (!Combine(value)) {
                if (m_levels.size() == 1)
                    return Finish();
                value = Close();
            }
        }
    }

private:
    // A sum in the making. The last operator stands before the operand that comes next.
    struct Level
    {
        double sum = 0.0;
        char addition = 0;  // of the product; 0 in front of the first one
        double product = 0.0;
        const char* operation = "";  // of the factor: "*", "/", or "" in front of the first one
        bool isNegative = false;     // the operand
    };

    Level& Top() { return m_levels.back(); }

    void SkipBlanks()
    {
        while (*m_next == ' ')
            ++m_next;
    }

    double Fail(int newCode, const char* place)
    {
        code = newCode;
        position = place;
        return 0.0;
    }

    // Reads an operand with its signs; false when it begins with a parenthesis.
    bool Operand(double& value)
    {
        SkipBlanks();
        Top().isNegative = *m_next == '-';
        m_next += *m_next == '-';
        m_next += *m_next == '+';
        if (*m_next == '(' && m_depth < 1000) {
            ++m_next;
            ++m_depth;
            m_levels.emplace_back();
            return false;
        }
        if (*m_next == '(')
            value = Fail(1, m_next);
        else
            value = *m_next == '<' ? Variable() : Number();
        return true;
    }

    double Number()
    {
        const char* end = nullptr;
        const double value = Signed(BuReadDouble(m_next, &end));
        if (end == m_next)
            return Fail(2, m_next);
        m_next = end;
        return value;
    }

    double Signed(double value) { return Top().isNegative ? -value : value; }

    double Variable()
    {
        const std::string_view rest(m_next + 1);
        const std::size_t length = std::min(rest.find('>'), rest.size());
        if (length > 255 || length == rest.size())
            return Fail(5, m_next += 1 + std::min<std::size_t>(length, 255));
        m_next += length + 2;
        return Signed(m_values(std::string(rest.substr(0, length))));
    }

    // Puts an operand where it belongs. True when another one has to follow, false at the end of the sum.
    bool Combine(double value)
    {
        Level& level = Top();
        const bool isZeroDivisor = *level.operation == '/' && value == 0.0;
        if (isZeroDivisor)
            level.product = Fail(3, level.operation);
        else if (*level.operation == '/')
            level.product /= value;
        else
            level.product = *level.operation == '*' ? level.product * value : value;
        SkipBlanks();
        if (!isZeroDivisor && FactorFollows(level))
            return true;
        level.sum = level.addition == 0     ? level.product
                    : level.addition == '+' ? level.sum + level.product
                                            : level.sum - level.product;
        if (*m_next != '+' && *m_next != '-')
            return false;
        level.addition = *m_next++;
        level.operation = "";
        return true;
    }

    bool FactorFollows(Level& level)
    {
        if (*m_next == '*' || *m_next == '/') {
            level.operation = m_next++;
            return true;
        }
        const char* end = nullptr;
        const bool isBehindGroup = m_next != m_first && m_next[-1] == ')' && *m_next != '+' && *m_next != '-';
        level.operation = "*";
        return *m_next == '(' ? m_depth < 1000 : isBehindGroup && (BuReadDouble(m_next, &end), end != m_next);
    }

    // The value of the innermost parenthesis, which ends here or not at all.
    double Close()
    {
        const double sum = Top().sum;
        m_levels.pop_back();
        if (*m_next != ')')
            return Fail(1, m_next);
        ++m_next;
        --m_depth;
        return Signed(sum);
    }

    void Finish()
    {
        result = Top().sum;
        if (m_depth != 0 || *m_next == ')')
            result = Fail(1, m_next);
        else if (*m_next != '\0')
            result = Fail(2, m_next);
    }

    Values m_values;
    const char* m_first = nullptr;
    const char* m_next = nullptr;
    int m_depth = 0;
    std::vector<Level> m_levels;
};
