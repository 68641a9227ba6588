#include <TuvoUtil/TrackedFile.h>

#include "Diagnostics/FileTracker.h"
#include "Diagnostics/OpenFileList.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>
#include <basutl/BuConversionAllocator.h>
#include <basutl/BuLocalize.h>

#include <cerrno>
#include <memory>
#include <new>
#include <optional>

namespace {

constexpr char UnknownFile[] = "Unknown";
constexpr int UnknownLine = -1;

struct FileTracker
{
    bool isOn = false;
    int openedCount = 0;
    std::uint64_t nextNumber = 1;
    OpenFileList files;
};

// Made on first use and never destroyed: hosts open and close files in their static constructors and destructors.
FileTracker& Tracker()
{
    alignas(FileTracker) static unsigned char place[sizeof(FileTracker)];
    static FileTracker* const tracker = new (place) FileTracker;
    return *tracker;
}

struct StreamCloser
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

const char* NameOrUnknown(const char* file)
{
    return file == nullptr ? UnknownFile : file;
}

std::FILE* Open(const char* path, const char* mode)
{
    BuConversionAllocator convert;
    return platform::OpenFile(convert.AnsiToUnicode(path), convert.AnsiToUnicode(mode));
}

std::optional<OpenFileList> MakeEntry(const char* path, const char* file, int line)
{
    return platform::Guarded(std::optional<OpenFileList>(), [=] {
        const bool isKnown = file != nullptr && *file != '\0';
        return std::optional(OpenFileList(
            Tracker().nextNumber++,
            {.path = path, .sourceFile = isKnown ? file : UnknownFile, .line = isKnown ? line : UnknownLine}));
    });
}

// Kept: also when the file could not be opened, which may well be the reason.
void ReportOpenTwice(const OpenFile& earlier, const char* path, const char* file, int line)
{
    const BuString earlierFile(earlier.sourceFile.c_str());  // the host may close that file while it shows the messages
    const int earlierLine = earlier.line;
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR,
                            BuLocalizeStringExW(L"FileMngr: This file %s is already opened! (It might not have been "
                                                L"closed with fclose or is really opened for another cause). Please "
                                                L"check",
                                                0),
                            BuString(path).GetText());
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR,
                            BuLocalizeStringExW(L"          Current loading is done from File %s at line %d", 0),
                            BuString(NameOrUnknown(file)).GetText(), line);
    TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR,
                            BuLocalizeStringExW(L"          The earlier loading was done from File %s at line %d", 0),
                            earlierFile.GetText(), earlierLine);
}

std::FILE* OpenTracked(const char* path, const char* mode, const char* file, int line)
{
    std::optional<OpenFileList> entry = MakeEntry(path, file, line);
    if (!entry)
        return nullptr;
    Stream stream(Open(path, mode));
    const int error = errno;
    if (const OpenFile* const earlier = Tracker().files.FindPath(path))
        ReportOpenTwice(*earlier, path, file, line);
    if (stream != nullptr) {
        Tracker().files.Add(*entry, stream.get());
        ++Tracker().openedCount;
    }
    errno = error;
    return stream.release();
}

void PostStatus(const wchar_t* text)
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, L"%s", BuLocalizeStringExW(text, 0));
}

void PostCount(const wchar_t* format, int count)
{
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING, BuLocalizeStringExW(format, 0), count);
}

void PostOpenFile(const OpenFile& file)
{
    const BuString path(file.path.c_str());
    const BuString sourceFile(file.sourceFile.c_str());
    TuvoWriteConsoleMessage(TUVO_MESSAGE_WARNING,
                            BuLocalizeStringExW(L"            %s called from file %s at line %d", 0), path.GetText(),
                            sourceFile.GetText(), file.line);
}

}  // namespace

std::FILE* TuvoFOpen(const char* path, const char* mode, const char* file, int line)
{
    if (path == nullptr || mode == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    return Tracker().isOn ? OpenTracked(path, mode, file, line) : Open(path, mode);
}

int TuvoFClose(std::FILE* stream, const char* file, int line)
{
    if (Tracker().isOn) {
        // Kept: the result of closing a tracked stream is not passed on; callers count on 0.
        if (Tracker().files.RemoveStream(stream)) {
            std::fclose(stream);
            return 0;
        }
        TuvoWriteConsoleMessage(TUVO_MESSAGE_ERROR,
                                BuLocalizeStringExW(L"FileMngr: An unopened file OR file not opened with fopen is "
                                                    L"closed! called at line %d in file %s",
                                                    0),
                                line, BuString(NameOrUnknown(file)).GetText());
    }
    return stream == nullptr ? EOF : std::fclose(stream);
}

int TuvoAccess(const char* path, int mode, const char*, int)
{
    BuConversionAllocator convert;
    return platform::Access(convert.AnsiToUnicode(path), mode);
}

int TuvoSystem(const char* command, const char*, int)
{
    BuConversionAllocator convert;
    return platform::RunCommand(convert.AnsiToUnicode(command));
}

void StartFileTracker()
{
    Tracker().isOn = true;
    Tracker().files.RemoveAll();
    PostStatus(L"FileMngr: File open/close tracker is started");
}

void StopFileTracker()
{
    PostStatus(L"FileMngr: File open/close tracker is stopped");
    Tracker().files.RemoveAll();
    Tracker().isOn = false;
}

void PostOpenFileStatistics()
{
    OpenFileList& files = Tracker().files;
    PostStatus(L"\n--------  Begin file open/close stats  -------------");
    PostCount(L"      %d files opened so far", Tracker().openedCount);
    if (files.Count() > 0)
        PostCount(L"      %d files shown below are still in open state:", files.Count());
    else
        PostStatus(L"      No open files found. Well done");
    // The host may open and close files while it shows these; those opened meanwhile are not listed.
    const std::uint64_t end = Tracker().nextNumber;
    for (std::uint64_t number = 0; const OpenFile* const file = files.Next(number); ++number) {
        if (number >= end)
            break;
        PostOpenFile(*file);
    }
    PostStatus(L"--------  End of file open/close stats -------------\n");
    files.RemoveAll();
}
