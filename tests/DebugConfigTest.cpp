#include <TuvoUtil/DebugConfig.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

const BuString Mesher = L"Mesher";

BuString Wide(const std::string& text)
{
    return platform::Widen(text).c_str();
}

BuString Wide(const std::wstring& text)
{
    return text.c_str();
}

class DebugConfig : public testing::Test
{
protected:
    // Reads a file of this content into a module.
    int Read(const std::string& content, const BuString& module = Mesher, int clear = 1, const char* name = "a.config")
    {
        return m_parameters.ReadParamsWithValues(module, Wide(m_folder.Write(name, content)), 0, clear);
    }
    Pairs Content(const BuString& module = Mesher)
    {
        BuTemplateArray<BuString> names;
        BuTemplateArray<BuString> values;
        m_parameters.GetModuleInfo(module, names, values);
        Pairs pairs;
        for (int i = 0; i < names.GetCount(); ++i)
            pairs.emplace_back(names[i].ToNarrow(), values[i].ToNarrow());
        return pairs;
    }
    std::string File(const char* name) const { return ReadTextFile(m_folder.Path(name)); }

    TemporaryFolder m_folder;
    UtlParamInfo m_parameters;
};

TEST_F(DebugConfig, ReadsTheLinesThatSayAValue)
{
    const std::string fullName(1021, 'n');
    const struct
    {
        std::string content;
        Pairs expected;
    } rows[] = {
        {"", {}},
        {"Trace : 3\n", {{"Trace", "3"}}},
        {"Trace:3", {{"Trace", "3"}}},
        {"Trace   : \t\v 3 4 \n", {{"Trace", "3 4 "}}},
        {" a\t: 1\n\n#b : 2\n #c : 3\n", {{" a\t", "1"}, {" #c", "3"}}},
        {"a\na:\nb: \t\n:::\nc::d\n:e\n", {{"", "e"}, {"c", ":d"}}},
        {"b : 1\na : 2\nb : 3\n", {{"b", "3"}, {"a", "2"}}},
        {"a:1\r\nb:\r\nc:2\r\n", {{"a", "1"}, {"c", "2"}}},
        {std::string("a:1\0b\nc\0:2\nd:3", 14), {{"a", "1"}, {"d", "3"}}},
        {"C:\\x : y\n", {{"C", "\\x : y"}}},
        // Pieces of 1023 bytes: one that ends with the line, one that loses its value, one that makes a comment.
        {fullName + ":1\r\nb:2\n", {{fullName, "1"}, {"b", "2"}}},
        {fullName + ":12:3\n", {{fullName, "1"}, {"2", "3"}}},
        {"a:" + std::string(1021, '1') + "#b:2\nc:3", {{"a", std::string(1021, '1')}, {"c", "3"}}},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(Read(row.content), 0);
        EXPECT_EQ(Content(), row.expected) << row.content;
    }
}

TEST_F(DebugConfig, KeepsAnyBytes)
{
    if (platform::Separator() != L'/')
        return;  // the code page decides there
    EXPECT_EQ(Read("gr\xC3\xB6\xC3\x9F\x65 \xFF: \xC3\r\r\n"), 0);
    EXPECT_EQ(Content(), (Pairs{{"gr\xC3\xB6\xC3\x9F\x65 \xFF", "\xC3\r"}}));
}

TEST_F(DebugConfig, TakesTheNumberAtTheStartOfAText)
{
    const struct
    {
        const wchar_t* text;
        int integer;
        double real;
    } rows[] = {{L"3", 3, 3.0},
                {L"3abc", 3, 3.0},
                {L"1e3", 1, 1000.0},
                {L"0x10", 0, 16.0},
                {L"-2.5", -2, -2.5},
                {L"on", 0, 0.0},
                {L"99999999999", 1215752191, 99999999999.0}};
    for (const auto& row : rows) {
        m_parameters.CheckAndAddParamWithValue(&Mesher, L"x", row.text);
        int integer = 77;
        double real = 77.0;
        BuString text;
        EXPECT_EQ(m_parameters.GetCustomConfigInfo(nullptr, L"x", &integer, &real, &text), 0);
        EXPECT_EQ(integer, row.integer) << row.text;
        EXPECT_EQ(real, row.real) << row.text;
        EXPECT_EQ(text, row.text);
    }
}

