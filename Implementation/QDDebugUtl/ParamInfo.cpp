#include <TuvoUtil/DebugConfig.h>

#include "QDDebugUtl/ConfigFile.h"
#include "QDDebugUtl/Registry.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuLocalize.h>

#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using debugconfig::Copy;
using debugconfig::Holder;
using debugconfig::Module;
using debugconfig::Parameter;
using debugconfig::Registry;
using debugconfig::View;
using platform::Guarded;

enum Result : int
{
    OutOfMemory = -1,
    NotReadToItsEnd = -1,
    Success = 0,
    NotOpened = 1,
    NotWritten = 1,
    NoHandler = 1,
    LineIsEmpty = 1,
    ModuleExists = 1,
    TextIsTheSame = 1,
    NotInModule = 1,
    NotFound = 2,
    NoModules = 3
};

constexpr int ReportLevel = 1;

void ClearNumbers(int* integer, double* real)
{
    if (integer != nullptr)
        *integer = 0;
    if (real != nullptr)
        *real = 0.0;
}

// Stores the values of a parameter where they are wanted.
int Give(const Parameter& parameter, int* integer, double* real, BuString* text)
{
    return Guarded<int>(OutOfMemory, [&] {
        if (text != nullptr)
            *text = Copy(parameter.text);
        if (integer != nullptr)
            *integer = parameter.integer;
        if (real != nullptr)
            *real = parameter.real;
        return Success;
    });
}

template <typename T>
void Add(BuTemplateArray<T>& items, T item)
{
    if (items.Add(std::move(item)) < 0)
        throw std::bad_alloc();
}

// Fills two new arrays, which then take the place of the caller's; exhausted memory leaves these as they were.
template <typename First, typename Second, typename Fill>
int Refill(BuTemplateArray<First>& first, BuTemplateArray<Second>& second, Fill fill)
{
    return Guarded<int>(OutOfMemory, [&] {
        BuTemplateArray<First> newFirst;
        BuTemplateArray<Second> newSecond;
        fill(newFirst, newSecond);
        first.Swap(newFirst);
        second.Swap(newSecond);
        return Success;
    });
}

std::string Narrow(const BuString& text)
{
    return platform::Narrow(View(text));
}

BuString WideLine(std::string_view line)
{
    return Copy(platform::Widen(line.substr(0, line.find('\0'))));
}

int SplitLine(const BuString& line, BuString& name, BuString& value)
{
    const int colon = line.Find(L':');
    if (colon < 0 || line.GetAt(0) == L'#')
        return LineIsEmpty;
    int nameEnd = colon;
    while (line.GetAt(nameEnd - 1) == L' ')
        --nameEnd;
    name = line.Left(nameEnd);
    value = line.Mid(colon + 1, line.GetLength());
    if (name.GetLength() != nameEnd || value.GetLength() != line.GetLength() - colon - 1)
        return OutOfMemory;
    return value.TrimLeft().IsEmpty() ? LineIsEmpty : Success;
}

// Gives a module the parameters of a file.
void AddLines(Registry& registry, Module& module, std::string_view text)
{
    BuString name;
    BuString value;
    debugconfig::ForEachLine(text, [&](std::string_view line) {
        const int result = SplitLine(WideLine(line), name, value);
        if (result == OutOfMemory)
            throw std::bad_alloc();
        if (result == Success)
            registry.Set(module, name, value);
    });
}

std::string ReadingTitle(const BuString& module, const BuString& file)
{
    BuString title;
    if (title.Format(BuLocalizeStringExW(L"Reading parameters of module \"%s\", from file %s", 0), module.GetText(),
                     file.GetText()) < 0)
        throw std::bad_alloc();
    return Narrow(title);
}

std::vector<std::string> Listing(const Registry* registry, const BuString& title)
{
    std::vector<std::string> lines = {Narrow(title)};
    if (registry == nullptr)
        return lines;
    for (const auto& module : registry->Modules()) {
        const std::string file = Narrow(module->GetFile());
        lines.push_back("  " + Narrow(module->GetName()) + (file.empty() ? "" : ", from file " + file));
        for (const auto& parameter : module->parameters)
            lines.push_back("    " + Narrow(parameter->name) + " : " + Narrow(parameter->text));
    }
    return lines;
}

