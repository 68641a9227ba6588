#include <TuvoUtil/EquationEvaluator.h>

#include "support/GuardedBuffer.h"
#include "support/PlainEvaluator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// An evaluator that shows its code.
class Evaluator : public VEquationEvaluator
{
public:
    using VEquationEvaluator::ParseAtom;
    using VEquationEvaluator::ParseFactors;
    using VEquationEvaluator::ParseSummands;
    using VEquationEvaluator::VEquationEvaluator;
    VEQN_EVAL_ERROR Code() const { return m_error; }
};

// What a variable of the tests is worth: the length of its name, and nothing for a name that begins with "0".
double LengthOfName(const char* name, const void* = nullptr)
{
    return *name == '0' ? 0.0 : static_cast<double>(std::strlen(name));
}

TEST(EquationEvaluator, GivesValueCodeAndPosition)
{
    const struct
    {
        std::string text;
        double value;
        int code = 0;
        int position = -1;  // below 0: no failure
    } rows[] = {
        {"1+2*3", 7},
        {"(1+2)*3", 9},
        {"8/2(3)", 12},
        {"10-4-3", 3},
        {"2 (3)", 6},
        {"(2)3", 6},
        {"(2)3(4)", 24},
        {"(2)\t3", 6},
        {"(2)\t-3", -6},
        {"(2).5", 1},
        {"(2)inf", Infinity},
        {" 1 + 2 ", 3},
        {"-(2)", -2},
        {"- 2", -2},
        {"-0", -0.0},
        {"--5", 5},
        {"-+-5", 5},
        {"0x10-1e1", 6},
        {"-<abc>*2", -6},
        {"<a b >(2)", 8},
        {"<>", 0},
        {"<<(>", 2},
        {"1-<nan>", -2},
        {"", 0, 2, 0},
        {"  ", 0, 2, 2},
        {"1+", 1, 2, 2},
        {"-", 0, 2, 1},
        {"- (2)+5", 5, 2, 1},
        {"- (2)", 0, 2, 1},
        {"---5", 5, 2, 1},
        {"+-(2)", -2, 2, 1},
        {"1 $", 0, 2, 2},
        {"1\t+2", 0, 2, 1},
        {"(2) 3", 0, 2, 4},
        {"(2)3\t4", 0, 2, 4},
        {"(2)<abc>", 0, 2, 3},
        {"<abc>2", 0, 2, 5},
        {"2<abc>", 0, 2, 1},
        {"- <abc>", 0, 2, 2},
        {"1,5", 0, 2, 1},
        {"2^3", 0, 2, 1},
        {"1/0", 0, 3, 1},
        {"1/0+5", 5, 3, 1},
        {"5-6/-0-2", 3, 3, 3},
        {"2*(3/<0>+1)", 2, 3, 4},
        {"1/", 0, 3, 1},
        {"1/0*3", 0, 2, 3},
        {"5+1/0*3", 0, 2, 5},
        {"1/(2", 0, 1, 4},
        {"(1+2", 0, 1, 4},
        {"((1)", 0, 1, 4},
        {"1+2)", 0, 1, 3},
        {")", 0, 1, 0},
        {"(1 $)", 0, 1, 3},
        {"()", 0, 2, 1},
        {"(1/0*3", 0, 1, 6},
        {"<abc", 0, 5, 4},
        {"1-<", 1, 5, 3},
        {"<" + std::string(255, 'n') + ">*2", 510},
        {"<" + std::string(256, 'n') + ">", 0, 2, 256},
        {"<" + std::string(255, 'n') + "+5", 5, 5, 256},
        {"<" + std::string(254, 'n') + ")3", 0, 5, 256},
    };
    for (const auto& row : rows) {
        Evaluator evaluator(nullptr, LengthOfName);
        const GuardedBuffer text(row.text);
        EXPECT_PRED2(IsSameNumber, evaluator.Evaluate(text.Data()), row.value) << row.text;
        EXPECT_EQ(evaluator.Code(), row.code) << row.text;
        EXPECT_EQ(evaluator.GetErrorPosition(), row.position < 0 ? nullptr : text.Data() + row.position) << row.text;
    }
}

// The values are those of awk.
TEST(EquationEvaluator, CalculatesAsAwkDoes)
{
    const struct
    {
        const char* text;
        double value;
    } rows[] = {
        {"0.1+0.2*3-4/7", 0.12857142857142867},
        {"(1.5+2.25)*(3-4.75)/(6/7)", -7.65625},
        {"1e10/3e-5*7-2.5e14", 2083333333333333},
        {"1/3/3/3/3*81*7", 7},
        {"-(2.5-3)*-(4+1e-3)/1.1", -1.8186363636363636},
        {"100-99.9-0.1+1e-17", -5.6798930012039275e-15},
        {"3.14159265358979*2.5*2.5/4*1200*7.85e-9", 4.6240316870024724e-05},
    };
    for (const auto& [text, value] : rows)
        EXPECT_EQ(VEquationEvaluator().Evaluate(text), value) << text;
}

