// SPDX-License-Identifier: MIT
#include "zip/unpack.h"

#include "zip/badarchive.h"

#include <memory>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <zip.h>

namespace EditorCommon::Zip
{

namespace
{

constexpr std::size_t portion = 1U << 20U;
constexpr qint64 leftFree = 64LL << 20U; ///< on the disk, for everybody else

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;

Archive Open(const QString& path)
{
    int error = 0;
    Archive archive(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &error));
    if (!archive)
        throw BadArchive("the archive is damaged");
    return archive;
}

/// The plan stands on our reading of the directory; the library has to see the same archive.
void CheckThatBothReadTheSame(zip_t* archive, const std::vector<Entry>& entries)
{
    if (zip_get_num_entries(archive, 0) != static_cast<zip_int64_t>(entries.size()))
        throw BadArchive("the archive's directory can be read in two ways");
    constexpr zip_uint64_t wanted = ZIP_STAT_NAME | ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD;
    for (zip_uint64_t index = 0; index < entries.size(); ++index) {
        zip_stat_t facts;
        if (zip_stat_index(archive, index, ZIP_FL_ENC_RAW, &facts) != 0 || (facts.valid & wanted) != wanted ||
            facts.size != entries[index].size || facts.comp_size != entries[index].packedSize ||
            facts.comp_method != entries[index].method || facts.name != entries[index].name)
            throw BadArchive("the archive's directory can be read in two ways");
    }
}

/// What has been made on disk so far, removed again unless it is kept.
class Made
{
public:
    explicit Made(const QString& root)
        : m_root(root)
    {
    }
    Made(const Made&) = delete;
    Made& operator=(const Made&) = delete;
    ~Made()
    {
        for (const auto& file : m_files)
            QFile::remove(file);
        for (auto folder = m_folders.rbegin(); folder != m_folders.rend(); ++folder)
            QDir().rmdir(*folder);
    }

    void root() { makeFolder(m_root); }
    void folder(const QString& path) { makeFolder(m_root + '/' + path); }

    /// A new file in place of one that was there.
    void openFile(QFile& file, const QString& path)
    {
        file.setFileName(m_root + '/' + path);
        makeFolder(QFileInfo(file.fileName()).path());
        QFile::remove(file.fileName());
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            throw BadArchive("a file cannot be made: " + file.errorString().toStdString());
        m_files.append(file.fileName());
    }

    void keep()
    {
        m_files.clear();
        m_folders.clear();
    }

private:
    void makeFolder(const QString& path)
    {
        if (QFileInfo(path).isDir())
            return;
        makeFolder(QFileInfo(path).path());
        if (!QDir().mkdir(path))
            throw BadArchive("a folder cannot be made");
        m_folders.append(path);
    }

    QString m_root;
    QStringList m_files;
    QStringList m_folders;
};

void UnpackFile(zip_t* archive, const PlannedFile& planned, QFile& file)
{
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(archive, planned.index, 0));
    if (!entry)
        throw BadArchive("an entry of the archive cannot be read");
    const auto bytes = std::make_unique<char[]>(portion);
    std::uint64_t done = 0;
    while (true) {
        const auto count = zip_fread(entry.get(), bytes.get(), portion);
        if (count < 0)
            throw BadArchive("an entry of the archive is damaged");
        done += static_cast<std::uint64_t>(count);
        if (done > planned.size || (count == 0 && done < planned.size))
            throw BadArchive("an entry has another size than the archive says");
        if (count == 0)
            break;
        if (file.write(bytes.get(), count) != count)
            throw BadArchive("a file cannot be written: " + file.errorString().toStdString());
    }
    if (!file.flush())
        throw BadArchive("a file cannot be written: " + file.errorString().toStdString());
}

void CheckThatThereIsRoom(const QString& folder, std::uint64_t bytes)
{
    const QStorageInfo disk(folder);
    if (disk.isValid() && static_cast<qint64>(bytes) > disk.bytesAvailable() - leftFree)
        throw BadArchive("the disk has no room for the archive's files");
}

} // namespace

void Unpack(const QString& archive, const QString& folder, const Limits& limits)
{
    QFile file(archive);
    if (!QFileInfo(archive).isFile() || !file.open(QIODevice::ReadOnly))
        throw BadArchive("the archive cannot be opened");
    const auto entries = ReadDirectory(file, limits.entries);
    const auto plan = PlanUnpacking(entries, limits);
    const auto opened = Open(archive);
    CheckThatBothReadTheSame(opened.get(), entries);

    Made made(QDir(folder).absolutePath());
    made.root();
    CheckThatThereIsRoom(folder, plan.bytes);
    for (const auto& path : plan.folders)
        made.folder(path);
    for (const auto& planned : plan.files) {
        QFile target;
        made.openFile(target, planned.path);
        UnpackFile(opened.get(), planned, target);
    }
    made.keep();
}

} // namespace EditorCommon::Zip
