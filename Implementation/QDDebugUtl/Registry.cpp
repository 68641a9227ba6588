#include "QDDebugUtl/Registry.h"

#include <algorithm>
#include <new>
#include <utility>

namespace debugconfig {
namespace {

void SetText(Parameter& parameter, const BuString& text)
{
    parameter.text = Copy(text);
    parameter.integer = parameter.text.ToInt(10);
    parameter.real = parameter.text.ToDouble();
}

// Room for one more element, so that appending it cannot fail.
template <typename T>
void MakeRoom(std::vector<T>& elements)
{
    constexpr std::size_t first = 8;
    if (elements.size() == elements.capacity())
        elements.reserve(std::max(first, 2 * elements.size()));
}

// Where the holder of this module stands, or belongs.
template <typename Others>
auto Place(Others& others, const Module& module) noexcept
{
    return std::lower_bound(others.begin(), others.end(), module.order,
                            [](const Holder& holder, std::size_t order) { return holder.module->order < order; });
}

}  // namespace

BuString Copy(const BuString& text)
{
    BuString copy(text);
    if (copy.GetLength() != text.GetLength())
        throw std::bad_alloc();
    return copy;
}

BuString Copy(const std::wstring& text)
{
    BuString copy(text.c_str());
    if (View(copy).size() != text.size())
        throw std::bad_alloc();
    return copy;
}

Module::Module(const BuString& name, std::size_t position) : order(position)
{
    m_name = Copy(name);
}

std::size_t Module::PositionOf(const Parameter& parameter) const noexcept
{
    const auto place =
        std::lower_bound(parameters.begin(), parameters.end(), parameter.order,
                         [](const auto& candidate, std::size_t wanted) { return candidate->order < wanted; });
    return static_cast<std::size_t>(place - parameters.begin());
}

Parameter* Holders::Find(const Module& module) const noexcept
{
    if (m_first.module == &module)
        return m_first.parameter;
    const auto place = Place(m_others, module);
    return place != m_others.end() && place->module == &module ? place->parameter : nullptr;
}

void Holders::Add(const Holder& holder)
{
    if (IsEmpty()) {
        m_first = holder;
    } else if (holder.module->order > m_first.module->order) {
        m_others.insert(Place(m_others, *holder.module), holder);
    } else {
        m_others.insert(m_others.begin(), m_first);
        m_first = holder;
    }
}

void Holders::Remove(const Module& module) noexcept
{
    if (m_first.module != &module) {
        m_others.erase(Place(m_others, module));
    } else if (m_others.empty()) {
        m_first = {};
    } else {
        m_first = m_others.front();
        m_others.erase(m_others.begin());
    }
}

Module* Registry::FindModule(const BuString& name) const noexcept
{
    const auto found = m_modulesByName.find(View(name));
    return found == m_modulesByName.end() ? nullptr : found->second;
}

const Parameter* Registry::Find(const Module& module, const BuString& name) const noexcept
{
    const auto found = m_holdersByName.find(View(name));
    return found == m_holdersByName.end() ? nullptr : found->second.Find(module);
}

Holder Registry::FindFirst(const BuString& name) const noexcept
{
    const auto found = m_holdersByName.find(View(name));
    return found == m_holdersByName.end() ? Holder{} : found->second.First();
}

Module& Registry::AddModule(const BuString& name)
{
    auto module = std::make_unique<Module>(name, m_modules.size());
    MakeRoom(m_modules);
    m_modulesByName.try_emplace(std::wstring(View(name)), module.get());
    m_modules.push_back(std::move(module));
    return *m_modules.back();
}

void Registry::TakeBackModule() noexcept
{
    m_modulesByName.erase(m_modulesByName.find(View(m_modules.back()->GetName())));
    m_modules.pop_back();
}

bool Registry::Set(Module& module, const BuString& name, const BuString& text)
{
    const auto found = m_holdersByName.find(View(name));
    Parameter* const parameter = found == m_holdersByName.end() ? nullptr : found->second.Find(module);
    if (parameter == nullptr)
        Add(module, name, text);
    else if (parameter->text == text)
        return false;
    else
        SetText(*parameter, text);
    return true;
}

void Registry::Add(Module& module, const BuString& name, const BuString& text)
{
    auto parameter = std::make_unique<Parameter>();
    parameter->order = module.parameters.empty() ? 0 : module.parameters.back()->order + 1;
    parameter->name = Copy(name);
    SetText(*parameter, text);
    MakeRoom(module.parameters);
    m_holdersByName.try_emplace(std::wstring(View(name))).first->second.Add({&module, parameter.get()});
    module.parameters.push_back(std::move(parameter));
}

bool Registry::Remove(Module& module, const BuString& name) noexcept
{
    const Parameter* const parameter = Find(module, name);
    if (parameter == nullptr)
        return false;
    Forget(module, name);
    module.parameters.erase(module.parameters.begin() + static_cast<std::ptrdiff_t>(module.PositionOf(*parameter)));
    return true;
}

void Registry::Clear(Module& module) noexcept
{
    for (const auto& parameter : module.parameters)
        Forget(module, parameter->name);
    module.parameters.clear();
}

void Registry::Forget(const Module& module, const BuString& name) noexcept
{
    const auto found = m_holdersByName.find(View(name));
    found->second.Remove(module);
    if (found->second.IsEmpty())
        m_holdersByName.erase(found);
}

}  // namespace debugconfig
