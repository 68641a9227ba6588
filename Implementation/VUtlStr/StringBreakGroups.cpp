// Command lines whose groups in brackets and quotes stay whole, and the option of continuous delimiters.
//
// What must not divide a group is masked first and restored in the fields afterwards.
#include <TuvoUtil/StringBreak.h>

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"
#include "VUtlStr/FieldCut.h"

#include <basutl/BuCharacter.h>

#include <cstring>
#include <string_view>
#include <utility>

using kernels::DelimiterSet;

namespace {

constexpr char MaskedBlank = '#';
constexpr char MaskedHash = '`';
constexpr char MaskedDot = '~';

struct ContinuousDelimiters
{
    bool isOn;
    const char* delimiters;
};
constinit ContinuousDelimiters g_continuous = {false, fieldcut::Blank};

// Whether the place of a text that was walked to stands in a group.
class GroupState
{
public:
    bool IsInside() const { return m_isInside; }
    bool IsQuoted() const { return m_isQuoted; }

    // Goes on over a character; true when it opens or closes groups.
    bool Step(char c)
    {
        switch (c) {
            case '[':
            case '<':
            case '{':
                m_isInside = true;
                return true;
            case ']':
            case '>':
            case '}':
                m_isInside = false;
                return true;
            case '\'':
                m_isQuoted = !m_isQuoted;
                m_isInside = m_isQuoted;
                return true;
            default:
                return false;
        }
    }

private:
    bool m_isInside = false;
    bool m_isQuoted = false;
};

// Shrinks runs of white space outside groups to their first character, in place; gives the new length.
std::size_t CollapseBlanks(char* text)
{
    GroupState group;
    bool isAfterBlank = false;
    bool isAfterDeleted = false;
    char* out = text;
    for (const char* at = text; *at != '\0'; ++at) {
        const bool isBlank = !group.IsInside() && BuIsSpace(*at);
        const bool isDeleted = isBlank && isAfterBlank;
        // Kept: '<' and '>' that move to the place of a deleted blank do not count as brackets.
        if (!isAfterDeleted || (*at != '<' && *at != '>'))
            group.Step(*at);
        if (!isDeleted)
            *out++ = *at;
        isAfterBlank = isBlank;
        isAfterDeleted = isDeleted;
    }
    *out = '\0';
    return static_cast<std::size_t>(out - text);
}

struct Masked
{
    bool hashes;
    bool dots;
};

// Masks what stands in groups.
Masked MaskGroups(char* text, bool maskDots)
{
    Masked masked = {false, false};
    GroupState group;
    for (; *text != '\0'; ++text) {
        if (group.Step(*text) || !group.IsInside())
            continue;
        if (*text == ' ') {
            *text = MaskedBlank;
        } else if (*text == MaskedBlank) {
            *text = MaskedHash;
            masked.hashes = true;
        } else if (*text == '.' && maskDots && group.IsQuoted()) {
            *text = MaskedDot;
            masked.dots = true;
        }
    }
    return masked;
}

// What each character of a field is restored to. Kept: it is done to the whole field, outside groups too.
class Restoring
{
public:
    Restoring(Masked masked, bool blanksForCommas)
    {
        for (std::size_t i = 0; i < sizeof m_characters; ++i)
            m_characters[i] = static_cast<char>(i);
        At(MaskedBlank) = ' ';
        if (masked.hashes)
            At(MaskedHash) = '#';
        if (masked.dots)
            At(MaskedDot) = '.';
        if (blanksForCommas)
            At(',') = ' ';
    }

    void Restore(char** fields, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            for (char* at = fields[i]; *at != '\0'; ++at)
                *at = At(*at);
    }

private:
    char& At(char c) { return m_characters[static_cast<unsigned char>(c)]; }

    char m_characters[256];
};

// ---- Continuous delimiters -----------------------------------------------------------------------------------------

enum class Rewriting
{
    None,
    Done,
    Failed  // memory was exhausted
};

template <typename Char>
using View = std::basic_string_view<Char>;
template <typename Char>
using Buffer = ScratchBuffer<Char, 256>;

template <typename Char>
View<Char> ViewOf(const Buffer<Char>& buffer)
{
    return {buffer.Data(), buffer.Size()};
}

template <typename Char>
bool ReplaceAll(View<Char> text, View<Char> from, View<Char> to, Buffer<Char>& out)
{
    out.Clear();
    std::size_t start = 0;
    for (std::size_t found; (found = text.find(from, start)) != text.npos; start = found + from.size())
        if (!out.Append(text.data() + start, found - start) || !out.Append(to.data(), to.size()))
            return false;
    return out.Append(text.data() + start, text.size() - start);
}

// Puts a blank between every two of a character.
template <typename Char>
bool PartPairs(View<Char> text, Char character, Buffer<Char>& out)
{
    out.Clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text[i] == character && i + 1 < text.size() && text[i + 1] == character;
        if (!out.Append(text[i]) || (isPair && !out.Append(Char(' '))))
            return false;
    }
    return true;
}

