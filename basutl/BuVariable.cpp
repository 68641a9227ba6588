#include <basutl/BuVariable.h>

#include "basutl/BuNumberScan.h"
#include "basutl/ThreadState.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <optional>
#include <string>
#include <utility>

namespace {

constexpr int ProcessEnvironment = 1;

std::optional<std::wstring> Value(const char* name)
{
    return platform::EnvironmentValue(platform::Widen(name).c_str());
}

bool IsNonzeroNumber(const char* text)
{
    const char* end = nullptr;
    const double number = BuReadDouble(text, &end);
    return *end == '\0' && (number < 0 || number > 0);
}

bool MeansTrue(std::string text)
{
    while (!text.empty() && BuIsSpace(text.back()))  // a command file's `set X=1 && ...` leaves a blank there
        text.pop_back();
    const char* const first = number::SkipSpaces(text.c_str());
    const auto is = [first](const char* word) { return BuCompareNoCase(first, word) == 0; };
    return is("true") || is("yes") || is("on") || IsNonzeroNumber(first);
}

}  // namespace

bool BuVariableGetBoolean(const char* name, bool defaultValue) noexcept
{
    if (name == nullptr)
        return defaultValue;
    return platform::Guarded(defaultValue, [=] {
        const auto value = Value(name);
        return value ? MeansTrue(platform::Narrow(*value)) : defaultValue;
    });
}

const wchar_t* BuVariableGetValue(const char* name, int source) noexcept
{
    ThreadState* const state = GetThreadState();
    if (state == nullptr || name == nullptr || source != ProcessEnvironment)
        return nullptr;
    return platform::Guarded<const wchar_t*>(nullptr, [=]() -> const wchar_t* {
        auto value = Value(name);
        if (!value)
            return nullptr;
        state->variableValue = std::move(*value);
        return state->variableValue.c_str();
    });
}
