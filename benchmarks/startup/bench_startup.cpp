// SPDX-License-Identifier: MIT
#include "TorvoSDK/torvosession.h"
#include "core/torvohomeplugin.h"
#include "ratio.h"
#include "realserver.h"
#include "shell/hostplugin.h"
#include "smartdb/data/projectfile.h"

#include <filesystem>
#include <vector>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickView>
#include <QTemporaryFile>
#include <QTimer>

#include <curl/curl.h>
#include <sqlite3.h>
#include <unistd.h>

// The home window with many local projects, on the real server. What a project costs is the difference
// between two starts, since the screens themselves cost the same at each; it is held against what nobody can
// do without: opening the project's database once, and asking the server once over a connection that stays
// open.

namespace
{

namespace fs = std::filesystem;

constexpr int fewest = 10;
constexpr int samples = 1000; ///< of the bare open and the bare request

fs::path ProgramFolder()
{
    return QCoreApplication::applicationDirPath().toStdString();
}

std::string GuidOf(int number)
{
    char text[64];
    std::snprintf(text, sizeof text, "%08x-0000-4000-8000-000000000000", static_cast<unsigned>(number));
    return text;
}

QString Base64(const std::string& text)
{
    return QString::fromLatin1(QByteArray::fromStdString(text).toBase64());
}

/// Projects 0 to `count`, as copies of one database with another guid, and the list that names them.
void MakeProjects(int count)
{
    const fs::path data = ProgramFolder() / "data";
    fs::create_directories(data);
    const auto first = ZRSmartDB::ProjectFolder(data, GuidOf(0));
    if (!fs::exists(first)) {
        ZRSmartDB::ProjectHead head;
        head.guid = GuidOf(0);
        head.name = "工程";
        head.type = "BIM";
        ZRSmartDB::ProjectFile::create(first, head);
    }
    QJsonArray list;
    for (int i = 0; i < count; ++i) {
        const std::string guid = GuidOf(i);
        const auto folder = ZRSmartDB::ProjectFolder(data, guid);
        if (!fs::exists(folder)) {
            fs::create_directories(folder);
            fs::copy_file(ZRSmartDB::DatabaseIn(first), ZRSmartDB::DatabaseIn(folder));
            sqlite3* database = nullptr;
            sqlite3_open(ZRSmartDB::DatabaseIn(folder).c_str(), &database);
            sqlite3_exec(database,
                         ("PRAGMA synchronous = OFF; UPDATE project SET guid = '" + guid + "'").c_str(),
                         nullptr, nullptr, nullptr);
            sqlite3_close(database);
        }
        list.append(QJsonObject{{Base64("guid"), Base64(guid)},
                                {Base64("name"), Base64("工程")},
                                {Base64("customMap"), QJsonObject()}});
    }
    QFile file(QString::fromStdString((ProgramFolder() / "ProjectConfig.json").string()));
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(list).toJson()) <= 0)
        qFatal("the list cannot be written");
}