TEST_F(DebugConfig, ReadsAgainIntoTheSameModule)
{
    EXPECT_EQ(Read("a : 1\nb : 2\n"), 0);
    EXPECT_EQ(Read("c : 3\na : 4\n", Mesher, 0), 0);
    EXPECT_EQ(Content(), (Pairs{{"a", "4"}, {"b", "2"}, {"c", "3"}}));
    EXPECT_EQ(Read("b : 5\n", Mesher, 1), 0);
    EXPECT_EQ(Content(), (Pairs{{"b", "5"}}));
    for (const std::wstring& path : {m_folder.Path("missing"), m_folder.Path(), std::wstring()})
        EXPECT_EQ(m_parameters.ReadParamsWithValues(Mesher, Wide(path), 1, 1), 1);
    EXPECT_EQ(Content(), (Pairs{{"b", "5"}}));
    EXPECT_EQ(Read("", L"Other", 1), 0);
    EXPECT_EQ(m_parameters.ReadParamsWithValues(L"Third", L"missing", 0, 0), 1);
    BuTemplateArray<BuString> modules;
    BuTemplateArray<BuString*> files;
    EXPECT_EQ(m_parameters.GetModuleAndFileNames(modules, files), 0);
    ASSERT_EQ(modules.GetCount(), 2);
    EXPECT_EQ(modules[1], L"Other");
    EXPECT_EQ(files[1]->GetText(), m_folder.Path("a.config"));
}

TEST_F(DebugConfig, SaysWhatIsMissing)
{
    BuString other = L"Other";
    int integer = 7;
    BuString text = L"as before";
    const auto ask = [&](const BuString* module, const wchar_t* name) {
        integer = 7;
        double real = 7.0;
        const int result = m_parameters.GetCustomConfigInfo(module, name, &integer, &real, &text);
        EXPECT_TRUE(result == 0 || (integer == 0 && real == 0.0));
        return result;
    };
    EXPECT_EQ(m_parameters.IsModuleInitialized(), 0);
    EXPECT_EQ(ask(nullptr, L"a"), 3);
    EXPECT_EQ(ask(&Mesher, L"a"), 3);
    EXPECT_EQ(m_parameters.SetConfigInfo(nullptr, L"a", L"1"), 2);
    EXPECT_EQ(m_parameters.RemoveParameter(nullptr, L"a"), 2);
    EXPECT_EQ(m_parameters.ClearModuleInfo(Mesher), 2);
    EXPECT_EQ(m_parameters.WriteInfoToFile(L"", nullptr), 0);

    EXPECT_EQ(m_parameters.CheckAndAddParamWithValue(&Mesher, L"a", L"1"), 0);
    EXPECT_EQ(m_parameters.CheckAndAddParamWithValue(&Mesher, L"a", L"1"), 1);
    EXPECT_EQ(m_parameters.SetConfigInfo(nullptr, L"a", L"1"), 0);
    EXPECT_EQ(m_parameters.IsModuleInitialized(), 1);
    EXPECT_EQ(ask(&Mesher, L"A"), 1);
    EXPECT_EQ(ask(&other, L"a"), 2);
    EXPECT_EQ(ask(nullptr, L"b"), 2);
    EXPECT_EQ(m_parameters.RemoveParameter(&Mesher, L"b"), 1);
    EXPECT_EQ(m_parameters.RemoveParameter(&other, L"a"), 2);
    EXPECT_EQ(text, L"as before");
    EXPECT_EQ(m_parameters.GetModuleParamValue(nullptr, L"a", &integer, nullptr, nullptr), 2);

    // Of two modules the first counts.
    EXPECT_EQ(m_parameters.SetConfigInfo(&other, L"b", L"0"), 0);
    EXPECT_EQ(m_parameters.SetConfigInfo(&other, L"a", L"2"), 0);
    EXPECT_EQ(ask(nullptr, L"a"), 0);
    EXPECT_EQ(text, L"1");
    EXPECT_EQ(m_parameters.RemoveParameter(nullptr, L"a"), 0);
    UtlModule* module = nullptr;
    int position = -1;
    EXPECT_EQ(m_parameters.GetModuleContainingParam(L"a", module, position), 0);
    EXPECT_EQ(module->GetName(), L"Other");
    EXPECT_EQ(position, 1);
    EXPECT_EQ(m_parameters.GetModuleParamValue(module, L"a", &integer, nullptr, nullptr), 0);
    EXPECT_EQ(integer, 2);
    EXPECT_EQ(m_parameters.GetModuleContainingParam(L"none", module, position), 2);
    EXPECT_EQ(module, nullptr);
    EXPECT_EQ(position, -1);
}

