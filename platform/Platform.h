// The seam to the operating system: the few calls that differ between Linux and Windows, with one contract for both.
//
// Only native calls stand below this line; policy (retries, messages, defaults, naming rules) stands above it. posix/
// and windows/ implement it, the build chooses. It is compiled into both libraries and exported by neither.
//
// Rules for all of it:
//  - Text is wide. A path may use '/' or '\' on both systems: on Linux a path is taken as given when something stands
//    there, else, so for every file that is to be created, with each '\' turned into '/'. Paths are as long as the
//    system allows; Windows is not held to its 260 characters. A null path names nothing.
//  - A function marked noexcept answers exhausted memory with its failure value and errno ENOMEM. Functions that return
//    text may throw std::bad_alloc; their callers stand behind the edge of a library and turn it into the documented
//    result.
//  - Nothing is printed, no locale is asked, and every function may be called from any thread. Nothing is cached but the
//    debug information that ResolveAddress reads.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// ---- Text ----------------------------------------------------------------------------------------------------------

// Narrow text of the system to wide text and back. Linux: UTF-8 whatever the locale; a byte b that is not part of valid
// UTF-8 becomes the lone unit 0xDC00 + b and turns back into b; any other surrogate is written in the three-byte form
// and read back from it, so that narrow to wide to narrow loses nothing. A unit above 0x10FFFF is written as U+FFFD.
// Windows: the active code page.
std::wstring Widen(std::string_view narrow);
std::string Narrow(std::wstring_view wide);

// vsnprintf as it prints in the C locale, whatever the locale of the process or the thread; -1 when it fails.
int PrintInCLocale(char* target, std::size_t size, const char* format, va_list arguments) noexcept;

// ---- Environment and process ---------------------------------------------------------------------------------------

// The value of an environment variable as it is now; nothing when it is not set. A set but empty variable exists on
// Linux only (Windows removes a variable that is set to nothing).
std::optional<std::wstring> EnvironmentValue(const wchar_t* name);

// Sets a variable of this process, for the C library's functions too, and of the programs that it starts; no value
// removes it. False on failure: a name that is empty or holds '='.
bool SetEnvironmentValue(const wchar_t* name, const std::optional<std::wstring>& value) noexcept;

unsigned int ProcessId() noexcept;

// Runs a command line through the system's shell (/bin/sh; cmd) and waits. Gives its exit status, -1 when no shell
// could be started. On Linux a command ended by signal n gives 128 + n.
int RunCommand(const wchar_t* command) noexcept;

// What RunProgram does with the streams of the program that it starts.
struct ProgramStreams
{
    const wchar_t* inputFile = nullptr;   // read as standard input; null: an empty input
    const wchar_t* outputFile = nullptr;  // replaced by standard output; null: shared with this process
    const wchar_t* errorFile = nullptr;   // replaced by standard error; null: shared with this process
};

// Starts a program without a shell and waits: arguments[0] is searched along PATH unless it holds a separator, and
// every argument arrives as it is, blanks and quotes included. The program gets no other open file of this process.
// Gives the exit status as RunCommand does, -1 when the program could not be started or a stream could not be opened.
// On Windows ".exe" may be left out, and a command script, which would need the shell, is not started.
int RunProgram(const std::vector<std::wstring>& arguments, const ProgramStreams& streams = {}) noexcept;

// ---- Files ---------------------------------------------------------------------------------------------------------

// fopen of a wide path. With an 'x' in a mode of 'w' or 'a' the file must not exist, not even as a link that leads
// nowhere. A directory is a failed open on both systems. Null with errno set on failure.
std::FILE* OpenFile(const wchar_t* path, const wchar_t* mode) noexcept;

// fseek and ftell with 64-bit offsets on both systems. An origin other than SEEK_SET, SEEK_CUR and SEEK_END gives -1 with
// EINVAL, as every other failure gives -1 with errno set.
int SeekFile(std::FILE* file, std::int64_t offset, int origin) noexcept;
std::int64_t FilePosition(std::FILE* file) noexcept;

// Makes a stream hand out its bytes as they are. Before, Windows may turn CR LF into LF, and take a Ctrl-Z for the end.
void SetBinary(std::FILE* file) noexcept;