// Texts of the grammar, some of them then spoilt.
class RandomTexts
{
public:
    const std::string& Next()
    {
        m_text.clear();
        AddSum(4);
        for (std::size_t count = Below(3); Below(2) == 0 && count > 0 && !m_text.empty(); --count)
            Spoil();
        return m_text;
    }

private:
    std::size_t Below(std::size_t limit) { return m_random() % limit; }
    void Add(std::initializer_list<const char*> choices) { m_text += choices.begin()[Below(choices.size())]; }
    void AddBlanks() { Add({"", "", "", " ", "  "}); }

    void AddSum(int depth)
    {
        AddProduct(depth);
        for (std::size_t count = Below(3); count > 0; --count) {
            AddBlanks();
            Add({"+", "-"});
            AddProduct(depth);
        }
    }

    void AddProduct(int depth)
    {
        AddFactor(depth);
        for (std::size_t count = Below(3); count > 0; --count) {
            AddBlanks();
            Add({"*", "/", "*", "/", "*", "/", "*", "/", "", "\t"});
            AddFactor(depth);
        }
    }

    void AddFactor(int depth)
    {
        AddBlanks();
        Add({"", "", "", "", "", "", "-", "+", "-+", "--"});
        if (depth == 0 || Below(3) != 0)
            return Add({"0", "1", "2.5", "3e2", ".5", "0x1F", "<a>", "<bcd>", "<0>", "7", "inf", "nan(1)", " 4"});
        m_text += '(';
        AddSum(depth - 1);
        m_text += ')';
    }

    void Spoil()
    {
        const std::size_t place = Below(m_text.size());
        if (Below(2) == 0)
            m_text.erase(place, 1);
        else
            m_text.insert(place, 1, "()<>+-*/ \t09.e$"[Below(15)]);
    }

    std::mt19937 m_random{11};
    std::string m_text;
};

