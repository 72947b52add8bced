// SPDX-License-Identifier: MIT
#include "server/storage/folderlock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace server
{

FolderLock::FolderLock(const std::filesystem::path& file, bool wait)
    : m_descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    if (m_descriptor < 0)
        return;
    int result = 0;
    do {
        result = ::flock(m_descriptor, wait ? LOCK_EX : LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    m_isHeld = result == 0;
}

FolderLock::~FolderLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

} // namespace server
