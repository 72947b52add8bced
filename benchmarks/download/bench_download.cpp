// SPDX-License-Identifier: MIT
#include "ZRSmartDB/zrdbnetaccess.h"
#include "peers/peers.h"
#include "ratio.h"
#include "realserver.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

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
    std::printf("%f %f\n", seconds, bench::PeakMemoryOf(QCoreApplication::applicationPid()));
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
    const bench::Nginx nginx(folder);

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
    const double serverMemory = bench::PeakMemoryOf(server.process());
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