// The same set of modules as lists that are searched from the start.
struct PlainModules
{
    struct Module
    {
        std::string name;
        Pairs parameters;
    };

    static auto Find(Pairs& parameters, const std::string& name)
    {
        return std::find_if(parameters.begin(), parameters.end(), [&](const auto& pair) { return pair.first == name; });
    }
    Module* FindModule(const std::string& name)
    {
        for (Module& module : modules)
            if (module.name == name)
                return &module;
        return nullptr;
    }
    Module* FirstWith(const std::string& name)
    {
        for (Module& module : modules)
            if (Find(module.parameters, name) != module.parameters.end())
                return &module;
        return nullptr;
    }

    std::vector<Module> modules;
};

TEST_F(DebugConfig, AgreesWithPlainLists)
{
    std::mt19937 random(5);
    PlainModules plain;
    for (int step = 0; step < 20'000; ++step) {
        const std::string moduleName = "M" + std::to_string(random() % 5);
        const std::string name = "p" + std::to_string(random() % 12);
        const std::string value = std::to_string(random() % 3);
        const BuString module = Wide(moduleName);
        const BuString* const given = random() % 2 == 0 ? &module : nullptr;
        PlainModules::Module* target = given != nullptr ? plain.FindModule(moduleName) : plain.FirstWith(name);
        int expected = target == nullptr ? 2 : 0;
        switch (random() % 50) {
            case 0:
                target = plain.FindModule(moduleName);
                EXPECT_EQ(m_parameters.ClearModuleInfo(module), target == nullptr ? 2 : 0);
                if (target != nullptr)
                    target->parameters.clear();
                break;
            case 1:
                if (random() % 10 == 0) {
                    m_parameters.ClearAll();
                    plain.modules.clear();
                }
                break;
            default:
                if (random() % 2 == 0) {
                    if (given != nullptr && target == nullptr)
                        target = &plain.modules.emplace_back(PlainModules::Module{moduleName, {}});
                    expected = target == nullptr ? 2 : 0;
                    if (target != nullptr) {
                        const auto place = PlainModules::Find(target->parameters, name);
                        if (place == target->parameters.end())
                            target->parameters.emplace_back(name, value);
                        else if (place->second == value)
                            expected = 1;
                        else
                            place->second = value;
                    }
                    EXPECT_EQ(m_parameters.CheckAndAddParamWithValue(given, Wide(name), Wide(value)), expected);
                } else {
                    if (target != nullptr) {
                        const auto place = PlainModules::Find(target->parameters, name);
                        expected = place == target->parameters.end() ? 1 : 0;
                        if (expected == 0)
                            target->parameters.erase(place);
                    }
                    EXPECT_EQ(m_parameters.RemoveParameter(given, Wide(name)), expected);
                }
        }
        PlainModules::Module* const first = plain.FirstWith(name);
        BuString text;
        ASSERT_EQ(m_parameters.GetCustomConfigInfo(nullptr, Wide(name), nullptr, nullptr, &text),
                  first != nullptr ? 0 : (plain.modules.empty() ? 3 : 2));
        if (first != nullptr) {
            ASSERT_EQ(text.ToNarrow(), PlainModules::Find(first->parameters, name)->second);
        }
        PlainModules::Module* const same = plain.FindModule(moduleName);
        ASSERT_EQ(Content(module), same != nullptr ? same->parameters : Pairs()) << step;
    }
}