void AwaitFrame(QQuickView& view)
{
    QEventLoop loop;
    QObject::connect(&view, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    loop.exec();
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

double SecondsToShow(const RealServer& server)
{
    shell::ProjectServer projects(QString::fromStdString(server.address()));
    projects.setToken(QString::fromStdString(server.token()));
    shell::ProjectHost projectHost(projects);
    shell::MessageService messages;
    shell::WebService web(shell::PageFolder::ofTheProgram(), shell::WebService::libraryOfTheProgram(), {});
    shell::HostPlugin host(projectHost, messages, web);
    TorvoSDK::CTorvoSession session;
    session.serverAddr = QString::fromStdString(server.address()).toStdWString();
    session.token = QString::fromStdString(server.token()).toStdWString();
    session.appVer = L"Normal";
    TorvoEditor::TorvoHomePlugin plugin;
    const double seconds = bench::SecondsOf([&] {
        plugin.Init(&host, session);
        AwaitFrame(HomeWindow());
    });
    plugin.UnInit();
    return seconds;
}

/// The middle of several starts with that many local projects.
double SecondsWith(int projects, const RealServer& server)
{
    constexpr int runs = 5;
    MakeProjects(projects);
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run)
        seconds.push_back(SecondsToShow(server));
    return bench::MedianOf(seconds);
}

double SecondsOfEmptyWindow()
{
    QTemporaryFile file(QDir::tempPath() + "/XXXXXX.qml");
    if (!file.open() || file.write("import QtQuick 2.15\nRectangle { width: 800; height: 600 }\n") <= 0 ||
        !file.flush())
        qFatal("no file for an empty window");
    return bench::SecondsOf([&] {
        QQuickView view(QUrl::fromLocalFile(file.fileName()));
        view.show();
        AwaitFrame(view);
    });
}

double SecondsOfBareOpens()
{
    return bench::SecondsOf([] {
        for (int i = 0; i < samples; ++i) {
            const auto file =
                ZRSmartDB::DatabaseIn(ZRSmartDB::ProjectFolder(ProgramFolder() / "data", GuidOf(i)));
            sqlite3* database = nullptr;
            sqlite3_open(file.c_str(), &database);
            sqlite3_stmt* statement = nullptr;
            sqlite3_prepare_v2(database, "SELECT * FROM project", -1, &statement, nullptr);
            if (sqlite3_step(statement) != SQLITE_ROW)
                qFatal("a project has no row");
            sqlite3_finalize(statement);
            sqlite3_close(database);
        }
    });
}

double SecondsOfBareRequests(const RealServer& server)
{
    CURL* handle = curl_easy_init();
    curl_easy_setopt(handle, CURLOPT_URL, (server.address() + "/api/v1/health").c_str());
    curl_easy_setopt(
        handle, CURLOPT_WRITEFUNCTION,
        +[](char* /*bytes*/, std::size_t size, std::size_t count, void*) { return size * count; });
    const double seconds = bench::SecondsOf([&] {
        for (int i = 0; i < samples; ++i) {
            if (curl_easy_perform(handle) != CURLE_OK)
                qFatal("the server does not answer");
        }
    });
    curl_easy_cleanup(handle);
    return seconds;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }
    QApplication app(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    fs::remove_all(ProgramFolder() / "data");
    const RealServer server(TORVO_SERVER);
    MakeProjects(10000);
    // The system would write these files out in the middle of a measurement.
    ::sync();

    static_cast<void>(SecondsOfEmptyWindow()); // what is loaded once
    static_cast<void>(SecondsWith(fewest, server));
    const double empty = SecondsOfEmptyWindow();
    const double few = SecondsWith(fewest, server);
    const double thousand = SecondsWith(1000, server);
    const double tenThousand = SecondsWith(10000, server);
    const double bare = (SecondsOfBareOpens() + SecondsOfBareRequests(server)) / samples;
    const double perThousand = (thousand - few) / (1000 - fewest);
    const double perTenThousand = (tenThousand - few) / (10000 - fewest);
    std::fprintf(stderr,
                 "empty window %.0f ms; home window with 10 projects %.0f ms, 1,000 %.0f ms, 10,000 %.0f ms; "
                 "bare open "
                 "and request %.0f us\n",
                 empty * 1e3, few * 1e3, thousand * 1e3, tenThousand * 1e3, bare * 1e6);
    bench::Report report;
    const char* against = "a bare sqlite3_open with a select and a bare keep-alive request";
    report.ratio("start with 1,000 local projects, per project", perThousand / bare, 2.0, against);
    report.ratio("start with 10,000 local projects, per project", perTenThousand / bare, 2.0, against);
    report.ratio("10,000 against 1,000 projects, per project", perTenThousand / perThousand, 1.2,
                 "linear growth");
    fs::remove_all(ProgramFolder() / "data");
    fs::remove(ProgramFolder() / "ProjectConfig.json");
    return report.exitCode();
}
