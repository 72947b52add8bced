// SPDX-License-Identifier: MIT
#pragma once

#include "road/desktop.h"
#include "road/homescreen.h"
#include "shell/host.h"

#include <memory>

namespace road
{

// What a card says of its project.
inline constexpr int onlyHere = 0;
inline constexpr int upToDate = 1;
inline constexpr int changedHere = 2;
inline constexpr int changedThere = 3;
inline constexpr int changedOnBoth = 4;

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

    /// Presses a button of a card and says yes to the question, until the work that it begins is done. False
    /// when the card is not in the state `wanted` then.
    [[nodiscard]] bool upload(const QString& guid, int wanted = upToDate);
    [[nodiscard]] bool update(const QString& guid, int wanted = upToDate);
    [[nodiscard]] bool removeFromList(const QString& guid);
    /// Brings a project of an older format up to date.
    [[nodiscard]] bool upgrade(const QString& guid);

    /// Writes a note in the current tab and saves it.
    [[nodiscard]] bool writeNote(const QString& note);

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

    /// The project server in the settings of this folder's host.
    [[nodiscard]] static QString serverAddress();

private:
    [[nodiscard]] bool press(const QString& guid, const QString& button, const QString& question);

    Desktop m_desktop;
    HomeScreen m_home;
    std::unique_ptr<shell::Host> m_host;
};

/// Gives the host of this folder a server, and takes away what an earlier session has left there.
void PrepareFolder(const QString& serverAddress);

} // namespace road
