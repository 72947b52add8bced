// SPDX-License-Identifier: MIT
#include "check/check.h"

#include "road/picture.h"
#include "road/samplecontent.h"
#include "shell/accountfiles.h"

#include <csignal>
#include <cstdio>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTest>

namespace
{

using road::HomeScreen;
using road::WaitFor;

// As the cards give them.
constexpr int notBusy = 0;
constexpr int downloading = 2;
constexpr int upToDate = 1;

constexpr int loadMilliseconds = 60000;
/// Shades of an empty view, with a margin; a model of several materials in light and shadow has many more.
constexpr int coloursOfEmptyView = 16;

shell::HostConfig Config()
{
    QString problem;
    auto config =
        shell::ReadHostConfig(shell::HostConfigFile(), {QCoreApplication::applicationFilePath()}, problem);
    if (!problem.isEmpty())
        std::fprintf(stderr, "%s\n", qUtf8Printable(problem));
    return config;
}

/// The middle half of an area: no panels of the child, only its view.
QRect Core(const QRect& area)
{
    return area.adjusted(area.width() / 4, area.height() / 4, -area.width() / 4, -area.height() / 4);
}

} // namespace

Check::Check(const QString& shots, pid_t server)
    : m_shots(shots)
    , m_server(server)
    , m_home(m_desktop)
    , m_host(Config())
{
}

bool Check::run()
{
    const bool good = take("login window", &Check::showLogin) && take("home window", &Check::logIn) &&
                      take("tree", &Check::openTree) && take("downloading", &Check::beginDownload) &&
                      take("downloaded", &Check::finishDownload) && take("opened", &Check::openProject) &&
                      take("turned", &Check::turnModel) && take("home again", &Check::goHome) &&
                      take("closed", &Check::closeProject);
    m_host.stop();
    return good;
}

bool Check::take(const char* name, Step step)
{
    QElapsedTimer timer;
    timer.start();
    const bool happened = (this->*step)();
    const auto milliseconds = timer.elapsed();
    const QString picture = QStringLiteral("%1-%2.png").arg(++m_number).arg(QString(name).replace(' ', '-'));
    keepPicture(picture);
    std::printf(R"({"step": "%s", "happened": %s, "milliseconds": %lld, "picture": "%s"})"
                "\n",
                name, happened ? "true" : "false", static_cast<long long>(milliseconds), qPrintable(picture));
    std::fflush(stdout);
    return happened;
}

void Check::keepPicture(const QString& name)
{
    const QString path = QDir(m_shots).filePath(name);
    if (!m_desktop.picture().save(path))
        std::fprintf(stderr, "the picture %s cannot be written\n", qUtf8Printable(path));
}

bool Check::showLogin()
{
    m_host.start();
    return WaitFor([] { return HomeScreen::shows(QStringLiteral("accountField")); }) &&
           // A window manager takes a moment to place it.
           WaitFor([this] { return road::ColoursIn(m_desktop.picture(), m_desktop.picture().rect()) > 2; });
}

bool Check::logIn()
{
    return m_home.logIn(road::account, road::password) &&
           WaitFor([] { return HomeScreen::window() != nullptr; }) &&
           WaitFor([] { return HomeScreen::shows(QStringLiteral("projectTree")); }) &&
           WaitFor([] { return HomeScreen::window()->isExposed(); });
}

bool Check::openTree()
{
    return m_home.openWholeTree() && HomeScreen::projectsInTree().contains(road::house);
}

bool Check::beginDownload()
{
    // A line as slow as this shows the card at work for as long as a picture takes.
    kill(m_server, SIGSTOP);
    const bool happened = m_home.doubleClickInTree(road::house) &&
                          WaitFor([] { return HomeScreen::operationOf(road::house) == downloading; });
    QTest::qWait(400);
    return happened;
}

bool Check::finishDownload()
{
    kill(m_server, SIGCONT);
    return WaitFor([] { return HomeScreen::operationOf(road::house) == notBusy; }, loadMilliseconds) &&
           WaitFor([] { return HomeScreen::stateOf(road::house) == upToDate; });
}

bool Check::isChildInPlace() const
{
    const auto child = m_home.childWindow();
    return child && child->area == HomeScreen::contentArea();
}

bool Check::openProject()
{
    return m_home.doubleClickOnCard(road::house) &&
           WaitFor([] { return HomeScreen::tabs().contains(road::house); }) &&
           WaitFor([this] { return isChildInPlace(); }, loadMilliseconds) &&
           WaitFor(
               [this] {
                   return road::ColoursIn(m_desktop.picture(), Core(HomeScreen::contentArea())) >
                          coloursOfEmptyView;
               },
               loadMilliseconds);
}

bool Check::turnModel()
{
    const QRect view = Core(HomeScreen::contentArea());
    const QImage before = m_desktop.picture();
    m_desktop.drag(view.center(), view.center() + QPoint(view.width() / 3, view.height() / 8));
    return WaitFor([&] { return road::DifferenceIn(before, m_desktop.picture(), view) > 0.02; });
}

bool Check::goHome()
{
    return m_home.click(QStringLiteral("mainPageBtn")) && WaitFor([this] { return !m_home.childWindow(); }) &&
           WaitFor([] { return HomeScreen::card(road::house) != nullptr; });
}

bool Check::closeProject()
{
    return m_home.click("tab_" + road::house) && WaitFor([this] { return isChildInPlace(); }) &&
           m_home.click(QStringLiteral("tabCloseBtn")) && WaitFor([] { return HomeScreen::tabs().isEmpty(); }) &&
           WaitFor([this] { return !m_home.childWindow(); });
}
