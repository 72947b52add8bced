// SPDX-License-Identifier: MIT
#include "road/infocard.h"

#include <algorithm>

namespace road
{

namespace
{

constexpr xcb_keysym_t controlKey = 0xffe3;
constexpr xcb_keysym_t selectAllKey = 'a';

QString RowName(const QString& row)
{
    return QStringLiteral("infoRow_") + row;
}

} // namespace

bool InfoCard::openFor(const QString& guid)
{
    return m_home.clickOnCard(guid, QStringLiteral("proInfoBtn")) && awaitStanding();
}

bool InfoCard::openFromTree(const QString& guid)
{
    return m_home.click("treeRow_" + guid) && awaitStanding();
}

bool InfoCard::awaitStanding()
{
    if (!WaitFor([] { return HomeScreen::shows(QStringLiteral("infoCancelBtn")); }))
        return false;
    // It slides in: it stands when it is at the same place twice.
    QPoint before;
    return WaitFor([&] {
        const auto* button = HomeScreen::item(QStringLiteral("infoCancelBtn"));
        const QPoint now = button != nullptr ? HomeScreen::middleOf(*button) : QPoint();
        const bool isStanding = !now.isNull() && now == before;
        before = now;
        m_desktop.awaitQuiet();
        return isStanding;
    });
}

bool InfoCard::leaveBy(const QString& button)
{
    return m_home.click(button) &&
           WaitFor([] { return !HomeScreen::shows(QStringLiteral("infoCancelBtn")); });
}

bool InfoCard::deleteLocalData()
{
    return m_home.click(QStringLiteral("deleteBtn")) && WaitFor([] {
               return HomeScreen::textOf(QStringLiteral("messageText"))
                   .contains(QStringLiteral("只删除本地工程数据"));
           }) &&
           m_home.click(QStringLiteral("yesBtn")) &&
           WaitFor([] { return !HomeScreen::shows(QStringLiteral("infoCancelBtn")); });
}

QStringList InfoCard::rows()
{
    return HomeScreen::namesBehind(RowName(QString()));
}

QString InfoCard::valueOf(const QString& row)
{
    const auto* field = HomeScreen::itemIn(RowName(row), QStringLiteral("cardField"));
    return field != nullptr ? field->property("text").toString() : QString();
}

bool InfoCard::retype(const QString& row, const QString& text)
{
    if (!clickIn(row, QStringLiteral("cardField")))
        return false;
    m_desktop.press(selectAllKey, controlKey);
    m_desktop.type(text);
    return WaitFor([&] { return valueOf(row) == text; });
}

bool InfoCard::clickIn(const QString& row, const QString& objectName)
{
    if (!WaitFor([&] {
            const auto* thing = HomeScreen::itemIn(RowName(row), objectName);
            return thing != nullptr && thing->isEnabled();
        }))
        return false;
    m_desktop.click(HomeScreen::middleOf(*HomeScreen::itemIn(RowName(row), objectName)));
    return true;
}

bool ChooseRegion(Desktop& desktop, const QString& box, int row, QString& chosen)
{
    if (!WaitFor([&] { return HomeScreen::shows(box); }))
        return false;
    desktop.click(HomeScreen::middleOf(*HomeScreen::item(box)));
    const QString prefix = QStringLiteral("region_");
    if (!WaitFor([&] { return HomeScreen::namesBehind(prefix).size() > row; }))
        return false;
    desktop.awaitQuiet();
    const auto* item = HomeScreen::item(prefix + HomeScreen::namesBehind(prefix).at(row));
    chosen = item->property("text").toString();
    desktop.click(HomeScreen::middleOf(*item));
    return WaitFor([&] { return HomeScreen::namesBehind(prefix).isEmpty(); }) &&
           WaitFor([&] { return HomeScreen::item(box)->property("regionName").toString() == chosen; });
}

} // namespace road
