// Arithmetic in text: VEquationEvaluator gives the value of an expression such as "2*(<width>+1.5)/3", with variables
// whose values the caller supplies.
//
// There are no functions, powers, comparisons or assignments. An evaluator is for one thread at a time; two of them have
// nothing in common. Nothing is allocated and nothing printed; numbers are those of the C locale, whatever the host's.
//
//   double Value(const char* name, const void*) { return std::strcmp(name, "width") == 0 ? 4.0 : 0.0; }
//
//   VEquationEvaluator evaluator(nullptr, Value);
//   evaluator.Evaluate("2*<width>");   // 8.0, "no error"
//   evaluator.Evaluate("2*(3");        // 0.0, "parentheses don't match", position at the end of the text
//
// The grammar. Blanks alone may stand before each factor, operator and "(", and at the end:
//
//   sum      = product { ("+" | "-") product }         from left to right
//   product  = factor { ("*" | "/") factor
//                     | "(" ...                        a factor in parentheses multiplies without "*": 2 (3)
//                     | number }                       and a number right behind ")" does: (2)3
//   factor   = [ "-" ] [ "+" ] operand                 no blank after a sign, but for the number's own
//   operand  = number                                  what BuReadDouble reads: 1.5e3, -2, 0x10, inf; white space before it
//            | "<" name ">"                            any characters, 255 at most
//            | "(" sum ")"                             up to 1000 levels deep
//
// What a step cannot read counts as 0.0 and sets the code, and the steps around it go on. The end decides: an open or
// surplus parenthesis (code 1) or a rest of the text (code 2) makes the result 0.0; otherwise the value stands, even
// beside a code. To the left texts without a code:
//
//   text           value       text                 value  code  position at
//   1+2*3              7       1+                       1     2  the end
//   (1+2)*3            9       - (2)+5                  5     2  the blank
//   10-4-3             3       ---5                     5     2  the second "-"
//   8/2(3)            12       +-(2)                   -2     2  "-"
//   2 (3)              6       1 $                      0     2  "$"
//   (2)3               6       (2) 3                    0     2  "3"
//   (2)3(4)           24       2<x>                     0     2  "<"
//   (2)<tab>3          6       2*<x> (no callback)      0     2  "<"
//   (2)inf           inf       1/0                      0     3  "/"
//   -(2)              -2       1/0+5                    5     3  "/"
//   - 2               -2       1/                       0     3  "/"
//   --5                5       5+1/0*3                  0     2  "*"
//   -+-5               5       (1+2                     0     1  the end
//   0x10              16       1+2)                     0     1  ")"
//   -<x> (x: 4)       -4       <x                       0     5  the end
//   <x>(2) (x: 4)      8       null                     0     2  null
#pragma once

#include <TuvoUtil/Export.h>

// What is wrong with an expression.
enum VEQN_EVAL_ERROR : int
{
    VEQN_EVAL_NO_ERROR = 0,
    VEQN_EVAL_PARENTHESES = 1,
    VEQN_EVAL_INVALID_CHARACTER = 2,
    VEQN_EVAL_DIVISION_BY_ZERO = 3,
    VEQN_EVAL_NO_CALLBACK = 4,  // a variable, and no callback; Evaluate turns it into 1 or 2
    VEQN_EVAL_NAME_LENGTH = 5   // more than 255 characters in a name, or no ">"
};

namespace evaluator {
class Parser;
}

class TUVOUTIL_API VEquationEvaluator
{
public:
    // An evaluator whose variables have the values that `callback` gives. `name` is as written between "<" and ">", in
    // 256 bytes that the callback may read while it runs, zeros behind the name; `context` is handed on as it is. The
    // callback may throw through Evaluate. Both pointers are kept, neither is freed; a null callback means no variables.
    VEquationEvaluator(const void* context, double (*callback)(const char* name, const void* context));

    // An evaluator without variables.
    VEquationEvaluator();

    // Copies have the same code, position, context and callback.
    VEquationEvaluator(const VEquationEvaluator& other);
    VEquationEvaluator& operator=(const VEquationEvaluator& other);

    virtual ~VEquationEvaluator();

    // The value of an expression, with the code and the position set as described above; null gives 0.0 with code 2 and
    // a null position. The code starts afresh, the position does not: after a success it is still that of the failure
    // before. Cost: linear in the text; no more stack than 1000 levels take.
    double Evaluate(const char* text);

    // Where the last failure was found, in the text that was given then; null when there was none.
    char* GetErrorPosition();

    // The message of the code of the last Evaluate, "no error" before the first: a constant of the library, null for a
    // name that is too long or has no end.
    const char* GetErrorString();

protected:
    // The steps of Evaluate, for derived evaluators: a sum, a product, a signed operand. Each reads from `cursor` on and
    // moves it behind what it has read; it fails with a code at the cursor and 0.0, and a null cursor does with code 2.
    // They start nothing afresh: an open parenthesis of a failure still counts in m_depth.
    double ParseSummands(const char*& cursor);
    double ParseFactors(const char*& cursor);
    double ParseAtom(const char*& cursor);

    // The state of a run, and what the variables come from.
    VEQN_EVAL_ERROR m_error = VEQN_EVAL_NO_ERROR;  // the code
    const char* m_errorPosition = nullptr;
    int m_depth = 0;              // parentheses that are open
    char m_lastCharacter = '\0';  // the last one read, blanks included
    const void* m_context = nullptr;
    double (*m_callback)(const char* name, const void* context) = nullptr;

private:
    friend class evaluator::Parser;
};
