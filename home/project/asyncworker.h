// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>

namespace TorvoEditor
{

/// Runs one long project operation on a thread of its own and frees itself when it has ended. It cannot be
/// cancelled. The starter makes it without a parent, connects singSyncFinish, calls start and keeps no
/// pointer.
class CAsyncWorker : public QThread
{
    Q_OBJECT

public:
    /// The operations; any other number runs nothing and reports a failure.
    enum JobType { Download = 0, Upload = 1, ForcedUpload = 2, Update = 3, Upgrade = 4 };

    CAsyncWorker(int jobType, const QString& guid);

signals:
    /// The operation has ended. `errorString` is empty on success, else the database's reason. Emitted on the
    /// worker's thread.
    void singSyncFinish(const QString& strGUID, bool ret, const QString& errorString);

protected:
    void run() override;

private:
    int m_jobType;
    QString m_guid;
};

} // namespace TorvoEditor
