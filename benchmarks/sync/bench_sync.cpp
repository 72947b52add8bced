// SPDX-License-Identifier: MIT
#include "ZRSmartDB/zrdbnetaccess.h"
#include "peers/countingproxy.h"
#include "peers/peers.h"
#include "ratio.h"
#include "realserver.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"
#include "workload.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <unistd.h>

// A project of 913 MB in 2,000 files goes up, is changed a little, goes up again and comes down. The first
// upload is held against curl sending the same bytes to nginx, the second against rsync, the download against
// curl. Each transfer of ours runs in a process of its own, this program once more, so that its memory can be
// told.

namespace
{

namespace fs = std::filesystem;

const std::string guid = "7e3c1d90-0d52-4a67-8f10-2b9a5e4d1001";
constexpr double memoryLimit = 128.0 * 1024 * 1024;

ZRSmartFormat::SZRFTGuid Key()
{
    return ZRSmartFormat::GuidFromText(std::wstring(guid.begin(), guid.end()));
}

/// The child's part: what, address, token, data folder. Says its seconds and its memory.
int Transfer(const QStringList& arguments)
{
    ZRSmartDB::Database database;
    if (!database.setServer(arguments.at(2).toStdString()))
        return 1;
    database.SetUp(0);
    database.GetNetAccess()->LoginByToken(arguments.at(3).toStdWString());
    const auto folder = arguments.at(4).toStdWString();
    bool isDone = false;
    const double seconds = bench::SecondsOf([&] {
        isDone = arguments.at(1) == "upload" ? database.UploadProj(Key(), folder, false, false)
                                             : database.DownLoadProj(Key(), folder);
    });
    if (!isDone) {
        std::wstring reason;
        database.GetLastError(reason);
        qWarning("%s", qPrintable(QString::fromStdWString(reason)));
    }
    std::printf("%f %f\n", seconds, bench::PeakMemoryOf(QCoreApplication::applicationPid()));
    return isDone ? 0 : 1;
}

struct Cost {
    double seconds = 0;
    double memory = 0;
};

Cost RunTransfer(const QString& what, const QString& address, const RealServer& server, const QString& folder)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {what, address, QString::fromStdString(server.token()), folder});
    child.waitForFinished(-1);
    if (child.exitCode() != 0)
        qFatal("a transfer has failed");
    const auto said = child.readAllStandardOutput().trimmed().split(' ');
    return {said.at(0).toDouble(), said.at(1).toDouble()};
}

double Run(const QString& program, const QStringList& arguments)
{
    return bench::SecondsOf([&] {
        if (QProcess::execute(program, arguments) != 0)
            qFatal("%s has failed", qPrintable(program));
    });
}

double RunRsync(const fs::path& folder, int port)
{
    return Run("rsync", {"-a", "--delete", QString::fromStdString(folder.string()) + "/",
                         QStringLiteral("rsync://127.0.0.1:%1/w/").arg(port)});
}

/// All bytes of a folder in one file, for curl.
void MakeOneFile(const fs::path& folder, const fs::path& file)
{
    std::ofstream output(file, std::ios::binary);
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            output << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication app(argumentCount, arguments);
    if (argumentCount > 1)
        return Transfer(QCoreApplication::arguments());

    const QTemporaryDir source;
    const QTemporaryDir web;
    const QTemporaryDir mirror;
    const fs::path folder = ZRSmartDB::ProjectFolder(source.path().toStdString(), guid);
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "large";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    workload::Make(folder);
    const auto oneFile = web.filePath("one");
    MakeOneFile(folder, oneFile.toStdString());
    ::sync();

    const RealServer server(TORVO_SERVER);
    const auto address = QString::fromStdString(server.address());
    const bench::Nginx nginx(web.path().toStdString());
    const bench::RsyncDaemon rsync(mirror.path().toStdString());
    bench::CountingProxy toServer(QUrl(address).port());
    bench::CountingProxy toRsync(rsync.port());
    const auto viaProxy = QStringLiteral("http://127.0.0.1:%1").arg(toServer.port());

    const double curlUp = Run("curl", {"-sf", "-T", oneFile, nginx.url("sent")});
    const auto firstUp = RunTransfer("upload", address, server, source.path());
    RunRsync(folder, rsync.port());

    // Timestamps have to be told apart from fresh ones, or everything is read again.
    ::sleep(3);
    workload::Change(folder);
    ::sync();
    static_cast<void>(toServer.take());
    const auto secondUp = RunTransfer("upload", viaProxy, server, source.path());
    const auto secondBytes = static_cast<double>(toServer.take());
    const double rsyncSeconds = RunRsync(folder, toRsync.port());
    const auto rsyncBytes = static_cast<double>(toRsync.take());

    ::sleep(3);
    RunTransfer("upload", viaProxy, server, source.path());
    const auto nothingBytes = static_cast<double>(toServer.take());
    RunRsync(folder, toRsync.port());
    const auto rsyncNothing = static_cast<double>(toRsync.take());

    const QTemporaryDir target;
    const auto down = RunTransfer("download", address, server, target.path());
    const double curlDown = Run("curl", {"-sf", "-o", web.filePath("fetched"), nginx.url("one")});

    const double clientMemory = std::max({firstUp.memory, secondUp.memory, down.memory});
    const double serverMemory = bench::PeakMemoryOf(server.process());
    std::fprintf(
        stderr,
        "first upload %.2f s, curl -T %.2f s; second %.2f s and %.0f bytes, rsync %.2f s and %.0f bytes;\n"
        "nothing changed %.0f bytes, rsync %.0f bytes; download %.2f s, curl %.2f s;\n"
        "client %.0f MiB, server %.0f MiB\n",
        firstUp.seconds, curlUp, secondUp.seconds, secondBytes, rsyncSeconds, rsyncBytes, nothingBytes,
        rsyncNothing, down.seconds, curlDown, clientMemory / 1048576, serverMemory / 1048576);
    bench::Report report;
    report.ratio("bytes after a small change", secondBytes / rsyncBytes, 0.2,
                 "rsync -a over the same folders");
    report.ratio("time after a small change", secondUp.seconds / rsyncSeconds, 1.0,
                 "rsync -a over the same folders");
    report.ratio("bytes when nothing has changed", nothingBytes / rsyncNothing, 0.05,
                 "rsync -a over the same folders");
    report.ratio("first upload", firstUp.seconds / curlUp, 1.5, "curl -T of the same bytes to nginx");
    report.ratio("download", down.seconds / curlDown, 1.1, "curl fetching the same bytes from nginx");
    report.ratio("resident memory of the client", clientMemory / memoryLimit, 1.0, "128 MiB");
    report.ratio("resident memory of the server", serverMemory / memoryLimit, 1.0, "128 MiB");
    return report.exitCode();
}
