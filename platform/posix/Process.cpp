#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace {

using platform::NativePath;

// What happens to the descriptors between fork and exec.
class SpawnActions
{
public:
    SpawnActions() : m_error(posix_spawn_file_actions_init(&m_actions)) {}
    ~SpawnActions() { posix_spawn_file_actions_destroy(&m_actions); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    void Open(int descriptor, const std::string& path, int flags)
    {
        Note(posix_spawn_file_actions_addopen(&m_actions, descriptor, path.c_str(), flags, 0666));
    }
    void CloseFrom(int descriptor) { Note(posix_spawn_file_actions_addclosefrom_np(&m_actions, descriptor)); }

    int Error() const { return m_error; }
    const posix_spawn_file_actions_t* Get() const { return &m_actions; }

private:
    void Note(int error) { m_error = m_error != 0 ? m_error : error; }

    posix_spawn_file_actions_t m_actions;
    int m_error;
};

int ExitStatus(int waitStatus)
{
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

int WaitFor(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) != child)
        if (errno != EINTR)
            return -1;
    return ExitStatus(status);
}

void Redirect(SpawnActions& actions, const platform::ProgramStreams& streams)
{
    constexpr int replaced = O_WRONLY | O_CREAT | O_TRUNC;
    actions.Open(STDIN_FILENO, NativePath(streams.inputFile != nullptr ? streams.inputFile : L"/dev/null"), O_RDONLY);
    if (streams.outputFile != nullptr)
        actions.Open(STDOUT_FILENO, NativePath(streams.outputFile), replaced);
    if (streams.errorFile != nullptr)
        actions.Open(STDERR_FILENO, NativePath(streams.errorFile), replaced);
    actions.CloseFrom(STDERR_FILENO + 1);
}

}  // namespace

int platform::RunCommand(const wchar_t* command) noexcept
{
    return Guarded(-1, [&] {
        if (command == nullptr || access("/bin/sh", X_OK) != 0)
            return -1;
        const int status = std::system(Narrow(command).c_str());
        return status == -1 ? -1 : ExitStatus(status);
    });
}

int platform::RunProgram(const std::vector<std::wstring>& arguments, const ProgramStreams& streams) noexcept
{
    return Guarded(-1, [&] {
        if (arguments.empty())
            return -1;
        std::vector<std::string> texts;
        texts.reserve(arguments.size());
        for (const std::wstring& argument : arguments)
            texts.push_back(Narrow(argument));
        std::vector<char*> pointers;
        pointers.reserve(arguments.size() + 1);
        for (std::string& text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);

        SpawnActions actions;
        Redirect(actions, streams);
        pid_t child = 0;
        errno = actions.Error();
        if (errno == 0)
            errno = posix_spawnp(&child, NativePath(arguments[0].c_str()).c_str(), actions.Get(), nullptr,
                                 pointers.data(), environ);
        return errno == 0 ? WaitFor(child) : -1;
    });
}
