// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>

namespace TorvoEditor
{

/// The shape of a worker that downloads a demonstration project under the guid of a new clone. Nothing makes
/// one: the project database has no operation that clones.
class CDemoDownLoadWorker : public QThread
{
    Q_OBJECT

signals:
    /// The download of `strGuid` as `strCloneGuid` has ended; `errorString` as for CAsyncWorker.
    void singSyncFinish(const QString& strGuid, const QString& strCloneGuid, bool ret,
                        const QString& errorString);
};

} // namespace TorvoEditor