// The table of docs/debug-config.md, for the file that it shows.
TEST_F(DebugConfig, ReadsTheExampleOfTheGuide)
{
    ASSERT_EQ(Read(ReadTextFile(platform::Widen(SourceFile("data/MovraDebug.config")))), 0);
    std::string table;
    for (const auto& [name, text] : Content()) {
        int integer = 0;
        double real = 0.0;
        m_parameters.GetCustomConfigInfo(&Mesher, Wide(name), &integer, &real, nullptr);
        table += "| `" + name + "` | `" + text + "` | " + std::to_string(integer) + " | " +
                 (real == 1e-6 ? "1e-6" : std::to_string(static_cast<int>(real))) + " |\n";
    }
    const std::string guide = ReadTextFile(platform::Widen(SourceFile("docs/debug-config.md")));
    EXPECT_NE(guide.find("|---|---|---|---|\n" + table + '\n'), guide.npos) << table;
}

TEST_F(DebugConfig, WritesWhatReadsBack)
{
    Read("# lost\nb : 2 \na : 1\n: no name\n");
    m_parameters.SetConfigInfo(nullptr, L"b", L"");
    m_parameters.CheckAndAddParamWithValue(&Mesher, L"c d", L"0x10: 7");
    EXPECT_EQ(m_parameters.WriteInfoToFile(Mesher, nullptr), 0);
    EXPECT_EQ(File("a.config"), "a : 1\nc d : 0x10: 7\n");
    Read(File("a.config"), L"Copy");
    EXPECT_EQ(Content(L"Copy"), (Pairs{{"a", "1"}, {"c d", "0x10: 7"}}));
    std::vector<std::wstring> names;
    platform::ListDirectory(m_folder.Path().c_str(), names);
    EXPECT_EQ(names.size(), 1u);
}

class DebugConfigFiles : public DebugConfig
{
protected:
    DebugConfigFiles() { platform::CreateOneDirectory(m_folder.Path("sub").c_str()); }

    // Modules A and B of one file, by two paths, C of another, D of one of the same name in a folder.
    void ReadAll()
    {
        m_parameters.ClearAll();
        Read("a : 1\n", L"A", 0, "shared");
        m_folder.Write("shared", "b : 2\n");
        const std::wstring separator(1, platform::Separator());
        const std::wstring detour = m_folder.Path("sub") + separator + L".." + separator + L"shared";
        EXPECT_EQ(m_parameters.ReadParamsWithValues(L"B", Wide(detour), 0, 0), 0);
        Read("c : 3\n", L"C", 0, "other");
        Read("d : 4\n", L"D", 0, "sub/shared");
        m_folder.Write("shared", "#s\n");
        m_folder.Write("other", "#o\n");
        m_folder.Write("sub/shared", "#b\n");
        m_parameters.CheckAndAddParamWithValue(&Mesher, L"not in a file", L"5");
    }
};

