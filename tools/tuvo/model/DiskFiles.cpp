#include "tools/tuvo/model/DiskFiles.h"

#include "platform/Platform.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Failure.h"
#include "tools/tuvo/Interruption.h"

#include <TuvoUtil/CompressedFile.h>
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/TrackedFile.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <utility>

namespace tool {
namespace {

struct CloseTracked
{
    void operator()(std::FILE* stream) const { TuvoFClose(stream, "tuvo", __LINE__); }
};
using Stream = std::unique_ptr<std::FILE, CloseTracked>;

struct FreeTracked
{
    void operator()(char* text) const { VBuFree(text, "tuvo", __LINE__); }
};
using Text = std::unique_ptr<char, FreeTracked>;

// A file that goes with the object.
class TemporaryFile
{
public:
    explicit TemporaryFile(std::string path) : m_path(std::move(path)) {}
    ~TemporaryFile() { Remove(); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Remove() const { platform::RemoveOneFile(platform::Widen(m_path).c_str()); }

private:
    std::string m_path;
};

struct OpenStream
{
    std::unique_ptr<TemporaryFile> unpacked;  // goes after the stream
    Stream stream;
    std::uint64_t size = 0;  // bytes
};

std::string Reason()
{
    return platform::Narrow(platform::NativeErrorText(platform::LastNativeError()));
}

bool Exists(const std::string& path)
{
    return TuvoAccess(path.c_str(), 0, "tuvo", __LINE__) == 0;
}

bool EndsWith(std::string_view text, std::initializer_list<std::string_view> ends)
{
    return std::any_of(ends.begin(), ends.end(), [&](std::string_view end) { return text.ends_with(end); });
}

// The packed form in which a file is there; empty when it is there as it is, or not at all.
std::string PackedForm(const std::string& path)
{
    const Text packed(UtlCheckFileIsCompressed(path.c_str()));
    return packed != nullptr && EndsWith(packed.get(), {".gz", ".bz2", ".Z"}) ? packed.get() : std::string();
}

std::uint64_t SizeOf(const std::string& path)
{
    platform::FileStatus status;
    return platform::Status(platform::Widen(path).c_str(), status) ? status.size : 0;
}

OpenStream OpenPlain(const std::string& path)
{
    const SilenceScope silence;  // the tracker would tell of a file that an include opens again
    OpenStream open;
    open.size = SizeOf(path);
    open.stream.reset(TuvoFOpen(path.c_str(), "rb", "tuvo", __LINE__));
    if (open.stream == nullptr)
        throw Failure("cannot read " + Printable(path) + ": " + Reason());
    return open;
}

OpenStream OpenPacked(const std::string& packed)
{
    const InterruptionScope interruption;  // until what is unpacked can be removed
    const Text plain(UtlGetUnzippedFileName(packed.c_str()));
    auto unpacked = std::make_unique<TemporaryFile>(plain != nullptr ? plain.get() : "");
    ThrowIfInterrupted();
    if (plain == nullptr || !Exists(plain.get()))
        throw Failure("cannot unpack " + Printable(packed) + "; is it whole, and is " +
                      (packed.ends_with(".bz2") ? "bzip2" : "gzip") + " installed?");
    OpenStream open = OpenPlain(plain.get());
    open.unpacked = std::move(unpacked);
    open.unpacked->Remove();  // where an open file can be removed, nothing of it stays behind in any case
    return open;
}

std::string Identity(const std::string& path)
{
    platform::FileStatus status;
    if (!platform::Status(platform::Widen(path).c_str(), status))
        return path;
    return std::to_string(status.device) + ':' + std::to_string(status.file);
}

std::string FolderOf(const std::string& path)
{
    return path.substr(0, path.find_last_of("/\\") + 1);
}

bool IsAbsolute(const std::string& path)
{
    return !path.empty() && (path.front() == '/' || path.front() == '\\' || path.find(':') == 1);
}

DeckFile OpenPath(const std::string& path)
{
    const std::string packed = PackedForm(path);
    const auto open = std::make_shared<OpenStream>(packed.empty() ? OpenPlain(path) : OpenPacked(packed));
    const std::string& shown = packed.empty() ? path : packed;
    DeckFile file = {shown, Identity(shown), {}, open->size};
    file.source = [open, shown](char* to, std::size_t room) {
        const std::size_t read = std::fread(to, 1, room, open->stream.get());
        if (read < room && std::ferror(open->stream.get()) != 0)
            throw Failure("cannot read " + Printable(shown) + ": " + Reason());
        ThrowIfInterrupted();
        return read;
    };
    return file;
}

}  // namespace

DeckFile DiskFiles::OpenDeck()
{
    constexpr double Mebibyte = 1024.0 * 1024.0;
    DeckFile file = OpenPath(m_deck);
    m_progress.emplace("MiB", static_cast<double>(file.size) / Mebibyte, WorkProgress::OnTerminal);
    file.source = [this, read = std::move(file.source)](char* to, std::size_t room) {
        const std::size_t count = read(to, room);
        m_progress->Advance(static_cast<double>(count) / Mebibyte);
        return count;
    };
    return file;
}

DeckFile DiskFiles::Open(const std::string& name, const DeckFile& includedBy)
{
    if (!IsAbsolute(name))
        for (const std::string& folder : {FolderOf(includedBy.name), FolderOf(m_deck)})
            if (Exists(folder + name) || !PackedForm(folder + name).empty())
                return OpenPath(folder + name);
    return OpenPath(name);
}

}  // namespace tool
