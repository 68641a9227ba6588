#include <basutl/BuVariable.h>

#include "basutl/ThreadState.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuNumber.h>
#include <basutl/BuString.h>

#include <optional>
#include <utility>

namespace {

constexpr int ProcessEnvironment = 1;

std::optional<std::wstring> Value(const char* name)
{
    return platform::EnvironmentValue(platform::Widen(name).c_str());
}

bool IsNonzeroNumber(const BuString& text)
{
    const std::string narrow = text.ToNarrow();
    const char* end = nullptr;
    const double number = BuReadDouble(narrow.c_str(), &end);
    return *end == '\0' && (number < 0 || number > 0);
}

bool MeansTrue(BuString text)
{
    text.TrimLeft().TrimRight();  // a command file's `set X=1 && ...` leaves a blank behind the value
    return text.CompareNoCase(L"true") == 0 || text.CompareNoCase(L"yes") == 0 || text.CompareNoCase(L"on") == 0 ||
           IsNonzeroNumber(text);
}

}  // namespace

bool BuVariableGetBoolean(const char* name, bool defaultValue) noexcept
{
    if (name == nullptr)
        return defaultValue;
    return platform::Guarded(defaultValue, [=] {
        const auto value = Value(name);
        return value ? MeansTrue(value->c_str()) : defaultValue;
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
