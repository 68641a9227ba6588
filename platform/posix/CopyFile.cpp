#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/NativePath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace {

using platform::Descriptor;

bool WriteAll(int file, const char* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t written = write(file, bytes, count);
        if (written < 0 && errno != EINTR)
            return false;
        const auto done = static_cast<std::size_t>(written < 0 ? 0 : written);
        bytes += done;
        count -= done;
    }
    return true;
}

// Copies from where both files stand to the end of the source.
bool CopyBytes(int source, int destination)
{
    // The file system copies by itself where it can. Where it cannot, or stops early, the loop below takes over and
    // meets the reason again.
    constexpr std::size_t most = 1 << 30;
    while (copy_file_range(source, nullptr, destination, nullptr, most, 0) > 0) {
    }
    std::string buffer(1 << 17, '\0');
    for (;;) {
        const ssize_t count = read(source, buffer.data(), buffer.size());
        if (count == 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0 && !WriteAll(destination, buffer.data(), static_cast<std::size_t>(count)))
            return false;
    }
}

// Permissions and times, as far as the destination's file system knows them. The set-id bits are not handed on.
void CopyAttributes(int destination, const struct stat& source)
{
    const timespec times[] = {source.st_atim, source.st_mtim};
    [[maybe_unused]] const int modeResult = fchmod(destination, source.st_mode & 0777);
    [[maybe_unused]] const int timeResult = futimens(destination, times);
}

// A new file of a name that nobody has, in the directory of a path. It is removed unless it got that path's name.
class TemporaryCopy
{
public:
    explicit TemporaryCopy(const std::string& path)
        : m_name(path.substr(0, path.rfind('/') + 1) + ".copy-XXXXXX"), m_file(mkostemp(m_name.data(), O_CLOEXEC))
    {}
    ~TemporaryCopy()
    {
        if (m_isOurs)
            unlink(m_name.c_str());
    }
    TemporaryCopy(const TemporaryCopy&) = delete;
    TemporaryCopy& operator=(const TemporaryCopy&) = delete;

    bool Fill(int source, const struct stat& status)
    {
        if (!m_isOurs || !CopyBytes(source, m_file.Number()))
            return false;
        CopyAttributes(m_file.Number(), status);
        return m_file.Close();
    }
    bool TakeName(const std::string& path)
    {
        m_isOurs = std::rename(m_name.c_str(), path.c_str()) != 0;
        return !m_isOurs;
    }

private:
    std::string m_name;
    Descriptor m_file;
    bool m_isOurs = m_file.IsOpen();
};

bool FailWith(int error)
{
    errno = error;
    return false;
}

}  // namespace

bool platform::CopyOneFile(const wchar_t* source, const wchar_t* destination) noexcept
{
    return Guarded(false, [&] {
        const std::string target = NativePath(destination);
        const Descriptor from(open(NativePath(source).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        struct stat status
        {};
        if (!from.IsOpen() || fstat(from.Number(), &status) != 0)
            return false;
        if (!S_ISREG(status.st_mode))
            return FailWith(EINVAL);

        struct stat existing
        {};
        if (stat(target.c_str(), &existing) == 0) {
            if (existing.st_dev == status.st_dev && existing.st_ino == status.st_ino)
                return true;
            if (!S_ISREG(existing.st_mode))
                return FailWith(EEXIST);  // rename would replace a device or a pipe
        }
        TemporaryCopy copy(target);
        return copy.Fill(from.Number(), status) && copy.TakeName(target);
    });
}
