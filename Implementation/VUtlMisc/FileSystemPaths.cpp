#include <TuvoUtil/FileSystem.h>

#include "VUtlMisc/MiscText.h"
#include "platform/Guard.h"

#include <basutl/BuPath.h>

namespace {

// What one of the path functions of basutl gives, as a new text; null for the empty one.
char* NewPath(const char* path, const char* baseDirectory, BuString (*make)(const wchar_t*, const wchar_t*) noexcept)
{
    return platform::Guarded<char*>(nullptr, [=]() -> char* {
        const BuString made = make(misc::WideText(path).c_str(), misc::WideText(baseDirectory).c_str());
        return made.IsEmpty() ? nullptr : misc::NewNarrowText(made.GetText());
    });
}

}  // namespace

char* UtlGetAbsoluteDirectoryPath(const char* path, const char* baseDirectory)
{
    return NewPath(path, baseDirectory, &BuPathMakeAbsoluteW);
}

char* UtlGetRelativeDirectoryPath(const char* path, const char* baseDirectory)
{
    return NewPath(path, baseDirectory, &BuPathMakeRelativeW);
}
