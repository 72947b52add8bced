// SPDX-License-Identifier: MIT
#include "TorvoSDK/torvosession.h"
#include "core/torvohomeplugin.h"
#include "ratio.h"
#include "realserver.h"
#include "shell/hostplugin.h"
#include "smartdb/data/projectfile.h"

#include <filesystem>
#include <functional>
#include <vector>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

// How soon a person sees what they have clicked on: the card of a project, and the regions of the country.
// And what the web view costs those who never ask for it.

namespace
{

namespace fs = std::filesystem;

constexpr double frame = 1.0 / 60;
constexpr double clickDelay = 0.3; ///< by which a single click is told from a double one
constexpr double promptly = 0.05;
constexpr int runs = 7;

const std::string guid = "0000c0de-0000-4000-8000-000000000000";

fs::path ProgramFolder()
{
    return QCoreApplication::applicationDirPath().toStdString();
}

QString Base64(const std::string& text)
{
    return QString::fromLatin1(QByteArray::fromStdString(text).toBase64());
}

/// One scene on this machine, and the list that names it.
void MakeProject()
{
    const fs::path data = ProgramFolder() / "data";
    fs::remove_all(data);
    fs::create_directories(data);
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "工程";
    head.type = "CIM";
    ZRSmartDB::ProjectFile::create(ZRSmartDB::ProjectFolder(data, guid), head);
    const QJsonObject entry{{Base64("guid"), Base64(guid)},
                            {Base64("name"), Base64("工程")},
                            {Base64("customMap"), QJsonObject()}};
    QFile file(QString::fromStdString((ProgramFolder() / "ProjectConfig.json").string()));
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(QJsonArray{entry}).toJson()) <= 0)
        qFatal("the list cannot be written");
}

QQuickView& HomeWindow()
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (auto* window : windows) {
        if (auto* view = qobject_cast<QQuickView*>(window))
            return *view;
    }
    qFatal("there is no window");
}

/// The first thing that can be seen whose name begins with `name`.
QQuickItem* ItemBelow(QQuickItem* root, const QString& name)
{
    if (root == nullptr || !root->isVisible())
        return nullptr;
    if (root->objectName().startsWith(name))
        return root;
    const auto children = root->childItems();
    for (auto* child : children) {
        if (auto* found = ItemBelow(child, name))
            return found;
    }
    return nullptr;
}

QQuickItem* Item(const QString& name)
{
    return ItemBelow(HomeWindow().contentItem(), name);
}

QQuickItem& AwaitItem(const QString& name)
{
    if (!QTest::qWaitFor([&] { return Item(name) != nullptr; }, 10000))
        qFatal("%s does not appear", qPrintable(name));
    return *Item(name);
}

void Click(const QString& name)
{
    auto& item = AwaitItem(name);
    const QPoint place = item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
    QTest::mouseClick(&HomeWindow(), Qt::LeftButton, {}, place);
}

/// Seconds from a click until a frame has been painted for which `isThere` holds.
double SecondsToPainted(const QString& clicked, const std::function<bool()>& isThere)
{
    QEventLoop loop;
    bool wasThere = false;
    auto& window = HomeWindow();
    // What a frame shows is settled before it is rendered.
    const auto before = QObject::connect(
        &window, &QQuickWindow::beforeRendering, &window, [&] { wasThere = isThere(); },
        Qt::DirectConnection);
    const auto after = QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, [&] {
        if (wasThere)
            loop.quit();
    });
    const double seconds = bench::SecondsOf([&] {
        Click(clicked);
        loop.exec();
    });
    QObject::disconnect(before);
    QObject::disconnect(after);
    return seconds;
}

void AwaitGone(const QString& name)
{
    if (!QTest::qWaitFor([&] { return Item(name) == nullptr; }, 10000))
        qFatal("%s does not go", qPrintable(name));
}

double FramesToCard()
{
    const QString row = QStringLiteral("treeRow_") + QString::fromStdString(guid);
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) {
        seconds.push_back(SecondsToPainted(row, [] { return Item(QStringLiteral("infoRow_")) != nullptr; }));
        QTest::qWait(600); // it slides in
        Click(QStringLiteral("infoCancelBtn"));
        AwaitGone(QStringLiteral("infoCancelBtn"));
    }
    return (bench::MedianOf(seconds) - clickDelay) / frame;
}