// Hands out the lines that `compose` gives. They are complete before the first is, since the handler may change what
// they are about. What it throws goes to the caller of the library.
template <typename Compose>
int Report(UtlParamMessageHandler handler, Compose compose)
{
    std::vector<std::string> lines;
    const int result = Guarded<int>(OutOfMemory, [&] {
        lines = compose();
        return Success;
    });
    for (const std::string& line : lines)
        handler(ReportLevel, line.c_str());
    return result;
}

bool HasModules(const Registry* registry)
{
    return registry != nullptr && !registry->Modules().empty();
}

}  // namespace

UtlParamInfo::UtlParamInfo() noexcept = default;

UtlParamInfo::~UtlParamInfo()
{
    delete m_registry;
}

// ---- Files ---------------------------------------------------------------------------------------------------------

int UtlParamInfo::ReadParamsWithValues(const BuString& module, const BuString& file, int verbose, int clear)
{
    const UtlParamMessageHandler handler = verbose != 0 ? m_handler : nullptr;
    if (handler != nullptr)
        if (Report(handler, [&] { return std::vector<std::string>{ReadingTitle(module, file)}; }) != Success)
            return OutOfMemory;

    const int result = Guarded<int>(OutOfMemory, [&]() -> int {
        std::string text;
        const debugconfig::ReadResult read = debugconfig::ReadText(file, text);
        if (read != debugconfig::ReadResult::Done)
            return read == debugconfig::ReadResult::NotOpened ? NotOpened : NotReadToItsEnd;
        BuString path = Copy(file);
        UtlModule* target = nullptr;
        if (ConfigCheckAndAddModule(module, target) == OutOfMemory)
            return OutOfMemory;
        Module& taker = *static_cast<Module*>(target);
        if (clear != 0)
            m_registry->Clear(taker);
        taker.File() = std::move(path);
        AddLines(*m_registry, taker, text);
        return Success;
    });
    if (result != Success || handler == nullptr)
        return result;
    return PrintModuleInfo(BuLocalizeStringExW(L"Reading parameters of module", 0), handler);
}

int UtlParamInfo::ConfGetGetParamAndValueStrings(BuString& line, BuString& name, BuString& value)
{
    return SplitLine(line, name, value);
}

int UtlParamInfo::WriteInfoToFile(const BuString& module, const BuString* fileName)
{
    if (!HasModules(m_registry))
        return Success;
    return Guarded<int>(OutOfMemory, [&] {
        bool isDone = true;
        for (const debugconfig::FileChange& change : debugconfig::PlanChanges(*m_registry, module, fileName))
            isDone = debugconfig::Apply(change) && isDone;
        return isDone ? Success : NotWritten;
    });
}

// ---- Questions -----------------------------------------------------------------------------------------------------

int UtlParamInfo::GetCustomConfigInfo(const BuString* module, const BuString& name, int* intValue, double* realValue,
                                      BuString* textValue)
{
    ClearNumbers(intValue, realValue);
    if (!HasModules(m_registry))
        return NoModules;
    if (module != nullptr)
        return GetModuleParamValue(m_registry->FindModule(*module), name, intValue, realValue, textValue);
    const Parameter* const parameter = m_registry->FindFirst(name).parameter;
    return parameter != nullptr ? Give(*parameter, intValue, realValue, textValue) : NotFound;
}

int UtlParamInfo::GetModuleParamValue(const UtlModule* module, const BuString& name, int* intValue, double* realValue,
                                      BuString* textValue)
{
    ClearNumbers(intValue, realValue);
    if (module == nullptr || m_registry == nullptr)
        return NotFound;
    const Parameter* const parameter = m_registry->Find(*static_cast<const Module*>(module), name);
    return parameter != nullptr ? Give(*parameter, intValue, realValue, textValue) : NotInModule;
}

int UtlParamInfo::GetModuleContainingParam(const BuString& name, UtlModule*& module, int& position)
{
    const Holder holder = m_registry != nullptr ? m_registry->FindFirst(name) : Holder{};
    module = holder.module;
    position = holder.module != nullptr ? static_cast<int>(holder.module->PositionOf(*holder.parameter)) : -1;
    return holder.module != nullptr ? Success : NotFound;
}

