// SPDX-License-Identifier: MIT
#include "shell/webview/sandbox.h"

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace shell
{

#ifdef Q_OS_LINUX

namespace
{

bool IsRoot()
{
    return geteuid() == 0;
}

/// The engine's processes live in a user namespace of their own, which some systems forbid.
bool MayMakeUserNamespaces()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

QString SandboxProblem()
{
    if (IsRoot() || MayMakeUserNamespaces())
        return {};
    return QStringLiteral("这台计算机不允许隔离网页进程（user namespaces 被禁用），因此不能打开网页。"
                          "请联系管理员。");
}

void ChooseSandbox()
{
    // The engine refuses to run as root otherwise, and ends the process. Pages are our own and local, so that
    // machines on which everything runs as root (containers) need not go without them.
    if (IsRoot())
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

#else

QString SandboxProblem()
{
    return {};
}

void ChooseSandbox() {}

#endif

} // namespace shell
