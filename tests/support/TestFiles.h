// Files for tests: a folder that vanishes with its scope, whole files as strings.
#pragma once

#include <string>

class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();  // removes everything inside
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::wstring& Path() const { return m_path; }  // ends with a separator
    std::wstring Path(const char* name) const;           // of a file inside
    std::string NarrowPath(const char* name = "") const;
    std::wstring Write(const char* name, const std::string& bytes) const;  // creates a file and gives its path

private:
    std::wstring m_path;
};

// The bytes of a file; the text form turns CR LF into LF. Empty when the file cannot be read.
std::string ReadBinaryFile(const std::wstring& path);
std::string ReadTextFile(const std::wstring& path);

// The path of a file of the source tree, for instance SourceFile("data/unit.xml").
std::string SourceFile(const char* name);
