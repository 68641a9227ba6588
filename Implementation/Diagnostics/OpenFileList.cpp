#include "Diagnostics/OpenFileList.h"

OpenFileList::OpenFileList(std::uint64_t number, OpenFile file)
{
    const auto entry = m_files.emplace(number, std::move(file)).first;
    m_paths.emplace(entry->second.path, number);
    m_streams.emplace(nullptr, number);
}

void OpenFileList::Add(OpenFileList& one, std::FILE* stream) noexcept
{
    auto streamOfOne = one.m_streams.extract(one.m_streams.begin());
    streamOfOne.value().first = stream;
    m_streams.insert(std::move(streamOfOne));
    m_paths.merge(one.m_paths);
    m_files.merge(one.m_files);
}

const OpenFile* OpenFileList::FindPath(std::string_view path) const noexcept
{
    const auto found = m_paths.lower_bound({path, 0});
    return found != m_paths.end() && found->first == path ? &m_files.find(found->second)->second : nullptr;
}

bool OpenFileList::RemoveStream(std::FILE* stream) noexcept
{
    const auto found = m_streams.lower_bound({stream, 0});
    if (found == m_streams.end() || found->first != stream)
        return false;
    const auto file = m_files.find(found->second);
    m_paths.erase({file->second.path, file->first});
    m_streams.erase(found);
    m_files.erase(file);
    return true;
}

void OpenFileList::RemoveAll() noexcept
{
    m_paths.clear();
    m_streams.clear();
    m_files.clear();
}

const OpenFile* OpenFileList::Next(std::uint64_t& number) const noexcept
{
    const auto found = m_files.lower_bound(number);
    if (found == m_files.end())
        return nullptr;
    number = found->first;
    return &found->second;
}