TEST_F(DebugConfigFiles, AreWrittenWhenTheyAreMeant)
{
    const BuString none;
    const BuString shared = L"shared";
    const BuString other = L"other";
    const BuString unknown = L"unknown";
    const bool isPosix = platform::Separator() == L'/';  // where '/' divides names
    const struct
    {
        BuString module;
        const BuString* fileName;
        std::string shared, other, below;
    } rows[] = {
        {none, nullptr, "#s\na : 1\nb : 2\n", "#o\nc : 3\n", "#b\nd : 4\n"},
        {none, &shared, "a : 1\nb : 2\n", "#o\n", isPosix ? "d : 4\n" : "#b\n"},
        {none, &other, "#s\n", "c : 3\n", "#b\n"},
        {none, &unknown, "#s\n", "#o\n", "#b\n"},
        {L"A", nullptr, "a : 1\n", "#o\n", "#b\n"},
        {Mesher, nullptr, "#s\n", "#o\n", "#b\n"},
        {unknown, nullptr, "#s\n", "#o\n", "#b\n"},
        {L"A", &other, "a : 1\n", "", "#b\n"},
        {L"C", &shared, "", "c : 3\n", isPosix ? "" : "#b\n"},
        {unknown, &other, "#s\n", "", "#b\n"},
    };
    for (const auto& row : rows) {
        ReadAll();
        const std::string label =
            row.module.ToNarrow() + " " + (row.fileName != nullptr ? row.fileName->ToNarrow() : "any");
        EXPECT_EQ(m_parameters.WriteInfoToFile(row.module, row.fileName), 0) << label;
        EXPECT_EQ(File("shared"), row.shared) << label;
        EXPECT_EQ(File("other"), row.other) << label;
        EXPECT_EQ(File("sub/shared"), row.below) << label;
        EXPECT_EQ(platform::Access(m_folder.Path("other").c_str(), 0), row.other.empty() ? -1 : 0) << label;
    }
}

TEST_F(DebugConfigFiles, StayAsTheyAreWhenTheyCannotBeWritten)
{
    ReadAll();
    // A folder has taken the place of one file; the others are written all the same.
    platform::RemoveOneFile(m_folder.Path("other").c_str());
    platform::CreateOneDirectory(m_folder.Path("other").c_str());
    m_folder.Write("other/inside", "1");
    for (const wchar_t* const module : {L"", L"C"})
        EXPECT_EQ(m_parameters.WriteInfoToFile(module, nullptr), 1);
    EXPECT_EQ(File("other/inside"), "1");
    EXPECT_EQ(File("shared"), "#s\na : 1\nb : 2\n");
    EXPECT_EQ(File("sub/shared"), "#b\nd : 4\n");
    std::vector<std::wstring> names;
    platform::ListDirectory(m_folder.Path().c_str(), names);
    EXPECT_EQ(names.size(), 3u);
}

std::vector<std::string> g_lines;
UtlParamInfo* g_cleared = nullptr;

int Keep(int level, const char* text)
{
    g_lines.push_back(std::to_string(level) + ' ' + text);
    if (g_cleared != nullptr)
        g_cleared->ClearAll();
    return 7;
}

TEST_F(DebugConfig, ReportsToTheHandler)
{
    Read("a : 1\n", L"100%s");
    m_parameters.CheckAndAddParamWithValue(&Mesher, L"b", L"%n");
    EXPECT_EQ(m_parameters.PrintModuleInfo(L"All", nullptr), 1);
    EXPECT_EQ(m_parameters.SetMessageHandler(Keep), 0);
    Read("a : 1\n", L"100%s");
    EXPECT_TRUE(g_lines.empty()) << "not verbose";

    const BuString file = Wide(m_folder.Path("a.config"));
    EXPECT_EQ(m_parameters.ReadParamsWithValues(L"100%s", file, 1, 1), 0);
    const std::vector<std::string> expected = {
        "1 Reading parameters of module \"100%s\", from file " + file.ToNarrow(),
        "1 Reading parameters of module",
        "1   100%s, from file " + file.ToNarrow(),
        "1     a : 1",
        "1   Mesher",
        "1     b : %n",
    };
    EXPECT_EQ(std::exchange(g_lines, {}), expected);

    EXPECT_EQ(m_parameters.ReadParamsWithValues(L"M", L"missing", 1, 1), 1);
    EXPECT_EQ(std::exchange(g_lines, {}),
              std::vector<std::string>{"1 Reading parameters of module \"M\", from file missing"});

    g_cleared = &m_parameters;
    EXPECT_EQ(m_parameters.PrintModuleInfo(L"All", Keep), 0);
    g_cleared = nullptr;
    EXPECT_EQ(std::exchange(g_lines, {}).size(), 5u) << "a handler that removes what is listed";
    g_lines.shrink_to_fit();
}

