#include "tools/tuvo/OutputFile.h"

#include "platform/Platform.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Failure.h"

#include <TuvoUtil/TrackedFile.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

namespace tool {
namespace {

struct CloseTracked
{
    void operator()(std::FILE* stream) const { TuvoFClose(stream, "tuvo", __LINE__); }
};
using Stream = std::unique_ptr<std::FILE, CloseTracked>;

Stream Open(const std::string& path, const char* mode)
{
    return Stream(TuvoFOpen(path.c_str(), mode, "tuvo", __LINE__));
}

std::string Reason()
{
    return platform::Narrow(platform::NativeErrorText(platform::LastNativeError()));
}

}  // namespace

OutputFile::OutputFile(std::string path) : m_path(std::move(path)), m_target(m_path), m_part(m_path)
{
    CheckPlace();
    if (!m_isDevice)
        CreatePart();
}

OutputFile::~OutputFile()
{
    if (!m_isDevice && !m_isKept)
        platform::RemoveOneFile(platform::Widen(m_part).c_str());
}

// Finds out what stands there already.
void OutputFile::CheckPlace()
{
    const std::wstring wide = platform::Widen(m_path);
    platform::FileStatus status;
    if (!platform::Status(wide.c_str(), status))
        return;
    if (status.kind == platform::FileKind::Directory)
        Fail("it is a directory");
    if (platform::Access(wide.c_str(), 2) != 0)
        Fail();
    m_isDevice = status.kind == platform::FileKind::Other;
    if (platform::IsLink(wide.c_str()))
        m_target = platform::Narrow(platform::CanonicalPath(wide.c_str()));
}

// The name is new, so that nobody else's file is written to, whatever link stands there.
void OutputFile::CreatePart()
{
    m_part = m_target + ".part-" + std::to_string(platform::ProcessId());
    if (Open(m_part, "wbx") == nullptr)
        Fail();
}

void OutputFile::Append(std::string_view text)
{
    constexpr std::size_t Piece = std::size_t{1} << 20;
    const Stream stream = Open(m_part, "a");
    if (stream == nullptr)
        Fail();
    while (!text.empty()) {
        ThrowIfInterrupted();
        const std::size_t size = std::min(text.size(), Piece);
        if (std::fwrite(text.data(), 1, size, stream.get()) != size)
            Fail();
        text.remove_prefix(size);
    }
    if (std::fflush(stream.get()) != 0)
        Fail();
}

void OutputFile::Keep()
{
    ThrowIfInterrupted();
    if (!m_isDevice && !platform::MoveOneFile(platform::Widen(m_part).c_str(), platform::Widen(m_target).c_str()))
        Fail();
    m_isKept = true;
}

void OutputFile::Fail() const
{
    Fail(Reason());
}

void OutputFile::Fail(const std::string& reason) const
{
    throw Failure("cannot write " + Printable(m_path) + ": " + reason);
}

}  // namespace tool
