// SPDX-License-Identifier: MIT
#include "smartdb/disk/disk.h"

#include "smartdb/failure.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;

constexpr std::time_t settledSeconds = 10;

[[noreturn]] void Fail(const char* what, const fs::path& path, int error)
{
    const bool isFull = error == ENOSPC || error == EDQUOT;
    throw Failure(isFull ? localcode::diskFull : localcode::cannotWrite,
                  path.string() + " cannot be " + what + ": " + std::generic_category().message(error));
}

class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }

    [[nodiscard]] int number() const { return m_number; }

    /// Some file systems report a failed write only here.
    [[nodiscard]] bool close() { return ::close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number;
};

class LocalOutputFile final : public OutputFile
{
public:
    LocalOutputFile(const fs::path& file, std::uint32_t mode)
        : m_path(file)
        , m_file(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, static_cast<mode_t>(mode)))
    {
        if (m_file.number() < 0)
            Fail("made", m_path, errno);
    }

    void write(std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            const auto written = ::write(m_file.number(), bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0)
                Fail("written", m_path, errno);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
    }

    void close() override
    {
        timespec now = {};
        ::clock_gettime(CLOCK_REALTIME, &now);
        const timespec times[2] = {{0, UTIME_OMIT}, {now.tv_sec - settledSeconds, now.tv_nsec}};
        if (::futimens(m_file.number(), times) != 0 || !m_file.close())
            Fail("written", m_path, errno);
    }

private:
    fs::path m_path;
    Descriptor m_file;
};

class LocalFolderLock final : public FolderLock
{
public:
    explicit LocalFolderLock(int descriptor)
        : m_folder(descriptor)
    {
    }

    /// Takes the lock, and looks that the folder was not removed between opening and locking it.
    [[nodiscard]] bool take(const fs::path& folder) const
    {
        struct stat locked = {};
        struct stat named = {};
        return ::flock(m_folder.number(), LOCK_EX | LOCK_NB) == 0 &&
               ::fstat(m_folder.number(), &locked) == 0 && ::stat(folder.c_str(), &named) == 0 &&
               locked.st_ino == named.st_ino && locked.st_dev == named.st_dev;
    }

private:
    Descriptor m_folder;
};

void MoveFolder(const fs::path& from, const fs::path& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return;
    // Not every file system knows that flag; a plain rename never replaces a folder that holds something.
    if (errno != EINVAL || ::rename(from.c_str(), to.c_str()) != 0)
        Fail("put into its place", to, errno);
}

void ExchangeFolders(const fs::path& one, const fs::path& other)
{
    if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0)
        return;
    // On a file system that does not know the flag there is a moment without the one.
    auto aside = other;
    aside += ".aside";
    if (errno != EINVAL || ::rename(one.c_str(), aside.c_str()) != 0)
        Fail("put into its place", one, errno);
    if (::rename(other.c_str(), one.c_str()) != 0) {
        const int error = errno;
        static_cast<void>(::rename(aside.c_str(), one.c_str()));
        Fail("put into its place", one, error);
    }
    if (::rename(aside.c_str(), other.c_str()) != 0)
        Fail("put into its place", other, errno);
}

class ThisDisk final : public Disk
{
public:
    void makeFolder(const fs::path& folder) override
    {
        std::error_code error;
        fs::create_directories(folder, error);
        if (error)
            Fail("made", folder, error.value());
    }

    std::unique_ptr<OutputFile> create(const fs::path& file, std::uint32_t mode) override
    {
        return std::make_unique<LocalOutputFile>(file, mode);
    }

    void move(const fs::path& from, const fs::path& to) override
    {
        if (std::error_code error; fs::is_directory(from, error))
            MoveFolder(from, to);
        else if (::rename(from.c_str(), to.c_str()) != 0)
            Fail("put into its place", to, errno);
    }

    void exchange(const fs::path& one, const fs::path& other) override { ExchangeFolders(one, other); }

    void link(const fs::path& file, const fs::path& to) override
    {
        if (::link(file.c_str(), to.c_str()) == 0)
            return;
        std::error_code error;
        fs::copy_file(file, to, error);
        if (error)
            Fail("copied", file, error.value());
    }

    void remove(const fs::path& path) override
    {
        std::error_code error;
        fs::remove_all(path, error);
        if (error)
            Fail("removed", path, error.value());
    }

    std::uint64_t room(const fs::path& folder) override
    {
        std::error_code error;
        const auto space = fs::space(folder, error);
        if (error)
            Fail("looked at", folder, error.value());
        return space.available;
    }

    std::unique_ptr<FolderLock> tryLock(const fs::path& folder) override
    {
        const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        auto lock = std::make_unique<LocalFolderLock>(descriptor);
        if (descriptor < 0 || !lock->take(folder))
            return nullptr;
        return lock;
    }
};

} // namespace

std::shared_ptr<Disk> LocalDisk()
{
    return std::make_shared<ThisDisk>();
}

} // namespace ZRSmartDB