TEST(EquationEvaluator, AgreesWithAnEvaluatorWithoutRecursion)
{
    PlainEvaluator plain([](const std::string& name) { return LengthOfName(name.c_str()); });
    Evaluator evaluator(nullptr, LengthOfName);
    RandomTexts texts;
    int successes = 0;
    for (int i = 0; i < 200'000; ++i) {
        const std::string& text = texts.Next();
        plain.Evaluate(text.c_str());
        ASSERT_PRED2(IsSameNumber, evaluator.Evaluate(text.c_str()), plain.result) << text;
        ASSERT_EQ(evaluator.Code(), plain.code) << text;
        if (plain.code != 0) {
            ASSERT_EQ(evaluator.GetErrorPosition(), plain.position) << text;
        }
        successes += plain.code == 0;
    }
    EXPECT_GT(successes, 30'000);
    EXPECT_LT(successes, 150'000);
}

TEST(EquationEvaluator, NamesEachCode)
{
    const struct
    {
        const char *text, *message;
    } rows[] = {{"1", "no error"},
                {"(", "parentheses don't match"},
                {"$", "invalid character"},
                {"1/0", "division by zero"},
                {"<x", nullptr}};
    for (const auto& [text, message] : rows) {
        VEquationEvaluator evaluator(nullptr, LengthOfName);
        EXPECT_STREQ(evaluator.GetErrorString(), "no error");
        evaluator.Evaluate(text);
        EXPECT_STREQ(evaluator.GetErrorString(), message) << text;
    }
}

TEST(EquationEvaluator, HasNoVariablesWithoutCallback)
{
    Evaluator evaluator;
    const char* const text = "2*<x>";
    EXPECT_EQ(evaluator.Evaluate(text), 0.0);
    EXPECT_EQ(evaluator.Code(), VEQN_EVAL_INVALID_CHARACTER);
    EXPECT_EQ(evaluator.GetErrorPosition(), text + 2);

    const char* cursor = text + 2;
    EXPECT_EQ(evaluator.ParseAtom(cursor), 0.0);
    EXPECT_EQ(cursor, text + 2);
    EXPECT_STREQ(evaluator.GetErrorString(),
                 "invalid function pointer for getvariableval proclength of variable name is more then 255");
}

TEST(EquationEvaluator, KeepsThePositionOfTheLastFailure)
{
    Evaluator evaluator;
    const char* const text = "1+$";
    evaluator.Evaluate(text);
    const Evaluator failed = evaluator;
    EXPECT_EQ(evaluator.Evaluate("2*3"), 6.0);
    EXPECT_EQ(evaluator.Code(), VEQN_EVAL_NO_ERROR);
    EXPECT_EQ(evaluator.GetErrorPosition(), text + 2);

    EXPECT_EQ(evaluator.Evaluate(nullptr), 0.0);
    EXPECT_EQ(evaluator.Code(), VEQN_EVAL_INVALID_CHARACTER);
    EXPECT_EQ(evaluator.GetErrorPosition(), nullptr);
    evaluator = failed;
    EXPECT_EQ(evaluator.Code(), VEQN_EVAL_INVALID_CHARACTER);
    EXPECT_EQ(evaluator.GetErrorPosition(), text + 2);
}

TEST(EquationEvaluator, HandsNamesAndContextToTheCallback)
{
    std::vector<std::string> names;
    const auto remember = [](const char* name, const void* context) {
        EXPECT_EQ(std::string_view(name, 256).find_first_not_of('\0', std::strlen(name)), std::string_view::npos);
        const auto& all = *static_cast<std::vector<std::string>* const*>(context);
        all->push_back(name);
        return all->size() < 3 ? std::nan("") : throw std::runtime_error("no more");
    };
    auto* const context = &names;
    const VEquationEvaluator original(&context, remember);
    VEquationEvaluator copy;
    copy = original;
    EXPECT_TRUE(std::isnan(copy.Evaluate("<a longer name>*(1/< >)")));
    EXPECT_THROW(copy.Evaluate("1+(2*<+>)"), std::runtime_error);
    EXPECT_EQ(names, (std::vector<std::string>{"a longer name", " ", "+"}));
    EXPECT_EQ(copy.Evaluate("(4)"), 4.0);
}

TEST(EquationEvaluator, BoundsTheDepthOfParentheses)
{
    Evaluator evaluator;
    const auto nested = [](std::size_t depth) { return std::string(depth, '(') + "3" + std::string(depth, ')'); };
    EXPECT_EQ(evaluator.Evaluate(nested(1000).c_str()), 3.0);
    EXPECT_EQ(evaluator.Code(), VEQN_EVAL_NO_ERROR);
    for (const std::string& text : {nested(1001), nested(100'000), std::string(1000, '(') + "2(3)"}) {
        EXPECT_EQ(evaluator.Evaluate(text.c_str()), 0.0);
        EXPECT_EQ(evaluator.Code(), VEQN_EVAL_PARENTHESES);
        EXPECT_EQ(evaluator.GetErrorPosition(), &text[text.find('(', text[1000] == '2' ? 1001 : 1000)]);
    }
}

TEST(EquationEvaluator, ReadsTextsOfAnyLengthAndByte)
{
    std::string sum = "1", products = "2";
    for (int i = 0; i < 2'500'000; ++i)
        sum += " + 1", products += "*-1 ";
    EXPECT_EQ(VEquationEvaluator().Evaluate(sum.c_str()), 2'500'001.0);
    EXPECT_EQ(VEquationEvaluator().Evaluate(products.c_str()), 2.0);
    for (int byte = 1; byte < 256; ++byte) {
        Evaluator evaluator;
        const std::string text = {'7', static_cast<char>(byte)};
        const bool isReadable = std::strchr("0123456789. ", byte) != nullptr;
        evaluator.Evaluate(text.c_str());
        EXPECT_EQ(evaluator.Code() == VEQN_EVAL_NO_ERROR, isReadable) << byte;
    }
}

TEST(EquationEvaluator, LetsDerivedEvaluatorsReadParts)
{
    const struct
    {
        double (Evaluator::*step)(const char*& cursor);
        double value;
        int length;
    } rows[] = {{&Evaluator::ParseSummands, 13, 9}, {&Evaluator::ParseFactors, 8, 7}, {&Evaluator::ParseAtom, 2, 2}};
    for (const auto& row : rows) {
        Evaluator evaluator;
        const char* const text = " 2*(4) +5]";
        const char* cursor = text;
        EXPECT_EQ((evaluator.*row.step)(cursor), row.value);
        EXPECT_EQ(cursor - text, row.length);
        cursor = nullptr;
        EXPECT_EQ((evaluator.*row.step)(cursor), 0.0);
        EXPECT_EQ(evaluator.Code(), VEQN_EVAL_INVALID_CHARACTER);
    }
}

}  // namespace
