// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

namespace road
{

/// Somebody else who is logged in with the same account on another machine: a data folder of its own, and no
/// screen. Each operation waits for its end and says whether it succeeded.
class Colleague
{
public:
    explicit Colleague(QString server);
    /// Looks into a data folder that is there already.
    Colleague(QString server, QString dataFolder);

    [[nodiscard]] bool download(const QString& guid) const { return run({"download", guid}); }
    [[nodiscard]] bool update(const QString& guid) const { return run({"update", guid}); }
    [[nodiscard]] bool upload(const QString& guid) const { return run({"upload", guid}); }
    [[nodiscard]] bool force(const QString& guid) const { return run({"force", guid}); }
    /// Changes the project's note.
    [[nodiscard]] bool edit(const QString& guid, const QString& note) const
    {
        return run({"edit", guid, note});
    }

    [[nodiscard]] int stateOf(const QString& guid) const;
    [[nodiscard]] QString noteOf(const QString& guid) const;
    /// Name, type, place and whatever else the home window's card shows of a project.
    [[nodiscard]] QJsonObject factsOf(const QString& guid) const;

private:
    [[nodiscard]] bool run(const QStringList& command, QString* said = nullptr) const;

    QString m_server;
    QTemporaryDir m_folder;
    QString m_dataFolder;
};

} // namespace road
