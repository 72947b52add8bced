// SPDX-License-Identifier: MIT
#include "ZRSmartDB/zrdbnetaccess.h"
#include "ratio.h"
#include "realserver.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>

#include <unistd.h>

// The download of a 1 GiB project from the project server, against curl fetching the same bytes from nginx
// into a file. The download runs in a process of its own, this program once more, so that its memory can be
// told.

namespace
{

namespace fs = std::filesystem;

const std::string guid = "7e3c1d90-0d52-4a67-8f10-2b9a5e4d1001";
constexpr std::uint64_t size = 1ULL << 30U;
constexpr int runs = 5;
constexpr double memoryLimit = 128.0 * 1024 * 1024;

ZRSmartFormat::SZRFTGuid Key()
{
    return ZRSmartFormat::GuidFromText(std::wstring(guid.begin(), guid.end()));
}

/// The most memory that a process has had resident, in bytes.
double PeakMemoryOf(qint64 process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) * 1024;
    }
    return 0;
}

/// The child's part: one download into a folder. Says its seconds and its memory.
int Download(const QStringList& arguments)
{
    ZRSmartDB::Database database;
    if (!database.setServer(arguments.at(1).toStdString()))
        return 1;
    database.SetUp(0);
    database.GetNetAccess()->LoginByToken(arguments.at(2).toStdWString());
    bool isDone = false;
    const double seconds =
        bench::SecondsOf([&] { isDone = database.DownLoadProj(Key(), arguments.at(3).toStdWString()); });
    std::printf("%f %f\n", seconds, PeakMemoryOf(QCoreApplication::applicationPid()));
    return isDone ? 0 : 1;
}

void MakeProject(const fs::path& folder)
{
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "large";
    head.type = "MODEL";
    ZRSmartDB::ProjectFile::create(folder, head);
    std::ofstream file(folder / "model.glb", std::ios::binary);
    std::mt19937_64 random(1);
    std::vector<std::uint64_t> block(1U << 17U);
    for (std::uint64_t written = 0; written < size; written += block.size() * sizeof block[0]) {
        for (auto& word : block)
            word = random();
        file.write(reinterpret_cast<const char*>(block.data()),
                   static_cast<std::streamsize>(block.size() * 8));
    }
}

int FreePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

/// nginx over a folder.
class Nginx
{
public:
    explicit Nginx(const fs::path& folder)
        : m_port(FreePort())
    {
        const QString file = m_folder.filePath("nginx.conf");
        QFile config(file);
        if (!config.open(QIODevice::WriteOnly))
            qFatal("no configuration for nginx");
        config.write(QStringLiteral(
                         "daemon off; pid %1/pid; error_log %1/log; worker_processes 2;\n"
                         "%4 events {}\n"
                         "http { access_log off; sendfile on; client_body_temp_path %1; proxy_temp_path %1;\n"
                         "fastcgi_temp_path %1; uwsgi_temp_path %1; scgi_temp_path %1;\n"
                         "server { listen 127.0.0.1:%2; root %3; } }\n")
                         .arg(m_folder.path())
                         .arg(m_port)
                         .arg(QString::fromStdString(folder.string()))
                         .arg(::geteuid() == 0 ? "user root;" : "")
                         .toUtf8());
        config.close();
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start("nginx", {"-c", file});
        m_process.waitForStarted();
        QThread::msleep(500);
    }
    ~Nginx()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }

    [[nodiscard]] QString url(const QString& name) const
    {
        return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_port).arg(name);
    }

private:
    int m_port;
    QTemporaryDir m_folder;
    QProcess m_process;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication app(argumentCount, arguments);
    if (argumentCount > 1)
        return Download(QCoreApplication::arguments());

    const QTemporaryDir source;
    const fs::path folder = ZRSmartDB::ProjectFolder(source.path().toStdString(), guid);
    MakeProject(folder);
    RealServer server(TORVO_SERVER);
    server.publish(guid, "MODEL", folder);
    const Nginx nginx(folder);

    std::vector<double> ours;
    std::vector<double> theirs;
    double clientMemory = 0;
    for (int run = 0; run < runs; ++run) {
        const QTemporaryDir target;
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
                    {QString::fromStdString(server.address()), QString::fromStdString(server.token()),
                     target.path()});
        child.waitForFinished(-1);
        if (child.exitCode() != 0)
            qFatal("the download has failed");
        const auto said = child.readAllStandardOutput().trimmed().split(' ');
        ours.push_back(said.at(0).toDouble());
        clientMemory = std::max(clientMemory, said.at(1).toDouble());

        const QString file = target.filePath("fetched");
        theirs.push_back(bench::SecondsOf([&] {
            if (QProcess::execute("curl", {"-sf", "-o", file, nginx.url("model.glb")}) != 0)
                qFatal("curl has failed");
        }));
        if (fs::file_size(file.toStdString()) != size)
            qFatal("curl has fetched something else");
    }
    const double serverMemory = PeakMemoryOf(server.process());
    std::fprintf(stderr, "ours %.2f s, curl %.2f s (medians of %d); client %.0f MiB, server %.0f MiB\n",
                 bench::MedianOf(ours), bench::MedianOf(theirs), runs, clientMemory / 1048576,
                 serverMemory / 1048576);
    bench::Report report;
    report.ratio("download of 1 GiB", bench::MedianOf(ours) / bench::MedianOf(theirs), 1.1,
                 "curl fetching the same bytes from nginx");
    report.ratio("resident memory of the client", clientMemory / memoryLimit, 1.0, "128 MiB");
    report.ratio("resident memory of the server", serverMemory / memoryLimit, 1.0, "128 MiB");
    return report.exitCode();
}
