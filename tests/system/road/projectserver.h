// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>

namespace road
{

/// The real project server on a data folder of its own, below the folder that this program was deployed to,
/// filled with the demonstration content. GUI thread.
class ProjectServer
{
public:
    /// Fills the data folder when it is not there yet. Throws std::runtime_error.
    ProjectServer();
    /// Ends the server.
    ~ProjectServer();

    /// Starts it with these options besides the usual ones, at the second time where it listened before, and
    /// waits until it does. Throws std::runtime_error.
    void start(const QStringList& options = {});

    /// Ends it at once, as the system would for want of memory.
    void kill();

    /// Halts it in the middle of what it does; connections stay, and nothing is answered.
    void halt();
    void goOn();

    [[nodiscard]] QString address() const { return QStringLiteral("http://127.0.0.1:") + m_port; }

    [[nodiscard]] qint64 process() const { return m_process.processId(); }

private:
    void signal(int number) const;

    QString m_folder;
    QString m_port = QStringLiteral("0");
    QProcess m_process;
};

} // namespace road