TEST_IN_CHILD(QDDebugUtl, LooksForTheFileAndReadsItOnce)
{
    const TemporaryFolder folder;
    for (const char* const name : {"bin", "bin/win64", "Site", "user"})
        platform::CreateOneDirectory(folder.Path(name).c_str());
    const BuString a = L"a";
    const auto read = [](int reread, const wchar_t* module = L"", const wchar_t* file = L"") {
        return QDDebugUtl::ReadConfigInfo(reread, module, file, 0);
    };

    EXPECT_EQ(QDDebugUtl::SetUserDir(Wide(folder.Path("user"))), 0);
    EXPECT_EQ(QDDebugUtl::SetBinDir(Wide(folder.Path("bin/win64"))), 0);
    EXPECT_EQ(QDDebugUtl::m_sBinDir.GetText(), folder.Path("bin/win64") + platform::Separator());
    EXPECT_EQ(read(0), 2);
    EXPECT_EQ(QDDebugUtl::IsModuleInitialized(), 0);

    folder.Write("Site/MovraDebug.config", "a : 1\nb : 5\n");
    EXPECT_EQ(read(0), 1) << "it counts as read";
    EXPECT_EQ(read(1), 0);
    EXPECT_EQ(QDDebugUtl::GetCustomConfigIntVal(a), 1);
    EXPECT_EQ(QDDebugUtl::GetCustomConfigIntVal(L"none"), 0);

    folder.Write("user/MovraDebug.config", "a : 2\n");
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(read(1), 0);
    EXPECT_EQ(QDDebugUtl::GetCustomConfigIntVal(a), 2);
    EXPECT_EQ(QDDebugUtl::GetCustomConfigIntVal(L"b"), 0) << "a module that is read again starts empty";
    folder.Write("Site/x.config", "a : 3\nx : 1\n");
    EXPECT_EQ(read(1, L"X", L"x.config"), 0) << "not in the user directory";
    EXPECT_EQ(QDDebugUtl::GetCustomConfigIntVal(a), 2) << "the first module counts";
    BuTemplateArray<BuString> names;
    EXPECT_EQ(QDDebugUtl::GetModuleNames(names), 0);
    ASSERT_EQ(names.GetCount(), 2);
    EXPECT_EQ(names[0], L"Vdb");
    EXPECT_EQ(names[1], L"X");

    BuString module = L"X";
    EXPECT_EQ(QDDebugUtl::SetConfigInfo(&module, L"a", L"4"), 0);
    EXPECT_EQ(QDDebugUtl::CheckAndAddParamWithValue(&module, a, L"4"), 1);
    EXPECT_EQ(QDDebugUtl::RemoveParameter(&module, L"x"), 0);
    EXPECT_EQ(QDDebugUtl::WriteInfoToFile(module, nullptr), 0);
    EXPECT_EQ(ReadTextFile(folder.Path("Site/x.config")), "a : 4\n");
    EXPECT_EQ(QDDebugUtl::ClearModuleInfo(L"Vdb"), 0);
    EXPECT_EQ(QDDebugUtl::GetCustomConfigIntVal(a), 4);
    EXPECT_EQ(QDDebugUtl::ClearAll(), 0);
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(QDDebugUtl::GetCustomConfigInfo(nullptr, a, nullptr, nullptr, nullptr), 3);
}

}  // namespace
