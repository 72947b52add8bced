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
#include <vector>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <unistd.h>

// A project of 913 MB in 2,000 files goes up, is changed a little, goes up again and comes down. The first
// upload is held against curl sending the same bytes to nginx, the second against rsync, the download against
// curl. Each transfer of ours runs in a process of its own, this program once more, so that its memory and
// its processor time can be told.
//
// All of it three times, on fresh folders and servers, ours and theirs by turns the first: the figures are
// the medians. Before each transfer the disk is waited for, so that nobody pays for what another has written.

namespace
{

namespace fs = std::filesystem;

const std::string guid = "7e3c1d90-0d52-4a67-8f10-2b9a5e4d1001";
constexpr int rounds = 3;
constexpr double memoryLimit = 128.0 * 1024 * 1024;

ZRSmartFormat::SZRFTGuid Key()
{
    return ZRSmartFormat::GuidFromText(std::wstring(guid.begin(), guid.end()));
}

/// The child's part: what, address, token, data folder. Says its seconds, its memory and its processor time.
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
    const auto process = QCoreApplication::applicationPid();
    std::printf("%f %f %f\n", seconds, bench::PeakMemoryOf(process), bench::ProcessorSecondsOf(process));
    return isDone ? 0 : 1;
}

struct Cost {
    double seconds = 0;
    double memory = 0;
    double clientProcessor = 0; ///< seconds, of user and system
    double serverProcessor = 0;
};

Cost RunTransfer(const QString& what, const QString& address, const RealServer& server, const QString& folder)
{
    ::sync();
    const double before = bench::ProcessorSecondsOf(server.process());
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {what, address, QString::fromStdString(server.token()), folder});
    child.waitForFinished(-1);
    if (child.exitCode() != 0)
        qFatal("a transfer has failed");
    const auto said = child.readAllStandardOutput().trimmed().split(' ');
    return {said.at(0).toDouble(), said.at(1).toDouble(), said.at(2).toDouble(),
            bench::ProcessorSecondsOf(server.process()) - before};
}

