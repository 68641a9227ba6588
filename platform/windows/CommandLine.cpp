#include "platform/windows/CommandLine.h"

namespace {

// Backslashes are doubled where a quote follows and nowhere else; that quote is the argument's own or the closing one.
void AppendQuoted(std::wstring& line, const std::wstring& argument)
{
    std::size_t backslashes = 0;
    line += L'"';
    for (const wchar_t unit : argument) {
        if (unit == L'"')
            line.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        line += unit;
    }
    line.append(backslashes, L'\\');
    line += L'"';
}

}  // namespace

std::wstring platform::CommandLine(const std::vector<std::wstring>& arguments)
{
    std::wstring line;
    for (const std::wstring& argument : arguments) {
        if (!line.empty())
            line += L' ';
        if (argument.empty() || argument.find_first_of(L" \t\n\v\"") != std::wstring::npos)
            AppendQuoted(line, argument);
        else
            line += argument;
    }
    return line;
}
