// SPDX-License-Identifier: MIT
#pragma once

#include "road/desktop.h"
#include "road/homescreen.h"
#include "shell/host.h"

#include <memory>

namespace road
{

/// A person's way through the program, from the login to opened projects: the real host in this process, on
/// the folder that this program was deployed to. Each step says whether it was seen to happen. GUI thread.
class Session
{
public:
    Session();
    ~Session();

    [[nodiscard]] Desktop& desktop() { return m_desktop; }
    [[nodiscard]] HomeScreen& home() { return m_home; }

    /// Starts the host, which reads its settings at that.
    void startHost();
    [[nodiscard]] bool showLogin();
    [[nodiscard]] bool logIn();
    /// Both, and the whole tree opened.
    [[nodiscard]] bool enter();

    /// Brings a project of the tree.
    [[nodiscard]] bool download(const QString& guid);
    /// The same in two, where something holds the download up so that it can be seen.
    [[nodiscard]] bool beginDownload(const QString& guid);
    [[nodiscard]] bool finishDownload(const QString& guid);

    /// Opens a project by its card, until its window stands over the content area and shows a model.
    [[nodiscard]] bool open(const QString& guid);

    /// The one window that can be seen over the content area is as large as that.
    [[nodiscard]] bool isChildInPlace() const;
    [[nodiscard]] bool isNoChildSeen() const { return !m_home.childWindow(); }

    /// The part of the content area that shows nothing but the view of a child, in pixels of the screen.
    [[nodiscard]] static QRect view();

    [[nodiscard]] bool goHome();
    [[nodiscard]] bool turnTo(const QString& guid);
    [[nodiscard]] bool closeCurrentTab();

    [[nodiscard]] bool logOut() { return m_home.click(QStringLiteral("logoutBtn")); }

    /// Ends the host.
    void leave();

private:
    Desktop m_desktop;
    HomeScreen m_home;
    std::unique_ptr<shell::Host> m_host;
};

/// Gives the host of this folder a server, and takes away what an earlier session has left there.
void PrepareFolder(const QString& serverAddress);

} // namespace road
