// SPDX-License-Identifier: MIT
#include "EditorCommon/zip.h"
#include "chosenarchive.h"
#include "convert/kyvrepackageworker.h"
#include "convert/kyvuploadtask.h"
#include "peers/program.h"
#include "ratio.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

// An archive of 1 GiB, a third of it ballast, is repackaged, as is done before it goes to the server: held
// against 7-Zip unpacking it and packing the files that are kept with the same method. Ours runs in a process
// of its own, this program once more. Three times, by turns the one and the other first; the figures are the
// medians. Everything lies below the folder of this program, where the worker works.

namespace
{

namespace fs = std::filesystem;
using bench::ProgramCost;
using bench::RunProgram;

constexpr int rounds = 3;
const QString alias = QStringLiteral("bench");
constexpr double memoryLimit = 128.0 * 1024 * 1024;

/// The child's part.
int Repackage(const QString& archive)
{
    TorvoEditor::CKyvRepackageWorker worker;
    bool isDone = false;
    QObject::connect(&worker, &TorvoEditor::CKyvRepackageWorker::sigRepackageFinished,
                     [&](const QString&, bool isGood) { isDone = isGood; });
    worker.OnStartRepackage(alias, archive);
    return isDone ? 0 : 1;
}

std::uintmax_t BytesBelow(const fs::path& folder)
{
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        bytes += entry.is_regular_file() ? entry.file_size() : 0;
    return bytes;
}

class Place
{
public:
    Place()
        : m_folder(QCoreApplication::applicationDirPath() + "/repackage-XXXXXX")
    {
        const auto content = root() / "content";
        fs::create_directories(content);
        chosen::Make(content);
        // By the other packer, so that ours gets nothing that it has made itself.
        static_cast<void>(RunProgram({"7zz", "a", "-tzip", "-mx1", archive(), content.string() + "/."}));
        std::fprintf(stderr, "archive: %ju MB of %ju MB\n", fs::file_size(archive()) / 1000000,
                     BytesBelow(content) / 1000000);
        fs::remove_all(content);
        QDir().mkpath(TorvoEditor::KyvUploadFolder());
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place() { removeOurs(); }

    [[nodiscard]] fs::path root() const { return m_folder.path().toStdString(); }
    [[nodiscard]] std::string archive() const { return root() / "house.kyv"; }

    [[nodiscard]] ProgramCost runOurs(std::uintmax_t& bytes) const
    {
        removeOurs();
        const auto cost =
            RunProgram({QCoreApplication::applicationFilePath().toStdString(), "repackage", archive()});
        bytes = fs::file_size(ours() / "house.kyv");
        removeOurs();
        return cost;
    }

    [[nodiscard]] ProgramCost runTheirs(std::uintmax_t& bytes) const
    {
        const auto folder = root() / "theirs";
        const auto target = folder / "new.kyv";
        fs::remove_all(folder);
        const auto unpacked = RunProgram({"7zz", "x", "-y", "-o" + folder.string(), archive()});
        const auto packed = RunProgram({"7zz", "a", "-tzip", "-mm=Deflate", target,
                                        folder.string() + "/*.zrg", folder.string() + "/*.zrim"});
        bytes = fs::file_size(target);
        fs::remove_all(folder);
        return {unpacked.seconds + packed.seconds, unpacked.processor + packed.processor,
                std::max(unpacked.memory, packed.memory)};
    }

private:
    [[nodiscard]] static fs::path ours() { return TorvoEditor::KyvWorkFolder(alias).toStdString(); }
    static void removeOurs() { fs::remove_all(ours()); }

    QTemporaryDir m_folder;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication app(argumentCount, arguments);
    if (argumentCount > 2)
        return Repackage(QCoreApplication::arguments().at(2));

    const Place place;
    std::vector<ProgramCost> ours;
    std::vector<ProgramCost> theirs;
    std::uintmax_t ourBytes = 0;
    std::uintmax_t theirBytes = 0;
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 1)
            ours.push_back(place.runOurs(ourBytes));
        theirs.push_back(place.runTheirs(theirBytes));
        if (round % 2 == 0)
            ours.push_back(place.runOurs(ourBytes));
    }
    const auto our = bench::MedianOf(ours);
    const auto their = bench::MedianOf(theirs);
    bench::Tell("repackaging", our);
    bench::Tell("7zz x, 7zz a", their);
    std::fprintf(stderr, "bytes of the new archive: %ju, by 7zz %ju\n", ourBytes, theirBytes);

    bench::Report report;
    report.ratio("repackaging", our.seconds / their.seconds, 0.5, "7zz x and 7zz a of the kept files");
    report.ratio("bytes of the new archive", static_cast<double>(ourBytes) / static_cast<double>(theirBytes),
                 1.1, "the archive of 7zz");
    report.ratio("resident memory of repackaging", our.memory / memoryLimit, 1.0, "128 MiB");
    return report.exitCode();
}
