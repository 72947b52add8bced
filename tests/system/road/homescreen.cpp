// SPDX-License-Identifier: MIT
#include "road/homescreen.h"

#include <algorithm>
#include <set>

#include <QGuiApplication>

namespace road
{

namespace
{

constexpr xcb_keysym_t enterKey = 0xff0d;

void Collect(QQuickItem* root, const std::function<bool(const QQuickItem&)>& wanted,
             QList<QQuickItem*>& found)
{
    if (root == nullptr || !root->isVisible())
        return;
    if (wanted(*root))
        found.append(root);
    const auto children = root->childItems();
    for (auto* child : children)
        Collect(child, wanted, found);
}

QList<QQuickItem*> VisibleItems(const std::function<bool(const QQuickItem&)>& wanted)
{
    QList<QQuickItem*> found;
    const auto windows = QGuiApplication::topLevelWindows();
    for (auto* window : windows) {
        const auto* view = qobject_cast<QQuickView*>(window);
        if (view != nullptr && view->isVisible())
            Collect(view->contentItem(), wanted, found);
    }
    return found;
}

/// A row of the tree, and which.
struct Row {
    QQuickItem* item;
    QString guid;
    bool isDepartment;
};

QList<Row> TreeRows()
{
    const QString prefix = QStringLiteral("treeRow_");
    QList<Row> rows;
    const auto items =
        VisibleItems([&](const QQuickItem& item) { return item.objectName().startsWith(prefix); });
    for (auto* item : items)
        rows.append({item, item->objectName().mid(prefix.size()), item->property("isDepartment").toBool()});
    std::sort(rows.begin(), rows.end(), [](const Row& one, const Row& other) {
        return one.item->mapToScene({}).y() < other.item->mapToScene({}).y();
    });
    return rows;
}

} // namespace

QQuickView* HomeScreen::windowWith(const QString& objectName)
{
    const auto* found = item(objectName);
    return found != nullptr ? qobject_cast<QQuickView*>(found->window()) : nullptr;
}

QQuickItem* HomeScreen::item(const QString& objectName)
{
    return VisibleItems([&](const QQuickItem& item) { return item.objectName() == objectName; }).value(0);
}

QQuickItem* HomeScreen::itemIn(const QString& parent, const QString& objectName)
{
    QList<QQuickItem*> found;
    Collect(
        item(parent), [&](const QQuickItem& item) { return item.objectName() == objectName; }, found);
    return found.value(0);
}

QStringList HomeScreen::namesBehind(const QString& prefix)
{
    auto items = VisibleItems([&](const QQuickItem& item) { return item.objectName().startsWith(prefix); });
    std::stable_sort(items.begin(), items.end(), [](const QQuickItem* one, const QQuickItem* other) {
        return one->mapToScene({}).y() < other->mapToScene({}).y();
    });
    QStringList names;
    for (const auto* item : items)
        names.append(item->objectName().mid(prefix.size()));
    return names;
}

QString HomeScreen::textOf(const QString& objectName)
{
    const auto* found = item(objectName);
    return found != nullptr ? found->property("text").toString() : QString();
}

QRect HomeScreen::areaOf(const QQuickItem& item)
{
    const QPointF place = item.window()->mapToGlobal(item.mapToScene({}).toPoint());
    const double ratio = item.window()->devicePixelRatio();
    return QRectF(place * ratio, QSizeF(item.width(), item.height()) * ratio).toRect();
}

QPoint HomeScreen::middleOf(const QQuickItem& item)
{
    return areaOf(item).center();
}

bool HomeScreen::click(const QString& objectName)
{
    if (!WaitFor([&] { return shows(objectName); }))
        return false;
    m_desktop.click(middleOf(*item(objectName)));
    return true;
}

bool HomeScreen::doubleClick(const QString& objectName)
{
    if (!WaitFor([&] { return shows(objectName); }))
        return false;
    m_desktop.doubleClick(middleOf(*item(objectName)));
    return true;
}

bool HomeScreen::logIn(const QString& account, const QString& password)
{
    if (!click(QStringLiteral("accountField")))
        return false;
    m_desktop.type(account);
    if (!click(QStringLiteral("passwordField")))
        return false;
    m_desktop.type(password);
    m_desktop.press(enterKey);
    return true;
}

QStringList HomeScreen::projectsInTree()
{
    QStringList guids;
    for (const auto& row : TreeRows()) {
        if (!row.isDepartment)
            guids.append(row.guid);
    }
    return guids;
}

bool HomeScreen::openWholeTree()
{
    if (!WaitFor([] { return !TreeRows().isEmpty(); }))
        return false;
    std::set<QString> opened;
    for (;;) {
        const auto rows = TreeRows();
        const auto closed = std::find_if(rows.begin(), rows.end(), [&](const Row& row) {
            return row.isDepartment && opened.count(row.guid) == 0;
        });
        if (closed == rows.end())
            return true;
        opened.insert(closed->guid);
        m_desktop.click(middleOf(*closed->item));
        const auto before = rows.size();
        if (!WaitFor([&] { return TreeRows().size() > before; }))
            return false;
    }
}

int HomeScreen::stateOf(const QString& guid)
{
    const auto* found = card(guid);
    return found != nullptr ? found->property("currProState").toInt() : -1;
}

int HomeScreen::operationOf(const QString& guid)
{
    const auto* found = card(guid);
    return found != nullptr ? found->property("currDealState").toInt() : -1;
}

bool HomeScreen::doubleClickOnCard(const QString& guid)
{
    if (!WaitFor([&] { return card(guid) != nullptr; }))
        return false;
    const QRect area = areaOf(*card(guid));
    m_desktop.doubleClick({area.center().x(), area.top() + area.height() / 3});
    return true;
}

QQuickItem* HomeScreen::itemOfCard(const QString& guid, const QString& objectName)
{
    QList<QQuickItem*> found;
    Collect(
        card(guid), [&](const QQuickItem& item) { return item.objectName() == objectName; }, found);
    return found.value(0);
}

bool HomeScreen::clickOnCard(const QString& guid, const QString& objectName)
{
    if (!WaitFor([&] {
            const auto* thing = itemOfCard(guid, objectName);
            return thing != nullptr && thing->isEnabled();
        }))
        return false;
    m_desktop.click(middleOf(*itemOfCard(guid, objectName)));
    return true;
}

QStringList HomeScreen::tabs()
{
    return namesBehind(QStringLiteral("tab_"));
}

QStringList HomeScreen::cards()
{
    return namesBehind(QStringLiteral("card_"));
}

QRect HomeScreen::contentArea()
{
    const auto* found = item(QStringLiteral("contentRect"));
    return found != nullptr ? areaOf(*found) : QRect();
}

std::optional<NativeWindow> HomeScreen::childWindow() const
{
    const auto* home = window();
    if (home == nullptr)
        return {};
    for (const auto& child : m_desktop.childrenOf(static_cast<xcb_window_t>(home->winId()))) {
        if (child.isViewable)
            return child;
    }
    return {};
}

} // namespace road
