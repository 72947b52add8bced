// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace bench
{

/// A free port of this machine.
[[nodiscard]] int FreePort();

/// Waits until somebody listens on a port of this machine.
void WaitForPort(int port);

/// The most memory that a process has had resident, in bytes.
[[nodiscard]] double PeakMemoryOf(qint64 process);

/// The processor time that a process has taken, of user and system together, in seconds.
[[nodiscard]] double ProcessorSecondsOf(qint64 process);

/// nginx over a folder, which may be read and, by PUT, written.
class Nginx
{
public:
    explicit Nginx(const std::filesystem::path& folder);
    ~Nginx();

    [[nodiscard]] QString url(const QString& name) const;

private:
    int m_port;
    QTemporaryDir m_folder;
    QProcess m_process;
};

/// The daemon of rsync with one writable module over a folder.
class RsyncDaemon
{
public:
    explicit RsyncDaemon(const std::filesystem::path& folder);
    ~RsyncDaemon();

    [[nodiscard]] int port() const { return m_port; }

private:
    int m_port;
    QTemporaryDir m_folder;
    QProcess m_process;
};

} // namespace bench
