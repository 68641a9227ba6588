#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/CommandLine.h"
#include "platform/windows/Native.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace {

using platform::Handle;
using platform::NativePath;

Handle OpenInheritable(const wchar_t* path, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    return Handle(CreateFileW(NativePath(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                              disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// The file, or where there is none a copy of this process's own stream, which a windowed program may not have.
Handle OutputStream(const wchar_t* path, DWORD own)
{
    if (path != nullptr)
        return OpenInheritable(path, GENERIC_WRITE, CREATE_ALWAYS);
    const HANDLE stream = GetStdHandle(own);
    const HANDLE process = GetCurrentProcess();
    HANDLE copy = nullptr;
    if (stream != INVALID_HANDLE_VALUE &&  // which would name this process
        DuplicateHandle(process, stream, process, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS))
        return Handle(copy);
    return OpenInheritable(L"NUL", GENERIC_WRITE, OPEN_EXISTING);
}

// The three standard streams of a program that is to be started.
class Streams
{
public:
    explicit Streams(const platform::ProgramStreams& streams)
        : m_input(
              OpenInheritable(streams.inputFile != nullptr ? streams.inputFile : L"NUL", GENERIC_READ, OPEN_EXISTING)),
          m_output(OutputStream(streams.outputFile, STD_OUTPUT_HANDLE)),
          m_error(OutputStream(streams.errorFile, STD_ERROR_HANDLE))
    {}
    bool AreOpen() const { return m_input.IsOpen() && m_output.IsOpen() && m_error.IsOpen(); }
    std::array<HANDLE, 3> Get() const { return {m_input.Get(), m_output.Get(), m_error.Get()}; }

private:
    Handle m_input;
    Handle m_output;
    Handle m_error;
};

// What else a start needs to be told: that the program inherits the given handles and no others, which another thread
// may have made inheritable just now. The handles must outlive it.
class InheritanceList
{
public:
    explicit InheritanceList(std::array<HANDLE, 3>& handles)
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        m_memory.resize(size);
        if (!InitializeProcThreadAttributeList(Get(), 1, 0, &size))
            throw std::bad_alloc();
        m_isComplete = UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles.data(),
                                                 sizeof handles, nullptr, nullptr) != 0;
    }
    ~InheritanceList() { DeleteProcThreadAttributeList(Get()); }
    InheritanceList(const InheritanceList&) = delete;
    InheritanceList& operator=(const InheritanceList&) = delete;

    bool IsComplete() const { return m_isComplete; }
    LPPROC_THREAD_ATTRIBUTE_LIST Get() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_memory.data()); }

private:
    std::string m_memory;
    bool m_isComplete = false;
};

bool IsFile(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// The file of a program; empty when there is none. A name without a separator is searched along PATH only: the working
// directory, where the system looks as well, may hold anything.
std::wstring ProgramFile(const std::wstring& name)
{
    if (name.find_first_of(L"\\/:") != std::wstring::npos) {
        const std::wstring file = NativePath(name.c_str());
        return IsFile(file) ? file : IsFile(file + L".exe") ? file + L".exe" : std::wstring();
    }
    const std::wstring folders = platform::EnvironmentValue(L"PATH").value_or(L"");
    return platform::WholeText([&](wchar_t* buffer, DWORD capacity) {
        return SearchPathW(folders.c_str(), name.c_str(), L".exe", capacity, buffer, nullptr);
    });
}

// Command scripts would be run by the shell, which reads arguments by rules of its own. The system takes no notice of
// dots and blanks at the end of a name.
bool IsScript(const std::wstring& file)
{
    const std::wstring name = file.substr(0, file.find_last_not_of(L" .") + 1);
    const std::wstring extension = name.substr(name.size() - std::min<std::size_t>(name.size(), 4));
    return _wcsicmp(extension.c_str(), L".bat") == 0 || _wcsicmp(extension.c_str(), L".cmd") == 0;
}

// Starts a program and gives its process; not open on failure.
Handle Start(const std::wstring& file, std::wstring line, const Streams& streams)
{
    std::array<HANDLE, 3> handles = streams.Get();
    InheritanceList inherited(handles);
    if (!inherited.IsComplete())
        return Handle();
    STARTUPINFOEXW start{};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = handles[0];
    start.StartupInfo.hStdOutput = handles[1];
    start.StartupInfo.hStdError = handles[2];
    start.lpAttributeList = inherited.Get();
    // A windowed program must not make a console window flash up.
    const DWORD flags = EXTENDED_STARTUPINFO_PRESENT | (GetConsoleWindow() == nullptr ? CREATE_NO_WINDOW : 0);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &start.StartupInfo,
                        &process))
        return Handle();
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

int WaitFor(const Handle& process)
{
    DWORD status = 0;
    if (WaitForSingleObject(process.Get(), INFINITE) != WAIT_OBJECT_0 || !GetExitCodeProcess(process.Get(), &status))
        return -1;
    return static_cast<int>(status);
}

}  // namespace

int platform::RunCommand(const wchar_t* command) noexcept
{
    return command == nullptr ? -1 : _wsystem(command);
}

int platform::RunProgram(const std::vector<std::wstring>& arguments, const ProgramStreams& streams) noexcept
{
    return Guarded(-1, [&] {
        const std::wstring file = arguments.empty() ? std::wstring() : ProgramFile(arguments[0]);
        if (file.empty() || IsScript(file))
            return -1;
        const Streams opened(streams);
        if (!opened.AreOpen())
            return -1;
        const Handle process = Start(file, CommandLine(arguments), opened);
        return process.IsOpen() ? WaitFor(process) : -1;
    });
}
