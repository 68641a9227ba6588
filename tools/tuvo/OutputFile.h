// A file that is there as a whole or not at all: until it is complete it stands beside its place under another name.
//
//   OutputFile file("model.html");
//   Write(file.PartPath());
//   file.Keep();   // takes the place of what stood there; without it nothing has changed
#pragma once

#include "tools/tuvo/Interruption.h"

#include <string>
#include <string_view>

namespace tool {

class OutputFile
{
public:
    // Throws Failure when nothing can be written there: a directory, no folder, no permission.
    explicit OutputFile(std::string path);
    ~OutputFile();  // removes what was not kept
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const std::string& Path() const { return m_path; }  // as the user named it

    // Where to write meanwhile. For a device or a pipe it is the path itself, and what is written there stays.
    const std::string& PartPath() const { return m_part; }
    bool IsDevice() const { return m_isDevice; }

    // Writes a text behind what was written so far. Throws Failure when that is not possible.
    void Append(std::string_view text);

    // Throws Failure when the program was interrupted meanwhile, or the file cannot get its name.
    void Keep();

    // A failure of this file for the reason that the system gave last, or for another one.
    [[noreturn]] void Fail() const;
    [[noreturn]] void Fail(const std::string& reason) const;

private:
    void CheckPlace();
    void CreatePart();

    InterruptionScope m_interruption;
    std::string m_path;
    std::string m_target;  // behind links
    std::string m_part;
    bool m_isDevice = false;
    bool m_isKept = false;
};

}  // namespace tool
