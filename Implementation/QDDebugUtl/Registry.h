// Modules with their parameters, and the tables that find them by name.
//
// Functions that are not noexcept throw std::bad_alloc, with nothing changed.
#pragma once

#include <TuvoUtil/DebugConfig.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace debugconfig {

inline std::wstring_view View(const BuString& text) noexcept
{
    return {text.GetText(), static_cast<std::size_t>(text.GetLength())};
}

// A whole copy of a text: a plain copy is empty when memory is exhausted.
BuString Copy(const BuString& text);
BuString Copy(const std::wstring& text);

struct Parameter
{
    std::size_t order = 0;  // grows from parameter to parameter of its module
    BuString name;
    BuString text;
    int integer = 0;
    double real = 0.0;
};

struct Module : UtlModule
{
    Module(const BuString& name, std::size_t order);

    BuString& Name() noexcept { return m_name; }
    BuString& File() noexcept { return m_file; }

    // The position of one of the parameters.
    std::size_t PositionOf(const Parameter& parameter) const noexcept;

    std::size_t order;  // position in the registry
    std::vector<std::unique_ptr<Parameter>> parameters;
};

// A parameter and the module that holds it.
struct Holder
{
    Module* module = nullptr;
    Parameter* parameter = nullptr;
};

// The holders of one name, in the order of their modules. Nearly always there is one, which takes no block of its own.
class Holders
{
public:
    bool IsEmpty() const noexcept { return m_first.module == nullptr; }
    const Holder& First() const noexcept { return m_first; }  // null pointers when there is none
    Parameter* Find(const Module& module) const noexcept;     // null when the module is not among them

    void Add(const Holder& holder);  // the module must not be among them
    void Remove(const Module& module) noexcept;

private:
    Holder m_first;
    std::vector<Holder> m_others;
};

class Registry
{
public:
    const std::vector<std::unique_ptr<Module>>& Modules() const noexcept { return m_modules; }

    // Null when there is no such module, or no such parameter in it.
    Module* FindModule(const BuString& name) const noexcept;
    const Parameter* Find(const Module& module, const BuString& name) const noexcept;

    // The parameter in the first module that has it; null pointers when none has.
    Holder FindFirst(const BuString& name) const noexcept;

    Module& AddModule(const BuString& name);
    void TakeBackModule() noexcept;  // the one that was added last, which has no parameters

    // Gives a parameter a text, after adding it to the module if need be; false when it has this text already.
    bool Set(Module& module, const BuString& name, const BuString& text);

    bool Remove(Module& module, const BuString& name) noexcept;  // false when it is not there
    void Clear(Module& module) noexcept;

private:
    // Not noexcept: libstdc++ then keeps the hash of each name, and compares it before the name.
    struct Hash
    {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view text) const { return std::hash<std::wstring_view>{}(text); }
    };
    template <typename T>
    using ByName = std::unordered_map<std::wstring, T, Hash, std::equal_to<>>;

    void Add(Module& module, const BuString& name, const BuString& text);
    void Forget(const Module& module, const BuString& name) noexcept;

    std::vector<std::unique_ptr<Module>> m_modules;
    ByName<Module*> m_modulesByName;
    ByName<Holders> m_holdersByName;  // an entry without holders counts as none
};

}  // namespace debugconfig
