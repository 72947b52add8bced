// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace shell
{

/// The folder of our own pages. A browser engine that nobody mends between two releases must see nothing but
/// them: whatever is not a file below this folder is foreign, be it on the network or on this machine.
class PageFolder
{
public:
    explicit PageFolder(QString folder)
        : m_folder(std::move(folder))
    {
    }

    /// The pages that are deployed beside the program.
    [[nodiscard]] static PageFolder ofTheProgram();

    [[nodiscard]] const QString& path() const { return m_folder; }

    /// The file that an address names, an absolute path or an address of a local file; empty when it is
    /// neither. No address of another machine is a file here.
    [[nodiscard]] static QString fileOf(const QString& address);

    /// The file would lie below the folder; it need not exist.
    [[nodiscard]] bool covers(const QString& file) const;

    /// The file exists and lies below the folder, also when every link on its way is followed.
    [[nodiscard]] bool holds(const QString& file) const;
    [[nodiscard]] bool holds(const QUrl& url) const { return url.isLocalFile() && holds(url.toLocalFile()); }

private:
    QString m_folder;
};

} // namespace shell