int UtlParamInfo::GetModuleInfo(const BuString& module, BuTemplateArray<BuString>& names,
                                BuTemplateArray<BuString>& values)
{
    const Module* const found = m_registry != nullptr ? m_registry->FindModule(module) : nullptr;
    const int result = Refill(names, values, [&](auto& newNames, auto& newValues) {
        if (found == nullptr)
            return;
        for (const auto& parameter : found->parameters) {
            Add(newNames, Copy(parameter->name));
            Add(newValues, Copy(parameter->text));
        }
    });
    return result == Success && found == nullptr ? NotFound : result;
}

int UtlParamInfo::GetModuleAndFileNames(BuTemplateArray<BuString>& modules, BuTemplateArray<BuString*>& files)
{
    return Refill(modules, files, [&](auto& newModules, auto& newFiles) {
        if (m_registry == nullptr)
            return;
        for (const auto& module : m_registry->Modules()) {
            Add(newModules, Copy(module->GetName()));
            Add(newFiles, &module->File());
        }
    });
}

int UtlParamInfo::IsModuleInitialized()
{
    return HasModules(m_registry) ? 1 : 0;
}

// ---- Changes -------------------------------------------------------------------------------------------------------

int UtlParamInfo::GetModuleFromName(const BuString& name, UtlModule*& module)
{
    module = m_registry != nullptr ? m_registry->FindModule(name) : nullptr;
    return module != nullptr ? Success : NotFound;
}

int UtlParamInfo::ConfigCheckAndAddModule(const BuString& name, UtlModule*& module)
{
    if (GetModuleFromName(name, module) == Success)
        return ModuleExists;
    return Guarded<int>(OutOfMemory, [&] {
        if (m_registry == nullptr)
            m_registry = new Registry;
        module = &m_registry->AddModule(name);
        return Success;
    });
}

int UtlParamInfo::CheckAndAddParamWithValue(const BuString* module, const BuString& name, const BuString& value)
{
    UtlModule* target = nullptr;
    const int added = module != nullptr ? ConfigCheckAndAddModule(*module, target) : ModuleExists;
    if (added == OutOfMemory)
        return OutOfMemory;
    if (module == nullptr && m_registry != nullptr)
        target = m_registry->FindFirst(name).module;
    if (target == nullptr)
        return NotFound;
    const int result = Guarded<int>(OutOfMemory, [&] {
        return m_registry->Set(*static_cast<Module*>(target), name, value) ? Success : TextIsTheSame;
    });
    if (result == OutOfMemory && added == Success)
        m_registry->TakeBackModule();
    return result;
}

int UtlParamInfo::SetConfigInfo(BuString* module, const BuString& name, const BuString& value)
{
    const int result = CheckAndAddParamWithValue(module, name, value);
    return result == TextIsTheSame ? Success : result;
}

int UtlParamInfo::RemoveParameter(const BuString* module, const BuString& name)
{
    if (m_registry == nullptr)
        return NotFound;
    Module* const holder = module != nullptr ? m_registry->FindModule(*module) : m_registry->FindFirst(name).module;
    if (holder == nullptr)
        return NotFound;
    return m_registry->Remove(*holder, name) ? Success : NotInModule;
}

int UtlParamInfo::ClearModuleInfo(const BuString& module)
{
    Module* const found = m_registry != nullptr ? m_registry->FindModule(module) : nullptr;
    if (found == nullptr)
        return NotFound;
    m_registry->Clear(*found);
    return Success;
}

int UtlParamInfo::ClearAll()
{
    delete std::exchange(m_registry, nullptr);
    return Success;
}

// ---- Reports -------------------------------------------------------------------------------------------------------

int UtlParamInfo::SetMessageHandler(int (*handler)(int level, const char* text))
{
    m_handler = handler;
    return Success;
}

int UtlParamInfo::PrintModuleInfo(BuString title, int (*handler)(int level, const char* text))
{
    if (handler == nullptr)
        return NoHandler;
    return Report(handler, [&] { return Listing(m_registry, title); });
}
