#include <basutl/BuFileFind.h>

#include "basutl/DirectoryNames.h"
#include "basutl/NamePattern.h"
#include "basutl/PathText.h"

#include <utility>

bool BuFileFind::FindFirstFileName(const wchar_t* pattern, BuString& name) noexcept
{
    FindCloseName();
    if (pattern == nullptr)
        return false;
    const std::size_t lastName = FindLastName(pattern);
    BuString directory = BuString(pattern).Left(static_cast<int>(lastName));
    if (lastName == 0)
        directory = L".";
    const auto isWanted = [&](const std::wstring& entry) {
        return MatchesNamePattern(pattern + lastName, entry.c_str());
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