double Run(const QString& program, const QStringList& arguments)
{
    ::sync();
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

/// Ours and theirs, the one or the other first.
template<class Ours, class Theirs>
void ByTurns(bool isOursFirst, Ours&& ours, Theirs&& theirs)
{
    if (isOursFirst)
        ours();
    theirs();
    if (!isOursFirst)
        ours();
}

/// The figures of one round.
struct Round {
    Cost firstUp;
    Cost secondUp;
    Cost down;
    double curlUp = 0;
    double rsync = 0;
    double curlDown = 0;
    double secondBytes = 0;
    double rsyncBytes = 0;
    double nothingBytes = 0;
    double rsyncNothingBytes = 0;
    double serverMemory = 0;
};

void MakeProject(const fs::path& folder)
{
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "large";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    workload::Make(folder);
}

Round RunRound(bool isOursFirst)
{
    const QTemporaryDir source;
    const QTemporaryDir web;
    const QTemporaryDir mirror;
    const fs::path folder = ZRSmartDB::ProjectFolder(source.path().toStdString(), guid);
    MakeProject(folder);
    const auto oneFile = web.filePath("one");
    MakeOneFile(folder, oneFile.toStdString());

    const RealServer server(TORVO_SERVER);
    const auto address = QString::fromStdString(server.address());
    const bench::Nginx nginx(web.path().toStdString());
    const bench::RsyncDaemon rsync(mirror.path().toStdString());
    bench::CountingProxy toServer(QUrl(address).port());
    bench::CountingProxy toRsync(rsync.port());
    const auto viaProxy = QStringLiteral("http://127.0.0.1:%1").arg(toServer.port());

    Round round;
    ByTurns(
        isOursFirst, [&] { round.firstUp = RunTransfer("upload", address, server, source.path()); },
        [&] {
            round.curlUp = Run("curl", {"-sf", "-T", oneFile, nginx.url("sent")});
        });
    RunRsync(folder, rsync.port());

    // Timestamps have to be told apart from fresh ones, or everything is read again.
    ::sleep(3);
    workload::Change(folder);
    static_cast<void>(toServer.take());
    ByTurns(
        isOursFirst, [&] { round.secondUp = RunTransfer("upload", viaProxy, server, source.path()); },
        [&] { round.rsync = RunRsync(folder, toRsync.port()); });
    round.secondBytes = static_cast<double>(toServer.take());
    round.rsyncBytes = static_cast<double>(toRsync.take());

    ::sleep(3);
    RunTransfer("upload", viaProxy, server, source.path());
    round.nothingBytes = static_cast<double>(toServer.take());
    RunRsync(folder, toRsync.port());
    round.rsyncNothingBytes = static_cast<double>(toRsync.take());

    const QTemporaryDir target;
    ByTurns(
        isOursFirst, [&] { round.down = RunTransfer("download", address, server, target.path()); },
        [&] {
            round.curlDown = Run("curl", {"-sf", "-o", web.filePath("fetched"), nginx.url("one")});
        });
    round.serverMemory = bench::PeakMemoryOf(server.process());
    return round;
}

/// The figure of each round.
template<class Figure>
std::vector<double> Each(const std::vector<Round>& rounds, Figure figure)
{
    std::vector<double> values;
    for (const auto& round : rounds)
        values.push_back(figure(round));
    return values;
}

void Tell(const char* what, std::vector<double> values)
{
    std::fprintf(stderr, "%s: %.2f s (%.2f to %.2f)\n", what, bench::MedianOf(values),
                 *std::min_element(values.begin(), values.end()),
                 *std::max_element(values.begin(), values.end()));
}

void TellProcessor(const char* what, const std::vector<Round>& rounds, Cost Round::*transfer)
{
    std::fprintf(
        stderr, "%s: %.2f s of processor by the client, %.2f s by the server\n", what,
        bench::MedianOf(Each(rounds, [&](const Round& r) { return (r.*transfer).clientProcessor; })),
        bench::MedianOf(Each(rounds, [&](const Round& r) { return (r.*transfer).serverProcessor; })));
}

/// Our median over theirs.
template<class Ours, class Theirs>
double RatioOf(const std::vector<Round>& rounds, Ours ours, Theirs theirs)
{
    return bench::MedianOf(Each(rounds, ours)) / bench::MedianOf(Each(rounds, theirs));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication app(argumentCount, arguments);
    QLoggingCategory::setFilterRules("torvo.smartdb.debug=false");
    if (argumentCount > 1)
        return Transfer(QCoreApplication::arguments());

    std::vector<Round> all;
    for (int i = 0; i < rounds; ++i)
        all.push_back(RunRound(i % 2 == 1));

    const auto firstUp = [](const Round& round) { return round.firstUp.seconds; };
    const auto curlUp = [](const Round& round) { return round.curlUp; };
    const auto secondUp = [](const Round& round) { return round.secondUp.seconds; };
    const auto rsync = [](const Round& round) { return round.rsync; };
    const auto down = [](const Round& round) { return round.down.seconds; };
    const auto curlDown = [](const Round& round) { return round.curlDown; };
    Tell("first upload", Each(all, firstUp));
    Tell("curl -T", Each(all, curlUp));
    Tell("after a small change", Each(all, secondUp));
    Tell("rsync -a", Each(all, rsync));
    Tell("download", Each(all, down));
    Tell("curl", Each(all, curlDown));
    TellProcessor("first upload", all, &Round::firstUp);
    TellProcessor("after a small change", all, &Round::secondUp);
    TellProcessor("download", all, &Round::down);

    bench::Report report;
    report.ratio(
        "bytes after a small change",
        RatioOf(
            all, [](const Round& r) { return r.secondBytes; }, [](const Round& r) { return r.rsyncBytes; }),
        0.2, "rsync -a over the same folders");
    report.ratio("time after a small change", RatioOf(all, secondUp, rsync), 1.0,
                 "rsync -a over the same folders");
    report.ratio("bytes when nothing has changed",
                 RatioOf(
                     all, [](const Round& r) { return r.nothingBytes; },
                     [](const Round& r) { return r.rsyncNothingBytes; }),
                 0.05, "rsync -a over the same folders");
    report.ratio("first upload", RatioOf(all, firstUp, curlUp), 1.5, "curl -T of the same bytes to nginx");
    report.ratio("download", RatioOf(all, down, curlDown), 1.1, "curl fetching the same bytes from nginx");
    double clientMemory = 0;
    double serverMemory = 0;
    for (const auto& round : all) {
        clientMemory =
            std::max({clientMemory, round.firstUp.memory, round.secondUp.memory, round.down.memory});
        serverMemory = std::max(serverMemory, round.serverMemory);
    }
    report.ratio("resident memory of the client", clientMemory / memoryLimit, 1.0, "128 MiB");
    report.ratio("resident memory of the server", serverMemory / memoryLimit, 1.0, "128 MiB");
    return report.exitCode();
}
