#include <TuvoUtil/EquationEvaluator.h>

#include "tests/support/PlainEvaluator.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

double LengthOfName(const char* name, const void* = nullptr)
{
    return *name == '0' ? 0.0 : static_cast<double>(std::strlen(name));
}

class Evaluator : public VEquationEvaluator
{
public:
    Evaluator() : VEquationEvaluator(nullptr, LengthOfName) {}
    int Code() const { return m_error; }
};

}  // namespace

// Law: value, code and position are those of an evaluator without recursion.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    PlainEvaluator plain([](const std::string& name) { return LengthOfName(name.c_str()); });
    plain.Evaluate(text.c_str());
    Evaluator evaluator;
    const double value = evaluator.Evaluate(text.c_str());
    if (!IsSameNumber(value, plain.result) || evaluator.Code() != plain.code ||
        evaluator.GetErrorPosition() != plain.position)
        std::abort();
    return 0;
}
