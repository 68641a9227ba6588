// Texts of ids and values.
#include <TuvoUtil/IdList.h>

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"

#include <basutl/BuNumber.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

// A text that grows. Once memory is exhausted, nothing more is added and there is no result.
class TextBuilder
{
public:
    // The place for up to `size` more characters, to be followed by SetEnd; null when memory is exhausted.
    char* Room(std::size_t size)
    {
        m_failed = !m_text.Reserve(m_text.Size() + size) || m_failed;
        return m_failed ? nullptr : m_text.end();
    }
    void SetEnd(const char* end) { m_text.Resize(static_cast<std::size_t>(end - m_text.Data())); }

    void Add(std::string_view part) { m_failed = !m_text.Append(part.data(), part.size()) || m_failed; }
    void Add(int id)
    {
        if (char* const to = Room(BuIntegerRoom))
            SetEnd(BuWriteInteger(to, id));
    }

    // The text for the caller of the library; null when memory was exhausted.
    char* Release() { return !m_failed && m_text.Append('\0') ? m_text.Release() : nullptr; }

private:
    ScratchBuffer<char, 512> m_text{modules::VUtlStr};
    bool m_failed = false;
};

// How values are written, with no more characters than `longest`.
template <typename T>
struct Written;

template <>
struct Written<int>
{
    static constexpr std::size_t longest = BuIntegerRoom;
    static char* Write(char* to, int id) { return BuWriteInteger(to, id); }
};

template <>
struct Written<float>
{
    static constexpr std::size_t longest = 48;  // the largest has 39 digits in front of the point, all have 6 behind it
    static char* Write(char* to, float value)
    {
        return std::to_chars(to, to + longest, static_cast<double>(value), std::chars_format::fixed, 6).ptr;
    }
};

char* Copy(std::string_view text, char* to)
{
    if (text.size() == 1)
        *to = text.front();
    else
        std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

template <typename T>
char* Join(const T* values, int count, const char* separator)
{
    if (values == nullptr || count < 1)
        return nullptr;
    const std::string_view between = separator != nullptr ? separator : ",";
    constexpr int most = 64;  // values that are written with one look at the memory
    TextBuilder text;
    for (int first = 0; first < count;) {
        const int last = first + std::min(count - first, most);
        char* to = text.Room((between.size() + Written<T>::longest) * most);
        if (to == nullptr)
            return nullptr;
        for (; first < last; ++first) {
            if (first > 0)
                to = Copy(between, to);
            to = Written<T>::Write(to, values[first]);
        }
        text.SetEnd(to);
    }
    return text.Release();
}

}  // namespace

char* UtlGenerateStringFromIdList(int* ids, int count, char* separator)
{
    return Join(ids, count, separator);
}

char* UtlGenerateStringFromFloatList(float* values, int count, char* separator)
{
    return Join(values, count, separator);
}

char* UtlStrGenerateIdStringSafe(int* ids, int count, const char* rangeSeparator)
{
    if (ids == nullptr || count < 1)
        return nullptr;
    const std::string_view between = rangeSeparator != nullptr ? rangeSeparator : "-";
    // Kept: a run that would be closed by a comma, or by nothing, is not closed at all.
    const bool closesRuns = !between.empty() && between != ",";
    TextBuilder text;
    text.Add(ids[0]);
    int previous = ids[0];
    bool inRun = false;
    for (int i = 1; i < count; ++i) {
        const int id = ids[i];
        const bool isLast = i == count - 1;
        const bool continues = id == std::int64_t{previous} + 1;
        inRun = closesRuns && (inRun || continues);
        if (!continues || isLast) {
            // Kept: a run ends one id before the last one, which follows as an item of its own.
            if (inRun) {
                text.Add(between);
                text.Add(previous);
            }
            if (!inRun || !isLast || id != previous) {
                text.Add(",");
                text.Add(id);
            }
            inRun = false;
        }
        previous = id;
    }
    return text.Release();
}
