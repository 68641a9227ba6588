#include <basutl/BuFileFind.h>

#include "basutl/DirectoryNames.h"
#include "basutl/PathText.h"

#include <basutl/BuCharacter.h>

#include <utility>

namespace {

bool MatchesExactly(wchar_t pattern, wchar_t character)
{
    return pattern == character;
}

bool MatchesWithoutCase(wchar_t pattern, wchar_t character)
{
    return BuToLower(pattern) == BuToLower(character);
}

// Only the last '*' seen needs to be retried: a match found with an earlier one can always be moved to the last.
bool Matches(const wchar_t* pattern, const wchar_t* name, bool (*matches)(wchar_t, wchar_t))
{
    const wchar_t* afterStar = nullptr;
    const wchar_t* retryAt = nullptr;
    while (*name != L'\0') {
        if (*pattern == L'*') {
            afterStar = ++pattern;
            retryAt = name;
        } else if (*pattern != L'\0' && (*pattern == L'?' || matches(*pattern, *name))) {
            ++pattern;
            ++name;
        } else if (afterStar != nullptr) {
            pattern = afterStar;
            name = ++retryAt;
        } else {
            return false;
        }
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == L'\0';
}

}  // namespace

bool BuFileFind::FindFirstFileName(const wchar_t* pattern, BuString& name) noexcept
{
    FindCloseName();
    if (pattern == nullptr)
        return false;
    const std::size_t lastName = FindLastName(pattern);
    BuString directory = BuString(pattern).Left(static_cast<int>(lastName));
    if (lastName == 0)
        directory = L".";
    const auto matches = platform::Separator() == L'\\' ? &MatchesWithoutCase : &MatchesExactly;
    const auto isWanted = [&](const std::wstring& entry) {
        return Matches(pattern + lastName, entry.c_str(), matches);
    };
    return ReadDirectoryNames(directory, m_names, isWanted) && FindNextFileName(name);
}

bool BuFileFind::FindNextFileName(BuString& name) noexcept
{
    if (m_next >= m_names.GetCount())
        return false;
    name = std::move(m_names[m_next++]);
    return true;
}

void BuFileFind::FindCloseName() noexcept
{
    m_names.RemoveAll();
    m_next = 0;
}
