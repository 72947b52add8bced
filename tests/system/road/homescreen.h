// SPDX-License-Identifier: MIT
#pragma once

#include "road/desktop.h"

#include <optional>

#include <QQuickItem>
#include <QQuickView>
#include <QStringList>

namespace road
{

/// What a person does in the windows of the program and sees there. Finds things by the names that the
/// screens give them, and acts on them through the desktop. GUI thread.
class HomeScreen
{
public:
    explicit HomeScreen(Desktop& desktop)
        : m_desktop(desktop)
    {
    }

    /// The program's window that shows `objectName`; null when there is none.
    [[nodiscard]] static QQuickView* windowWith(const QString& objectName);
    /// The home window; null while there is none.
    [[nodiscard]] static QQuickView* window() { return windowWith(QStringLiteral("contentRect")); }

    /// The visible thing of that name in any of our windows; null when there is none.
    [[nodiscard]] static QQuickItem* item(const QString& objectName);
    /// The visible thing of that name inside of the one named `parent`; null when there is none.
    [[nodiscard]] static QQuickItem* itemIn(const QString& parent, const QString& objectName);
    /// What follows `prefix` in the names of the things that can be seen, from the top of the window.
    [[nodiscard]] static QStringList namesBehind(const QString& prefix);
    [[nodiscard]] static bool shows(const QString& objectName) { return item(objectName) != nullptr; }
    /// The text that the visible thing of that name shows.
    [[nodiscard]] static QString textOf(const QString& objectName);

    /// The middle of a thing, in pixels of the screen.
    [[nodiscard]] static QPoint middleOf(const QQuickItem& item);
    /// All of a thing, in pixels of the screen.
    [[nodiscard]] static QRect areaOf(const QQuickItem& item);

    /// Clicks on the visible thing of that name. False when it did not appear in time.
    [[nodiscard]] bool click(const QString& objectName);
    [[nodiscard]] bool doubleClick(const QString& objectName);

    [[nodiscard]] bool logIn(const QString& account, const QString& password);

    /// The guids of the projects whose rows the tree shows now.
    [[nodiscard]] static QStringList projectsInTree();
    /// Opens department after department until nothing in the tree is closed.
    [[nodiscard]] bool openWholeTree();
    [[nodiscard]] bool doubleClickInTree(const QString& guid) { return doubleClick("treeRow_" + guid); }

    /// The card of a project; null when there is none.
    [[nodiscard]] static QQuickItem* card(const QString& guid) { return item("card_" + guid); }
    /// The guids of the projects whose cards can be seen.
    [[nodiscard]] static QStringList cards();
    /// What the card says of its project: its state, and what is being done; -1 without a card.
    [[nodiscard]] static int stateOf(const QString& guid);
    [[nodiscard]] static int operationOf(const QString& guid);
    [[nodiscard]] bool doubleClickOnCard(const QString& guid);
    /// The visible thing of that name on a card; null when there is none.
    [[nodiscard]] static QQuickItem* itemOfCard(const QString& guid, const QString& objectName);
    [[nodiscard]] bool clickOnCard(const QString& guid, const QString& objectName);

    [[nodiscard]] static QStringList tabs();

    /// Where the windows of children belong, in pixels of the screen.
    [[nodiscard]] static QRect contentArea();
    /// The window of a child that can be seen inside of the home window.
    [[nodiscard]] std::optional<NativeWindow> childWindow() const;

private:
    Desktop& m_desktop;
};

} // namespace road