// Whether the file exists (mode 0) and may be written (2), read (4) or both (6). 0, or -1 with errno set; any other
// mode gives -1 with EINVAL.
int Access(const wchar_t* path, int mode) noexcept;

enum class FileKind : std::uint8_t
{
    Regular,
    Directory,
    Other
};

struct FileStatus
{
    FileKind kind = FileKind::Other;
    std::uint64_t size = 0;    // bytes
    std::uint64_t device = 0;  // device and file together name a file whatever path led to it
    std::uint64_t file = 0;
};

// The status of what the path leads to, links followed. False when there is nothing, or it cannot be asked.
bool Status(const wchar_t* path, FileStatus& status) noexcept;

// Whether the path itself is a link: a symbolic one or, on Windows, a junction. False when nothing stands there.
bool IsLink(const wchar_t* path) noexcept;

// The names in a directory without "." and "..", in the order of the system. False when it cannot be listed; `names` is
// then empty.
bool ListDirectory(const wchar_t* directory, std::vector<std::wstring>& names) noexcept;

// Creates one directory; its parent must exist. True also when the directory stands already.
bool CreateOneDirectory(const wchar_t* directory) noexcept;

// Copies a regular file with its permissions and its time of modification, as far as the destination's file system
// knows them. The destination may be missing, a regular file, or a link to either (which is replaced, not followed); it
// is either the old file or the complete new one, whatever fails. A file copied onto itself stays as it is, with true.
// False when anything failed; nothing half-written stays behind.
bool CopyOneFile(const wchar_t* source, const wchar_t* destination) noexcept;

// Gives a file another path on the same file system; a regular file, or a link, that stands there is replaced in one
// step. False when anything failed, among that a directory or a device at the new path; both are then as they were.
bool MoveOneFile(const wchar_t* source, const wchar_t* destination) noexcept;

// Removes one file, or one empty directory; a link is removed, not what it leads to. True also when nothing stood
// there, false when it is still there. Windows keeps a file that is read-only.
bool RemoveOneFile(const wchar_t* path) noexcept;
bool RemoveEmptyDirectory(const wchar_t* directory) noexcept;

// Removes a directory with everything in it, or a file, even one that is read-only. Links are removed, never followed: on
// Linux not even one that takes the place of a directory meanwhile. Where another file system is mounted on Linux nothing
// is removed. True also when nothing stood there; false at the first path that cannot be removed, which is stored in
// `kept`, and what comes after it stays as well.
bool RemoveTree(const wchar_t* directory, std::wstring& kept) noexcept;

// The absolute path without links, "." and ".."; the empty text when there is no such file.
std::wstring CanonicalPath(const wchar_t* path);

// The working directory, and the system's directory for temporary files: on Linux the first of TMPDIR, TMP, TEMP that
// is set and not empty, else "/tmp". The temporary directory ends with a separator. Empty on failure.
std::wstring WorkingDirectory();
std::wstring TemporaryDirectory();

// The directory for temporary files that everybody knows, whatever the environment says: "/tmp", "C:\Temp". It need not
// exist.
const wchar_t* CommonTemporaryDirectory() noexcept;

// The separator that the system itself writes: '/' or '\'.
wchar_t Separator() noexcept;

// ---- Loaded modules ------------------------------------------------------------------------------------------------

// The file of the module (program or shared library) that holds an address; empty when no module does.
std::wstring ModuleFile(const void* address);

// Keeps the module that holds an address loaded until the process ends. False when no module holds it.
bool PinModule(const void* address) noexcept;

// ---- Processors ----------------------------------------------------------------------------------------------------

enum class ProcessorRelation : std::uint32_t
{
    Core = 0,
    Package = 3
};

// One core or one package with the logical processors that belong to it, one bit each.
struct ProcessorRecord
{
    std::uint64_t processorMask = 0;
    ProcessorRelation relation = ProcessorRelation::Core;
    std::uint32_t reserved = 0;
    std::uint64_t reservedDetail[2] = {};
};
static_assert(sizeof(ProcessorRecord) == 32);

// All cores and packages of the machine (Windows: of the processor group of this process, with records of other
// relations among them). On Linux the bits of a mask are numbered within each record; only their count has a meaning,
// and it ends at 64. `allocate` is asked once for the block of `size` bytes that holds them, which the caller gives
// back; the count is 0 when it gives none, and when the system does not tell. Takes some milliseconds.
ProcessorRecord* ReadProcessorRecords(void* (*allocate)(std::size_t size), std::size_t& count) noexcept;

