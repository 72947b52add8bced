// SPDX-License-Identifier: MIT
#include "fakes/fakezip.h"

#include "EditorCommon/zip.h"
#include "fakes/calls.h"

#include <mutex>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Fakes
{

namespace
{

std::mutex scriptMutex; ///< guards the script

ZipScript& Script()
{
    static ZipScript script;
    return script;
}

bool Write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

void SetZipScript(const ZipScript& script)
{
    const std::lock_guard lock(scriptMutex);
    Script() = script;
}

bool UnpackSample(const QString& archive, const QString& folder)
{
    const auto name = QFileInfo(archive).baseName();
    return Write(folder + '/' + name + ".zrg", "geometry") && Write(folder + '/' + name + ".ZRIM", "index") &&
           Write(folder + "/ballast.txt", "ballast");
}

bool PackNames(const QString& folder, const QString& archive)
{
    const auto names = QDir(folder).entryList(QDir::Files, QDir::Name);
    return !names.isEmpty() && Write(archive, names.join(' ').toUtf8());
}

} // namespace Fakes

namespace EditorCommon
{

bool CZip::unZip(const QString& archive, const QString& folder)
{
    Fakes::Called(QStringLiteral("unZip(%1)").arg(QFileInfo(archive).fileName()));
    Fakes::ZipScript::Step step;
    {
        const std::lock_guard lock(Fakes::scriptMutex);
        step = Fakes::Script().unZip;
    }
    return step ? step(archive, folder) : Fakes::UnpackSample(archive, folder);
}

bool CZip::zip(const QString& folder, const QString& archive)
{
    Fakes::Called(QStringLiteral("zip(%1)").arg(QFileInfo(archive).fileName()));
    Fakes::ZipScript::Step step;
    {
        const std::lock_guard lock(Fakes::scriptMutex);
        step = Fakes::Script().zip;
    }
    return step ? step(folder, archive) : Fakes::PackNames(folder, archive);
}

} // namespace EditorCommon
