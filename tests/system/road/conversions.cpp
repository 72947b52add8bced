// SPDX-License-Identifier: MIT
#include "road/conversions.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QProcess>

namespace road
{

namespace
{

constexpr xcb_keysym_t enterKey = 0xff0d;

} // namespace

bool Conversions::openFor(const QString& guid)
{
    return m_home.clickOnCard(guid, QStringLiteral("kyvconvertBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("addKyvBtn")); });
}

bool Conversions::close()
{
    m_desktop.awaitQuiet();
    return m_home.click(QStringLiteral("dialogCloseBtn")) &&
           WaitFor([] { return !HomeScreen::shows(QStringLiteral("addKyvBtn")); });
}

bool Conversions::send(const QString& archive)
{
    if (!m_home.click(QStringLiteral("addKyvBtn")))
        return false;
    m_desktop.awaitQuiet();
    m_desktop.type(archive);
    m_desktop.press(enterKey);
    return WaitFor([] { return HomeScreen::shows(QStringLiteral("balancedBtn")); }) &&
           m_home.click(QStringLiteral("okBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("newBtn")); }) &&
           m_home.click(QStringLiteral("okBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("addKyvBtn")); });
}

int Conversions::stateOf(const QString& name)
{
    const auto rows = HomeScreen::namesBehind(QStringLiteral("kyvRow_"));
    for (const auto& guid : rows) {
        const QString row = QStringLiteral("kyvRow_") + guid;
        const auto* text = HomeScreen::itemIn(row, QStringLiteral("kyvName"));
        if (text == nullptr || text->property("text").toString() != name)
            continue;
        const auto* data = HomeScreen::item(row)->property("row").value<QObject*>();
        return data != nullptr ? data->property("state").toInt() : -1;
    }
    return -1;
}

QStringList ModelsHere()
{
    QStringList models;
    QDirIterator files(QCoreApplication::applicationDirPath() + "/data", {QStringLiteral("model.glb")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        models.append(files.next());
    return models;
}

bool PackModel(const QString& model, const QString& archive)
{
    return QProcess::execute(QCoreApplication::applicationDirPath() + "/kyv-pack", {model, archive}) == 0;
}

} // namespace road
