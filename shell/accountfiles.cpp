// SPDX-License-Identifier: MIT
#include "shell/accountfiles.h"

#include <QCoreApplication>
#include <QTemporaryFile>

namespace shell
{

QString HostConfigFile()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/hostConfig.json");
}

QString SavedLoginFile()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/savedLogin.json");
}

QString FolderProblem()
{
    const QString folder = QCoreApplication::applicationDirPath();
    QTemporaryFile probe(folder + QStringLiteral("/.writable-XXXXXX"));
    if (probe.open())
        return {};
    return QStringLiteral("程序目录不可写，工程数据无处存放：\n%1\n%2\n请将程序安装到有写权限的目录后重试。")
        .arg(folder, probe.errorString());
}

} // namespace shell
