#include "support/TestFiles.h"

#include "platform/Platform.h"

#include <cstdio>
#include <stdexcept>
#include <vector>

namespace {

void RemoveTree(const std::wstring& folder)
{
    std::vector<std::wstring> names;
    platform::ListDirectory(folder.c_str(), names);
    for (const std::wstring& name : names) {
        const std::wstring path = folder + name;
        if (!platform::RemoveOneFile(path.c_str()))  // which also removes links to directories
            RemoveTree(path + platform::Separator());
    }
    platform::RemoveEmptyDirectory(folder.c_str());
}

}  // namespace

TemporaryFolder::TemporaryFolder()
{
    static int number = 0;
    do {  // a process of the same number may have ended without cleaning up
        m_path = platform::TemporaryDirectory() + L"tuvotest" + std::to_wstring(platform::ProcessId()) + L"_" +
                 std::to_wstring(++number);
    } while (platform::Access(m_path.c_str(), 0) == 0);
    if (!platform::CreateOneDirectory(m_path.c_str()))
        throw std::runtime_error("cannot create a temporary folder");
    m_path += platform::Separator();
}

TemporaryFolder::~TemporaryFolder()
{
    RemoveTree(m_path);
}

std::wstring TemporaryFolder::Path(const char* name) const
{
    return m_path + platform::Widen(name);
}

std::string TemporaryFolder::NarrowPath(const char* name) const
{
    return platform::Narrow(Path(name));
}

std::wstring TemporaryFolder::Write(const char* name, const std::string& bytes) const
{
    const std::wstring path = Path(name);
    std::FILE* const file = platform::OpenFile(path.c_str(), L"wb");
    const bool isWritten = file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (file == nullptr || std::fclose(file) != 0 || !isWritten)
        throw std::runtime_error("cannot write a test file");
    return path;
}

std::string ReadBinaryFile(const std::wstring& path)
{
    std::string bytes;
    if (std::FILE* const file = platform::OpenFile(path.c_str(), L"rb")) {
        char buffer[4096];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file))
            bytes.append(buffer, count);
        std::fclose(file);
    }
    return bytes;
}

std::string ReadTextFile(const std::wstring& path)
{
    std::string text = ReadBinaryFile(path);
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;)
        text.erase(at, 1);
    return text;
}

std::string SourceFile(const char* name)
{
    return std::string(TUVO_SOURCE_DIR "/") + name;
}
