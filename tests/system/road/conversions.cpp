// SPDX-License-Identifier: MIT
#include "road/conversions.h"

#include "EditorCommon/zip.h"
#include "shell/accountfiles.h"

#include <random>

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace road
{

namespace
{

constexpr xcb_keysym_t enterKey = 0xff0d;
constexpr xcb_keysym_t controlKey = 0xffe3;
constexpr xcb_keysym_t selectAllKey = 'a';
const QString rowPrefix = QStringLiteral("kyvRow_");

/// The guid behind the prefix in the object name of the row that shows this name; empty when there is none.
QString GuidOf(const QString& prefix, const QString& name)
{
    const auto guids = HomeScreen::namesBehind(prefix);
    for (const auto& guid : guids) {
        const auto* text = HomeScreen::itemIn(prefix + guid, QStringLiteral("kyvName"));
        if (text != nullptr && text->property("text").toString() == name)
            return guid;
    }
    return {};
}

QStringList NamesIn(const QString& prefix)
{
    QStringList names;
    const auto guids = HomeScreen::namesBehind(prefix);
    for (const auto& guid : guids) {
        const auto* text = HomeScreen::itemIn(prefix + guid, QStringLiteral("kyvName"));
        names.append(text != nullptr ? text->property("text").toString() : QString());
    }
    return names;
}

bool WriteObject(const QString& path, const QJsonObject& object)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(object).toJson()) > 0;
}

/// Packs one file of a model, with this content.
bool PackFile(const QByteArray& content, const QString& archive)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("part.zrg")));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
           EditorCommon::CZip::zip(folder.path(), archive);
}

} // namespace

bool AllowConversions()
{
    QFile file(shell::HostConfigFile());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    auto settings = QJsonDocument::fromJson(file.readAll()).object();
    settings[QStringLiteral("isBimSdk")] = false;
    file.close();
    return WriteObject(shell::HostConfigFile(), settings) &&
           WriteObject(QCoreApplication::applicationDirPath() + QStringLiteral("/WebConvert.json"),
                       {{QStringLiteral("using"), QStringLiteral("1")}});
}

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

bool Conversions::choose(const QString& archive)
{
    if (!m_home.click(QStringLiteral("addKyvBtn")))
        return false;
    m_desktop.awaitQuiet();
    // The name that was chosen last may still stand there.
    m_desktop.press(selectAllKey, controlKey);
    m_desktop.type(archive);
    m_desktop.press(enterKey);
    return WaitFor([] { return HomeScreen::shows(QStringLiteral("balancedBtn")); }) &&
           m_home.click(QStringLiteral("okBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("newBtn")); });
}

bool Conversions::send(const QString& archive)
{
    return choose(archive) && m_home.click(QStringLiteral("okBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("addKyvBtn")); });
}

bool Conversions::sendInPlaceOf(const QString& archive, const QString& name)
{
    const QString choices = QStringLiteral("kyvChoice_");
    if (!choose(archive))
        return false;
    // The cards have a button of that name, too.
    m_desktop.click(
        HomeScreen::middleOf(*HomeScreen::itemIn(QStringLiteral("kyvPage"), QStringLiteral("updateBtn"))));
    if (!m_home.click(QStringLiteral("okBtn")) || !WaitFor([&] { return !GuidOf(choices, name).isEmpty(); }))
        return false;
    m_desktop.awaitQuiet();
    m_desktop.click(HomeScreen::middleOf(
        *HomeScreen::itemIn(choices + GuidOf(choices, name), QStringLiteral("kyvRadio"))));
    return WaitFor([] { return HomeScreen::item(QStringLiteral("okBtn"))->isEnabled(); }) &&
           m_home.click(QStringLiteral("okBtn")) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("addKyvBtn")); });
}

bool Conversions::mayGiveUp(const QString& name)
{
    return HomeScreen::itemIn(rowPrefix + GuidOf(rowPrefix, name), QStringLiteral("delKyvBtn")) != nullptr;
}

bool Conversions::giveUp(const QString& name)
{
    if (!WaitFor([&] { return mayGiveUp(name); }))
        return false;
    m_desktop.click(HomeScreen::middleOf(
        *HomeScreen::itemIn(rowPrefix + GuidOf(rowPrefix, name), QStringLiteral("delKyvBtn"))));
    return true;
}

QStringList Conversions::lookAtFailures()
{
    if (!m_home.click(QStringLiteral("failedListBtn")) ||
        !WaitFor([] { return HomeScreen::shows(QStringLiteral("backBtn")); }))
        return {};
    m_desktop.awaitQuiet();
    auto names = NamesIn(QStringLiteral("kyvFailure_"));
    if (!m_home.click(QStringLiteral("backBtn")) ||
        !WaitFor([] { return HomeScreen::shows(QStringLiteral("addKyvBtn")); }))
        return {};
    return names;
}

int Conversions::stateOf(const QString& name)
{
    const auto guid = GuidOf(rowPrefix, name);
    const auto* row = guid.isEmpty() ? nullptr : HomeScreen::item(rowPrefix + guid);
    const auto* data = row != nullptr ? row->property("row").value<QObject*>() : nullptr;
    return data != nullptr ? data->property("state").toInt() : noRow;
}

QStringList Conversions::names()
{
    return NamesIn(rowPrefix);
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

bool MakeLargeArchive(const QString& archive)
{
    // Halves when it is packed: neither stored as it is, nor done in a moment.
    constexpr int bytes = 150 << 20;
    std::mt19937 numbers(1);
    QByteArray content(bytes, Qt::Uninitialized);
    for (auto& byte : content)
        byte = static_cast<char>('a' + numbers() % 16);
    return PackFile(content, archive);
}

bool MakeHollowArchive(const QString& archive)
{
    return PackFile(QByteArray(5000, 'x'), archive);
}

} // namespace road
