// SPDX-License-Identifier: MIT
#include "road/submodels.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace road
{

namespace
{

constexpr xcb_keysym_t enterKey = 0xff0d;
constexpr xcb_keysym_t controlKey = 0xffe3;
constexpr xcb_keysym_t selectAllKey = 'a';
constexpr int longest = 120000; ///< ms for a conversion
const QString rowPrefix = QStringLiteral("bimRow_");

QString NameOf(const QString& uid)
{
    const auto* text = HomeScreen::itemIn(rowPrefix + uid, QStringLiteral("bimName"));
    return text != nullptr ? text->property("text").toString() : QString();
}

QQuickItem* RowOf(const QString& name)
{
    const auto uids = HomeScreen::namesBehind(rowPrefix);
    for (const auto& uid : uids) {
        if (NameOf(uid) == name)
            return HomeScreen::item(rowPrefix + uid);
    }
    return nullptr;
}

bool IsEnabled(const QString& button)
{
    const auto* item = HomeScreen::item(button);
    return item != nullptr && item->isEnabled();
}

} // namespace

bool SubModels::choose(const QString& button, const QString& file)
{
    if (!WaitFor([&] { return IsEnabled(button); }) || !m_home.click(button))
        return false;
    m_desktop.awaitQuiet();
    // The name that was chosen last may still stand there.
    m_desktop.press(selectAllKey, controlKey);
    m_desktop.type(file);
    m_desktop.press(enterKey);
    m_desktop.awaitQuiet();
    return true;
}

bool SubModels::clickOn(const QString& name)
{
    if (!WaitFor([&] { return RowOf(name) != nullptr; }))
        return false;
    m_desktop.click(HomeScreen::middleOf(*RowOf(name)));
    return true;
}

bool SubModels::replace(const QString& name, const QString& file)
{
    return clickOn(name) && choose(QStringLiteral("bimUpdateBtn"), file);
}

bool SubModels::remove(const QString& name)
{
    return WaitFor([] { return IsEnabled(QStringLiteral("bimDeleteBtn")); }) && clickOn(name) &&
           m_home.click(QStringLiteral("bimDeleteBtn")) && WaitFor([&] { return stateOf(name) == noModel; });
}

int SubModels::stateOf(const QString& name)
{
    const auto* row = RowOf(name);
    return row != nullptr ? row->property("convertState").toInt() : noModel;
}

bool SubModels::awaitModel(const QString& name)
{
    return WaitFor([&] { return stateOf(name) == modelIsThere; }, longest);
}

QStringList SubModels::names()
{
    QStringList names;
    const auto uids = HomeScreen::namesBehind(rowPrefix);
    for (const auto& uid : uids)
        names.append(NameOf(uid));
    return names;
}

bool SubModels::openFloors()
{
    return m_home.click(QStringLiteral("bimFloorsBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("floorOkBtn")); });
}

QStringList FloorDialog::textsIn(const QString& column, const QString& prefix)
{
    QStringList texts;
    for (int i = 0; const auto* row = HomeScreen::itemIn(column, prefix + QString::number(i)); ++i)
        texts.append(row->property("text").toString());
    return texts;
}

QQuickItem* FloorDialog::rowOf(const QString& column, const QString& prefix, const QString& text)
{
    const int place = textsIn(column, prefix).indexOf(text);
    return place >= 0 ? HomeScreen::itemIn(column, prefix + QString::number(place)) : nullptr;
}

bool FloorDialog::add(const QString& floor)
{
    if (!m_home.click(QStringLiteral("floorAddBtn")) ||
        !WaitFor([] { return HomeScreen::shows(QStringLiteral("floorNameInput")); }))
        return false;
    m_desktop.awaitQuiet();
    m_desktop.type(floor);
    return m_home.click(QStringLiteral("floorNameOkBtn")) &&
           WaitFor([&] { return floors().contains(floor); }) &&
           WaitFor([] { return !HomeScreen::shows(QStringLiteral("floorNameInput")); });
}

bool FloorDialog::choose(const QString& floor)
{
    const auto row = [&] { return rowOf(QStringLiteral("floorAll"), QStringLiteral("floor_"), floor); };
    if (!WaitFor([&] { return row() != nullptr; }))
        return false;
    m_desktop.click(HomeScreen::middleOf(*row()));
    return WaitFor([&] { return row() != nullptr && row()->property("isLit").toBool(); });
}

bool FloorDialog::toggle(const QString& floorOfModel)
{
    const auto row = [&] {
        return rowOf(QStringLiteral("floorUnMatched"), QStringLiteral("item_"), floorOfModel);
    };
    if (!WaitFor([&] { return row() != nullptr; }))
        return false;
    const bool wasMarked = row()->property("isMarked").toBool();
    m_desktop.doubleClick(HomeScreen::middleOf(*row()));
    return WaitFor([&] { return row() != nullptr && row()->property("isMarked").toBool() != wasMarked; });
}

bool FloorDialog::accept()
{
    return leaveBy(QStringLiteral("floorOkBtn"));
}

bool FloorDialog::cancel()
{
    return leaveBy(QStringLiteral("floorCancelBtn"));
}

bool FloorDialog::leaveBy(const QString& button)
{
    return m_home.click(button) && WaitFor([&] { return !HomeScreen::shows(button); });
}

QString MakeDrawing(const QString& folder)
{
    const QString made = QDir(folder).filePath(QStringLiteral("plan-AC1018.dwg"));
    const QString file = QDir(folder).filePath(QStringLiteral("plan.dwg"));
    return QProcess::execute(QStringLiteral("node"), {TORVO_WRITE_DRAWINGS, TORVO_ROOT, folder}) == 0 &&
                   QFile::rename(made, file)
               ? file
               : QString();
}

QString CopyFbx(const QString& folder)
{
    const QString source = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                           QStringLiteral("/torvo/sources/spider.fbx");
    const QString file = QDir(folder).filePath(QStringLiteral("spider.fbx"));
    return QFile::exists(file) || QFile::copy(source, file) ? file : QString();
}

} // namespace road