double SecondsToProvinces()
{
    Click(QStringLiteral("createBtn"));
    AwaitItem(QStringLiteral("newProjectBtn"));
    QTest::qWait(600);
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) {
        seconds.push_back(SecondsToPainted(QStringLiteral("provinceBox"),
                                           [] { return Item(QStringLiteral("region_")) != nullptr; }));
        QTest::keyClick(&HomeWindow(), Qt::Key_Escape);
        AwaitGone(QStringLiteral("region_"));
    }
    return bench::MedianOf(seconds);
}

/// One request for the list of the provinces by the program curl, as anybody would make it.
double SecondsOfBareCurl(const RealServer& server)
{
    const QStringList arguments{QStringLiteral("--silent"), QStringLiteral("--fail"),
                                QStringLiteral("--header"),
                                QString::fromStdString("Authorization: Bearer " + server.token()),
                                QString::fromStdString(server.address() + "/api/v1/regions?parent=100000")};
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) {
        QProcess curl;
        seconds.push_back(bench::SecondsOf([&] {
            curl.start(QStringLiteral("curl"), arguments);
            curl.waitForFinished();
        }));
        if (curl.exitCode() != 0 || !curl.readAllStandardOutput().startsWith("[{"))
            qFatal("the server does not answer");
    }
    return bench::MedianOf(seconds);
}

/// The same list as the screens get it, asked for anew.
double SecondsOfOwnRequest()
{
    auto* regions =
        HomeWindow().rootContext()->contextProperty(QStringLiteral("regionModel")).value<QObject*>();
    QJsonArray list;
    const double seconds = bench::SecondsOf([&] {
        QMetaObject::invokeMethod(regions, "getChildRegionList", Q_RETURN_ARG(QJsonArray, list),
                                  Q_ARG(QString, QStringLiteral("100000")));
    });
    if (list.size() < 30)
        qFatal("the provinces are not all there");
    return seconds;
}

/// Processes below this one, and libraries in it, that belong to the browser engine.
int PartsOfTheEngine()
{
    int parts = 0;
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        qFatal("this process cannot be looked into");
    parts += maps.readAll().count("WebEngine");
    const auto processes = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const auto& process : processes) {
        QFile name(QStringLiteral("/proc/%1/comm").arg(process));
        QFile status(QStringLiteral("/proc/%1/status").arg(process));
        if (name.open(QIODevice::ReadOnly) && name.readAll().startsWith("QtWebEngine") &&
            status.open(QIODevice::ReadOnly) &&
            status.readAll().contains("PPid:\t" + QByteArray::number(QCoreApplication::applicationPid())))
            ++parts;
    }
    return parts;
}

/// The program, from its start to its end.
class Home
{
public:
    explicit Home(const RealServer& server)
        : m_projects(QString::fromStdString(server.address()))
        , m_projectHost(m_projects)
        , m_web(shell::PageFolder(QString()), shell::WebService::libraryOfTheProgram(), [](const QString&) {})
        , m_host(m_projectHost, m_messages, m_web)
    {
        m_projects.setToken(QString::fromStdString(server.token()));
        TorvoSDK::CTorvoSession session;
        session.serverAddr = QString::fromStdString(server.address()).toStdWString();
        session.token = QString::fromStdString(server.token()).toStdWString();
        session.appVer = L"Normal";
        m_plugin.Init(&m_host, session);
        AwaitItem(QStringLiteral("createBtn"));
    }
    ~Home() { m_plugin.UnInit(); }

private:
    shell::ProjectServer m_projects;
    shell::ProjectHost m_projectHost;
    shell::MessageService m_messages;
    shell::WebService m_web;
    shell::HostPlugin m_host;
    TorvoEditor::TorvoHomePlugin m_plugin;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }
    QApplication app(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const RealServer server(TORVO_SERVER);
    MakeProject();
    bench::Report report;
    std::vector<double> provinces;
    while (provinces.size() < runs - 1) {
        const Home home(server);
        provinces.push_back(SecondsOfOwnRequest());
    }
    const Home home(server);
    provinces.push_back(SecondsOfOwnRequest());
    report.ratio("browser engine, parts in memory and processes", PartsOfTheEngine(), 0.0, "none");
    report.ratio("card after the click's delay", FramesToCard(), 2.0, "a frame of 60 in a second");
    report.ratio("list of the provinces after the click", SecondsToProvinces() / promptly, 1.0, "50 ms");
    report.ratio("asking for the provinces", bench::MedianOf(provinces) / SecondsOfBareCurl(server), 1.5,
                 "one bare curl of the same reply");
    fs::remove_all(ProgramFolder() / "data");
    fs::remove(ProgramFolder() / "ProjectConfig.json");
    return report.exitCode();
}
