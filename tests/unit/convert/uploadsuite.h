// SPDX-License-Identifier: MIT
#pragma once

#include "convert/kyvuploadtask.h"
#include "fakes/calls.h"
#include "fakes/fakekyvconversions.h"
#include "fakes/fakezip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

/// A place where a worker stops until the test lets it go on.
class Gate
{
public:
    /// By the worker: tells that it has come, and waits.
    void pass()
    {
        m_come.release();
        static_cast<void>(m_open.tryAcquire(1, 30000)); // a test that has failed opens nothing any more
    }
    /// By the test: true when a worker has come within half a minute. Events go on meanwhile.
    [[nodiscard]] bool waitForWorker()
    {
        return QTest::qWaitFor([this] { return m_come.tryAcquire(1); }, 30000);
    }
    void open(int times = 1) { m_open.release(times); }

private:
    QSemaphore m_come;
    QSemaphore m_open;
};

/// Archives to choose from, and the stand-ins in their first state.
class UploadSurroundings
{
public:
    UploadSurroundings()
    {
        Fakes::SetZipScript({});
        Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server = {}; });
        Fakes::ForgetCalls();
        QDir(TorvoEditor::KyvUploadFolder()).removeRecursively();
    }

    /// The path of a new archive.
    [[nodiscard]] QString archive(const QString& name) const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("kyv") != 3)
            qFatal("no archive");
        return file.fileName();
    }
    [[nodiscard]] QString missingArchive() const { return m_folder.filePath(QStringLiteral("missing.kyv")); }

    /// A task for a new archive; its local id is the archive's name.
    [[nodiscard]] TorvoEditor::TKyvUploadTask task(const QString& name,
                                                   const QString& bimProj = QStringLiteral("bim")) const
    {
        return {bimProj, name, {}, archive(name + QStringLiteral(".kyv")), 1};
    }

private:
    QTemporaryDir m_folder;
};

/// Writes a file in the work folder of a task.
inline void WriteWorkFile(const QString& aliasGuid, const QString& name, const QByteArray& bytes)
{
    QDir().mkpath(TorvoEditor::KyvWorkFolder(aliasGuid));
    QFile file(TorvoEditor::KyvWorkFolder(aliasGuid) + '/' + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no file in the work folder");
}
