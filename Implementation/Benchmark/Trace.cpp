#include "Benchmark/Trace.h"

#include "Benchmark/Log.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <basutl/BuChrono.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace tuvo::benchmark::trace {

constinit bool detail::isOn = false;

namespace {

// The file is an array of events; each is written over the end of it, and the end anew behind it.
constexpr char Start[] = "[";
constexpr char End[] = "\n]\n";
constexpr long EndLength = sizeof End - 1;

constinit std::FILE* g_file = nullptr;
constinit long long g_start = 0;
constinit bool g_hasEvents = false;

bool Write(const std::string& text) noexcept
{
    return std::fwrite(text.data(), 1, text.size(), g_file) == text.size() && std::fflush(g_file) == 0;
}

void Close() noexcept
{
    std::fclose(g_file);
    g_file = nullptr;
    detail::isOn = false;
}

void AppendFormatted(std::string& text, const char* format, auto... values)
{
    char piece[64];
    const int length = std::snprintf(piece, sizeof piece, format, values...);
    text.append(piece, static_cast<std::size_t>(length));
}

// ---- Names ---------------------------------------------------------------------------------------------------------

constexpr bool IsLeading(char32_t unit) noexcept
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsTrailing(char32_t unit) noexcept
{
    return unit >= 0xDC00 && unit < 0xE000;
}

// Takes the first character off a text; U+FFFD for what is none.
char32_t TakeCharacter(std::wstring_view& text) noexcept
{
    const auto first = static_cast<char32_t>(text[0]);
    const auto second = text.size() > 1 ? static_cast<char32_t>(text[1]) : U'\0';
    const bool isPair = IsLeading(first) && IsTrailing(second);
    text.remove_prefix(isPair ? 2 : 1);
    if (isPair)
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    return IsLeading(first) || IsTrailing(first) || first > 0x10FFFF ? 0xFFFD : first;
}

// JSON in ASCII alone.
void AppendString(std::string& json, std::wstring_view text)
{
    json += '"';
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (character == '"' || character == '\\')
            json.append(1, '\\').append(1, static_cast<char>(character));
        else if (character >= ' ' && character < 0x7F)
            json += static_cast<char>(character);
        else if (character < 0x10000)
            AppendFormatted(json, "\\u%04x", static_cast<unsigned int>(character));
        else
            AppendFormatted(json, "\\u%04x\\u%04x", static_cast<unsigned int>(0xD7C0 + (character >> 10)),
                            static_cast<unsigned int>(0xDC00 + (character & 0x3FF)));
    }
    json += '"';
}

// ---- Events --------------------------------------------------------------------------------------------------------

void AppendEvent(std::string& json, const wchar_t* name, char phase)
{
    const long long ticks = BuGetTick() - g_start;
    const unsigned long long nanoseconds = ticks > 0 ? static_cast<unsigned long long>(ticks) : 0;
    json += g_hasEvents ? ",\n" : "\n";
    json += R"({"name":)";
    AppendString(json, name);
    AppendFormatted(json, R"(,"ph":"%c","ts":%llu.%03llu)", phase, nanoseconds / 1000, nanoseconds % 1000);
    AppendFormatted(json, R"(,"pid":%u,"tid":1)", platform::ProcessId());
    json += phase == 'i' ? R"(,"s":"t"})" : "}";
    json += End;
}

void WriteEvent(const wchar_t* name, char phase) noexcept
{
    const bool isWritten = platform::Guarded(false, [=] {
        std::string json;
        AppendEvent(json, name, phase);
        return std::fseek(g_file, -EndLength, SEEK_CUR) == 0 && Write(json);
    });
    g_hasEvents = true;
    if (isWritten)
        return;
    Close();
    BuLogger::GetInstance().LogText(LogError, BuLocalizeStringExW(L"Benchmark trace: the file cannot be written, "
                                                                  L"tracing ends\n",
                                                                  0));
}

}  // namespace

bool Open(const wchar_t* path) noexcept
{
    g_file = platform::OpenFile(path, L"wb");
    if (g_file == nullptr)
        return false;
    g_start = BuGetTick();
    g_hasEvents = false;
    detail::isOn = platform::Guarded(false, [] { return Write(std::string(Start) + End); });
    if (!detail::isOn)
        Close();
    return detail::isOn;
}

void BeginSection(const wchar_t* name) noexcept
{
    WriteEvent(name, 'B');
}

void EndSection(const wchar_t* name) noexcept
{
    WriteEvent(name, 'E');
}

void AddStep(const wchar_t* name) noexcept
{
    WriteEvent(name, 'i');
}

}  // namespace tuvo::benchmark::trace
