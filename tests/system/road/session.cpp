// SPDX-License-Identifier: MIT
#include "road/session.h"

#include "road/picture.h"
#include "road/samplecontent.h"
#include "shell/accountfiles.h"

#include <stdexcept>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace road
{

namespace
{

// As the cards give them.
constexpr int notBusy = 0;
constexpr int downloading = 2;

constexpr xcb_keysym_t saveKey = 's';
constexpr xcb_keysym_t controlKey = 0xffe3;
constexpr int loadMilliseconds = 60000;
/// Shades of an empty view, with a margin; a model of several materials in light and shadow has many more.
constexpr int coloursOfEmptyView = 16;

shell::HostConfig HostConfigHere()
{
    QString problem;
    auto config =
        shell::ReadHostConfig(shell::HostConfigFile(), {QCoreApplication::applicationFilePath()}, problem);
    if (!problem.isEmpty())
        throw std::runtime_error(problem.toStdString());
    return config;
}

} // namespace

Session::Session()
    : m_home(m_desktop)
{
}

Session::~Session()
{
    leave();
}

void Session::startHost()
{
    m_host = std::make_unique<shell::Host>(HostConfigHere());
    m_host->start();
}

QString Session::serverAddress()
{
    return HostConfigHere().server;
}

bool Session::showLogin()
{
    startHost();
    return WaitFor([] { return HomeScreen::shows(QStringLiteral("accountField")); }) &&
           // A window manager takes a moment to place it.
           WaitFor([this] { return ColoursIn(m_desktop.picture(), m_desktop.picture().rect()) > 2; });
}

bool Session::logIn()
{
    return m_home.logIn(account, password) && WaitFor([] { return HomeScreen::window() != nullptr; }) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("projectTree")); }) &&
           WaitFor([] { return HomeScreen::window()->isExposed(); });
}

bool Session::enter()
{
    return showLogin() && logIn() && m_home.openWholeTree();
}

bool Session::download(const QString& guid)
{
    return m_home.doubleClickInTree(guid) && WaitFor([&] { return HomeScreen::card(guid) != nullptr; }) &&
           finishDownload(guid);
}

bool Session::beginDownload(const QString& guid)
{
    return m_home.doubleClickInTree(guid) &&
           WaitFor([&] { return HomeScreen::operationOf(guid) == downloading; });
}

bool Session::finishDownload(const QString& guid)
{
    return WaitFor([&] { return HomeScreen::operationOf(guid) == notBusy; }, loadMilliseconds) &&
           WaitFor([&] { return HomeScreen::stateOf(guid) == upToDate; });
}

bool Session::press(const QString& guid, const QString& button, const QString& question)
{
    return m_home.clickOnCard(guid, button) &&
           WaitFor([&] { return HomeScreen::textOf(QStringLiteral("messageText")).contains(question); }) &&
           m_home.click(QStringLiteral("yesBtn")) &&
           WaitFor([] { return !HomeScreen::shows(QStringLiteral("messageText")); });
}

bool Session::upload(const QString& guid, int wanted)
{
    return press(guid, QStringLiteral("uploadBtn"), QStringLiteral("上传到服务器")) &&
           WaitFor(
               [&] {
                   return HomeScreen::operationOf(guid) == notBusy && HomeScreen::stateOf(guid) == wanted;
               },
               loadMilliseconds);
}

bool Session::update(const QString& guid, int wanted)
{
    return press(guid, QStringLiteral("updateBtn"), QStringLiteral("更新为服务器版本")) &&
           WaitFor(
               [&] {
                   return HomeScreen::operationOf(guid) == notBusy && HomeScreen::stateOf(guid) == wanted;
               },
               loadMilliseconds);
}

bool Session::removeFromList(const QString& guid)
{
    return press(guid, QStringLiteral("delBtn"), QStringLiteral("从工程列表中删除")) &&
           WaitFor([&] { return HomeScreen::card(guid) == nullptr; });
}

bool Session::upgrade(const QString& guid)
{
    return m_home.clickOnCard(guid, QStringLiteral("upgradeCover")) &&
           WaitFor([&] { return HomeScreen::itemOfCard(guid, QStringLiteral("upgradeCover")) == nullptr; },
                   loadMilliseconds);
}

bool Session::writeNote(const QString& note)
{
    // Where the panel of a tab has its note and its button, which is bright while there is something to save.
    const QRect area = HomeScreen::contentArea();
    const QRect button(area.topRight() + QPoint(-200, 250), QSize(120, 16));
    const QImage before = m_desktop.picture();
    const auto isBright = [&] { return DifferenceIn(before, m_desktop.picture(), button) > 0.02; };
    const QPoint field = area.topRight() + QPoint(-140, 185);
    m_desktop.click(field);
    // Keys go to the window that has the focus: it is there when the field has its frame, or its mark blinks.
    const QRect around(field - QPoint(150, 60), QSize(290, 120));
    if (!WaitFor([&] { return DifferenceIn(before, m_desktop.picture(), around) > 0; }))
        return false;
    m_desktop.awaitQuiet();
    m_desktop.type(note);
    if (!WaitFor(isBright))
        return false;
    m_desktop.press(saveKey, controlKey);
    return WaitFor([&] { return !isBright(); });
}

QRect Session::view()
{
    const QRect area = HomeScreen::contentArea();
    return area.adjusted(area.width() / 4, area.height() / 4, -area.width() / 4, -area.height() / 4);
}

bool Session::isChildInPlace() const
{
    const auto child = m_home.childWindow();
    return child && child->area == HomeScreen::contentArea();
}

bool Session::open(const QString& guid)
{
    return m_home.doubleClickOnCard(guid) && WaitFor([&] { return HomeScreen::tabs().contains(guid); }) &&
           WaitFor([this] { return isChildInPlace(); }, loadMilliseconds) &&
           WaitFor([this] { return ColoursIn(m_desktop.picture(), view()) > coloursOfEmptyView; },
                   loadMilliseconds);
}

bool Session::goHome()
{
    return m_home.click(QStringLiteral("mainPageBtn")) && WaitFor([this] { return isNoChildSeen(); });
}

bool Session::turnTo(const QString& guid)
{
    return m_home.click("tab_" + guid) && WaitFor([this] { return isChildInPlace(); });
}

bool Session::closeCurrentTab()
{
    const int before = HomeScreen::tabs().size();
    return m_home.click(QStringLiteral("tabCloseBtn")) &&
           WaitFor([&] { return HomeScreen::tabs().size() == before - 1; });
}

void Session::leave()
{
    if (!m_host)
        return;
    m_host->stop();
    m_host.reset();
}

void PrepareFolder(const QString& serverAddress)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    for (const auto& name : {QStringLiteral("data"), QStringLiteral("projImage")})
        QDir(folder.filePath(name)).removeRecursively();
    QFile::remove(folder.filePath(QStringLiteral("ProjectConfig.json")));
    QFile::remove(shell::SavedLoginFile());
    QFile file(shell::HostConfigFile());
    const QJsonObject settings{{QStringLiteral("server"), serverAddress},
                               {QStringLiteral("appVer"), QStringLiteral("Normal")},
                               {QStringLiteral("isBimSdk"), true}};
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(settings).toJson()) <= 0)
        throw std::runtime_error("the host's settings cannot be written");
}

} // namespace road