// The number of logical processors that this process may run on; at least 1.
unsigned int UsableProcessors() noexcept;

// ---- Call stacks ---------------------------------------------------------------------------------------------------

// Stores one address for each frame of the calling thread's stack, innermost first, without the `skip` innermost frames
// and without this function's own: an address inside the call that the frame is waiting for (the byte before its return
// address), so that ResolveAddress finds the line of the call. Gives their number, at most `capacity`. Allocates
// nothing.
int CaptureStack(void** addresses, int capacity, int skip) noexcept;

struct ResolvedAddress
{
    std::string function;     // demangled; empty when unknown
    std::uint64_t start = 0;  // address of the function's first byte; 0 when unknown
    std::string file;         // source file; empty when unknown
    int line = -1;            // -1 when unknown
    // 0 when the line is known, else why it is not, as a Windows error code (on Linux always 487).
    std::uint32_t lineError = 487;
};

// What a code address stands for. Slow at first: reads the debug information of all modules. False when the function
// is not known; its line may be all the same.
bool ResolveAddress(const void* address, ResolvedAddress& resolved) noexcept;

// Takes note of the modules that are loaded now and gives a number for this state. Cheap while none is loaded or
// unloaded. Memory that is exhausted leaves the number of the state before.
std::uint32_t NoteLoadedModules() noexcept;

// The same for an address that was taken in a noted state: its module may have been loaded after the first use, and
// unloaded since. On Linux its file then has to be the same still; on Windows nothing else may lie at its place.
bool ResolveAddress(const void* address, std::uint32_t modules, ResolvedAddress& resolved) noexcept;

// Where in its module an address lies, which is the same in every run. Empty when no module held it in a noted state; on
// Windows also when the module is unloaded.
struct ModulePlace
{
    std::wstring file;
    std::uint64_t offset = 0;  // bytes
};
ModulePlace FindModulePlace(const void* address, std::uint32_t modules);

// ---- Signals -------------------------------------------------------------------------------------------------------

// Calls `handler`, null for what the system does by default, when a signal arrives, as signal of the C library does.
// Linux: it stays installed, interrupted calls are restarted, and it runs on a stack of its own in the thread that
// installed it, so that it is called after a stack overflow too. Windows: it is called once.
bool HandleSignal(int number, void (*handler)(int)) noexcept;

// ---- Storage of threads ---------------------------------------------------------------------------------------------

// One pointer for each thread, null until it is set. When a thread ends, `release` gets its pointer unless that is
// null. A thread_local of the language would do the same, but ends the process when a thread first touches it without
// memory. Meant for state of the process: made by constant initialisation, its key is taken at first use and never
// given back; the module that holds `release` then stays loaded.
class ThreadSlot
{
public:
    constexpr explicit ThreadSlot(void (*release)(void*)) noexcept : m_release(release) {}

    void* Get() const noexcept;
    bool Set(void* pointer) noexcept;  // false, with nothing changed, when memory or keys are exhausted

private:
    std::atomic<std::uint32_t> m_key{0};  // the system's key plus 1; 0 before the first Set
    void (*m_release)(void*);
};

// ---- Clocks, errors, debug output ----------------------------------------------------------------------------------

// Nanoseconds of a clock that never goes back, from an arbitrary start.
std::int64_t SteadyNanoseconds() noexcept;

// Calendar fields of a time in seconds since 1970-01-01 UTC, in the local time zone.
struct LocalTime
{
    int year, month, day;      // 1 to 12, 1 to 31
    int hour, minute, second;  // 0 to 23, 0 to 59, 0 to 60
};
bool ToLocalTime(std::int64_t seconds, LocalTime& local) noexcept;

// The last error of this thread's native calls (errno; GetLastError), and the system's text for such a code, in English
// where the system has it, without a line end.
int LastNativeError() noexcept;
std::wstring NativeErrorText(int code);

// Shows a text to an attached debugger. Linux has no such channel: nothing happens.
void WriteDebugOutput(const wchar_t* text) noexcept;

// Whether a standard stream (0 input, 1 output, 2 error) is a terminal.
bool IsTerminal(int stream) noexcept;

}  // namespace platform