// Stores the rewritten text and a NUL behind it, when there is something to rewrite.
template <typename Char>
Rewriting ResolveContinuous(View<Char> text, View<Char> delimiter, Buffer<Char>& result)
{
    if (delimiter.empty() || text.find(delimiter) == text.npos)
        return Rewriting::None;
    Buffer<Char> padded(modules::VUtlStr);  // the delimiter between two blanks
    if (!padded.Append(Char(' ')) || !padded.Append(delimiter.data(), delimiter.size()) || !padded.Append(Char(' ')))
        return Rewriting::Failed;
    const View<Char> blank = ViewOf(padded).substr(0, 1);
    const View<Char> blankBefore = ViewOf(padded).substr(0, delimiter.size() + 1);
    const View<Char> blankBehind = ViewOf(padded).substr(1);
    Buffer<Char> other(modules::VUtlStr);
    const bool isDone = ReplaceAll(text, blankBefore, delimiter, other) &&
                        ReplaceAll(ViewOf(other), blankBehind, delimiter, result) &&
                        ReplaceAll(ViewOf(result), blank, delimiter, other) &&
                        PartPairs(ViewOf(other), delimiter[0], result) && result.Append(Char(0));
    return isDone ? Rewriting::Done : Rewriting::Failed;
}

// What is still to be divided, and at which delimiters.
struct Rest
{
    std::string_view text;
    const char* delimiters;
};

// Rewrites it as the option wants it, with the new text in `storage`. False when memory is exhausted.
bool RewriteForOption(Rest& rest, Buffer<char>& storage)
{
    if (!g_continuous.isOn || g_continuous.delimiters == nullptr)
        return true;
    const Rewriting rewriting = ResolveContinuous<char>(rest.text, g_continuous.delimiters, storage);
    if (rewriting == Rewriting::Done)
        rest = {ViewOf(storage).substr(0, storage.Size() - 1), g_continuous.delimiters};
    return rewriting != Rewriting::Failed;
}

// Cuts the rest, moved to `target`, into its fields and restores what was masked in them.
void CutRest(const Rest& rest, Masked masked, char* target, char** fields, std::size_t count)
{
    std::memcpy(target, rest.text.data(), rest.text.size() + 1);
    fieldcut::CutTokens(target, rest.text.size(), DelimiterSet(rest.delimiters), fields, count);
    const bool blanksForCommas = g_continuous.isOn && rest.delimiters != nullptr && *rest.delimiters == ',';
    Restoring(masked, blanksForCommas).Restore(fields, count);
}

}  // namespace

int UtlBreakStringIntoStringsAndVariables(char* text, char*** fields, const char* delimiters)
{
    if (text == nullptr || *text == '\0' || fields == nullptr)
        return 0;
    *fields = nullptr;
    // Everything is prepared on a copy, so that the text is written only when nothing can fail any more.
    ScratchBuffer<char, 1024> line(modules::VUtlStr);
    if (!line.Append(text, std::strlen(text) + 1))
        return 0;
    const std::size_t length = CollapseBlanks(line.Data());
    const Masked masked = MaskGroups(line.Data(), delimiters != nullptr && *delimiters == '.');
    const std::size_t leading = DelimiterSet(delimiters).Contains(line[0]) ? 1 : 0;
    const std::size_t room = length - leading;
    Rest rest = {{line.Data() + leading, room}, delimiters};
    Buffer<char> rewritten(modules::VUtlStr);
    if (!RewriteForOption(rest, rewritten))
        return 0;

    const std::size_t count = fieldcut::CountTokens(rest.text.data(), rest.text.size(), DelimiterSet(rest.delimiters));
    const std::size_t tail = rest.text.size() <= room ? 0 : rest.text.size() + 1;
    char** const array = fieldcut::NewArray(leading + count, modules::VUtlStr, __LINE__, tail);
    if (array == nullptr)
        return 0;
    std::memcpy(text, line.Data(), length + 1);
    char** const divided = array + leading;
    if (leading != 0)
        array[0] = const_cast<char*>(fieldcut::Blank);
    CutRest(rest, masked, tail == 0 ? text + leading : reinterpret_cast<char*>(divided + count), divided, count);
    *fields = array;
    return static_cast<int>(leading + count);
}

void UtlSetBreakContinuousDelimsOption(int enable, char* delimiters)
{
    g_continuous = {enable != 0, delimiters};
}

int UtlStrGetResolvedContinuousDelimString(BuString& text, const char* delimiter)
{
    const BuString wideDelimiter(delimiter);
    Buffer<wchar_t> result(modules::VUtlStr);
    if (ResolveContinuous<wchar_t>(text.GetText(), wideDelimiter.GetText(), result) != Rewriting::Done)
        return 0;
    BuString resolved(result.Data());
    if (resolved.IsEmpty())  // memory is exhausted
        return 0;
    text = std::move(resolved);
    return 1;
}
