#include "QDDebugUtl/ConfigFile.h"

#include "TuvoMemory/ModuleNames.h"
#include "basutl/PathText.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/TrackedFile.h>
#include <basutl/BuFileUtl.h>

#include <cstdio>
#include <memory>
#include <new>
#include <unordered_map>

namespace debugconfig {
namespace {

struct CloseStream
{
    void operator()(std::FILE* stream) const { TuvoFClose(stream, modules::QDDebugUtl, __LINE__); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

Stream Open(const BuString& path, const char* mode)
{
    return Stream(TuvoFOpen(platform::Narrow(View(path)).c_str(), mode, modules::QDDebugUtl, __LINE__));
}

// Kept: Windows takes '/' for no separator here.
std::wstring_view LastComponent(const BuString& path)
{
    const std::wstring_view separators = platform::Separator() == L'\\' ? L"\\" : L"\\/";
    return View(path).substr(View(path).find_last_of(separators) + 1);
}

// The same text for two spellings of one path. The last name is not followed when it is a link: it is replaced as one.
std::wstring PlaceOf(const BuString& path)
{
    const std::size_t name = FindLastName(View(path));
    const std::wstring folder = name == 0 ? L"." : std::wstring(View(path).substr(0, name));
    const std::wstring resolved = platform::CanonicalPath(folder.c_str());
    return resolved.empty() ? std::wstring(View(path))
                            : JoinPath(resolved, View(path).substr(name), platform::Separator());
}

std::string Lines(const Module& module)
{
    std::string lines;
    for (const auto& parameter : module.parameters)
        if (!parameter->name.IsEmpty() && !parameter->text.IsEmpty())
            lines += platform::Narrow(View(parameter->name)) + " : " + platform::Narrow(View(parameter->text)) + '\n';
    return lines;
}

bool Append(const BuString& path, const std::string& text)
{
    const Stream stream = Open(path, "a");
    return stream != nullptr && std::fwrite(text.data(), 1, text.size(), stream.get()) == text.size() &&
           std::fflush(stream.get()) == 0;
}

// A new, empty file beside another one, for as long as the object lives.
class FileBeside
{
public:
    explicit FileBeside(const BuString& path) : m_path(BuFileUtl::GetFreeFileName(path + BuString(L".new"), true)) {}
    ~FileBeside()
    {
        if (!m_path.IsEmpty())
            BuFileUtl::RemoveAFile(m_path);
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    const BuString& Path() const noexcept { return m_path; }  // empty when it could not be made

private:
    BuString m_path;
};

// Puts a complete new file in the place of the old one.
bool Replace(const BuString& path, const std::string& text)
{
    const FileBeside copy(path);
    return !copy.Path().IsEmpty() && Append(copy.Path(), text) && BuFileUtl(copy.Path()).CopyIn(path);
}

}  // namespace

ReadResult ReadText(const BuString& path, std::string& text)
{
    const Stream stream = Open(path, "r");
    if (stream == nullptr)
        return ReadResult::NotOpened;
    char block[4096];
    while (const std::size_t count = std::fread(block, 1, sizeof block, stream.get()))
        text.append(block, count);
    return std::ferror(stream.get()) == 0 ? ReadResult::Done : ReadResult::NotReadToItsEnd;
}

std::vector<FileChange> PlanChanges(const Registry& registry, const BuString& module, const BuString* fileName)
{
    std::vector<FileChange> changes;
    std::unordered_map<std::wstring, std::size_t> positions;
    for (const auto& candidate : registry.Modules()) {
        const BuString& path = candidate->GetFile();
        if (path.IsEmpty())
            continue;
        const auto [position, isNew] = positions.try_emplace(PlaceOf(path), changes.size());
        if (isNew)
            changes.emplace_back().path = Copy(path);
        FileChange& change = changes[position->second];
        const bool isModule = !module.IsEmpty() && candidate->GetName() == module;
        const bool isFile = fileName != nullptr && LastComponent(path) == View(*fileName);
        change.isEmptied |= isModule || isFile;
        if (module.IsEmpty() ? fileName == nullptr || isFile : isModule) {
            change.isWritten = true;
            change.text += Lines(*candidate);
        }
    }
    return changes;
}

bool Apply(const FileChange& change) noexcept
{
    return platform::Guarded(false, [&] {
        if (!change.isEmptied)
            return !change.isWritten || Append(change.path, change.text);
        return change.isWritten ? Replace(change.path, change.text) : BuFileUtl::RemoveAFile(change.path);
    });
}

}  // namespace debugconfig
