// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// A converter that is a shell script, with a data folder beside it. The script finds the source in $source,
/// the folder of the model in $folder and the test's own folder in $here; its process's number stands in the
/// file "pid.NAME", NAME being that of the source without its ending.
class ScriptedConverter
{
public:
    explicit ScriptedConverter(const QByteArray& body) { write(body); }

    void write(const QByteArray& body) const
    {
        QFile script(program());
        if (!script.open(QIODevice::WriteOnly))
            qFatal("no script");
        script.write("#!/bin/bash\nhere=" + m_here.path().toUtf8() +
                     "\nsource=${@: -2:1}\nfolder=${@: -1}\nname=$(basename ${source%.*})\n"
                     "echo \"$@\" >$here/arguments.$name\n"
                     "echo $$ >$here/pid.new.$name\nmv $here/pid.new.$name $here/pid.$name\n" +
                     body);
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    [[nodiscard]] QString program() const { return m_here.filePath("converter"); }
    [[nodiscard]] QString data() const { return m_here.filePath("data"); }
    [[nodiscard]] QString path(const QString& name) const { return m_here.filePath(name); }

    [[nodiscard]] QByteArray text(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }

    /// The process that a file names, once it does; 0 when it never does.
    [[nodiscard]] pid_t process(const QString& file) const
    {
        if (!QTest::qWaitFor([&] { return QFile::exists(path(file)); }, 30000))
            return 0;
        return static_cast<pid_t>(text(file).toLongLong());
    }
    [[nodiscard]] static bool isRunning(pid_t process)
    {
        // Whoever has ended without being waited for is still listed.
        QFile stat(QStringLiteral("/proc/%1/stat").arg(process));
        return stat.open(QIODevice::ReadOnly) && !stat.readAll().contains(") Z ");
    }

    /// Everything in the data folder.
    [[nodiscard]] QStringList left() const
    {
        return QDir(data()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

private:
    QTemporaryDir m_here;
};
