// SPDX-License-Identifier: MIT
#include "zip/pack.h"

#include "zip/badarchive.h"
#include "zip/blockline.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <zip.h>
#include <zlib.h>

namespace EditorCommon::Zip
{

namespace
{

constexpr qint64 sampleSize = 256 << 10;

struct Discard {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, Discard>;

QStringList FilesBelow(const QString& folder, const QString& besides)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const auto path = walk.next();
        if (path != besides)
            files.append(path);
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Looks at the beginning and at the middle: a packed file can have a header that is not.
bool IsWorthPacking(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw BadArchive("a file cannot be read: " + file.errorString().toStdString());
    auto sample = file.read(sampleSize);
    if (file.size() > 3 * sampleSize && file.seek(file.size() / 2))
        sample = file.read(sampleSize);
    return Zip::IsWorthPacking(sample);
}

/// One file as the zip library asks for it: packed already, with its checksum told when all of it has been
/// read.
class PackedFile
{
public:
    PackedFile(BlockLine& line, const QString& path)
        : m_line(line)
        , m_size(QFileInfo(path).size())
        , m_time(QFileInfo(path).lastModified().toSecsSinceEpoch())
    {
        zip_error_init(&m_error);
    }
    PackedFile(const PackedFile&) = delete;
    PackedFile& operator=(const PackedFile&) = delete;
    ~PackedFile() { zip_error_fini(&m_error); }

    static zip_int64_t answer(void* self, void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        auto& file = *static_cast<PackedFile*>(self);
        switch (command) {
        case ZIP_SOURCE_OPEN:
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        case ZIP_SOURCE_READ:
            return file.read(static_cast<char*>(data), static_cast<std::int64_t>(size));
        case ZIP_SOURCE_STAT:
            return file.tell(*static_cast<zip_stat_t*>(data));
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&file.m_error, data, size);
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                                  ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
        default:
            zip_error_set(&file.m_error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }

private:
    zip_int64_t read(char* to, std::int64_t most)
    {
        while (m_taken == m_block.bytes.size() && !m_block.isLast) {
            if (!takeBlock())
                return -1;
        }
        const auto count = std::min<std::int64_t>(most, m_block.bytes.size() - m_taken);
        std::memcpy(to, m_block.bytes.constData() + m_taken, static_cast<std::size_t>(count));
        m_taken += static_cast<int>(count);
        return count;
    }

    bool takeBlock()
    try {
        m_block = m_line.take();
        m_taken = 0;
        m_crc = crc32_combine(m_crc, m_block.crc, m_block.size);
        m_read += m_block.size;
        return true;
    } catch (const std::exception&) {
        zip_error_set(&m_error, ZIP_ER_READ, EIO); // no exception may pass through the library
        return false;
    }

    zip_int64_t tell(zip_stat_t& facts) const
    {
        zip_stat_init(&facts);
        facts.comp_method = ZIP_CM_DEFLATE;
        facts.size = static_cast<zip_uint64_t>(m_block.isLast ? m_read : m_size);
        facts.crc = static_cast<zip_uint32_t>(m_crc);
        facts.mtime = static_cast<time_t>(m_time);
        facts.valid = ZIP_STAT_COMP_METHOD | ZIP_STAT_SIZE | ZIP_STAT_MTIME | ZIP_STAT_CRC;
        return sizeof facts;
    }

    BlockLine& m_line;
    qint64 m_size;
    qint64 m_time;
    zip_error_t m_error{};
    PackedBlock m_block;
    int m_taken = 0; ///< of the block
    qint64 m_read = 0;
    uLong m_crc = 0;
};

void Add(zip_t* archive, const QString& name, zip_source_t* source, zip_int32_t method)
{
    if (source == nullptr)
        throw BadArchive("a file cannot be packed");
    const auto index = zip_file_add(archive, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
        throw BadArchive("a file cannot be packed");
    }
    if (zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), method, 0) != 0)
        throw BadArchive("a file cannot be packed");
}

} // namespace

void Pack(const QString& folder, const QString& archive)
{
    const QDir root(QDir(folder).absolutePath());
    const auto files = FilesBelow(root.path(), QFileInfo(archive).absoluteFilePath());
    if (files.isEmpty())
        throw BadArchive("there is no file to pack");
    QStringList packed;
    QSet<QString> stored;
    for (const auto& path : files) {
        if (IsWorthPacking(path))
            packed.append(path);
        else
            stored.insert(path);
    }

    BlockLine line(packed, std::max(1U, std::thread::hardware_concurrency()));
    std::vector<std::unique_ptr<PackedFile>> sources; // the archive uses them until it is closed
    int error = 0;
    Archive target(zip_open(QFile::encodeName(archive).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error));
    if (!target)
        throw BadArchive("the archive cannot be made");
    for (const auto& path : files) {
        const auto name = root.relativeFilePath(path);
        if (!stored.contains(path)) {
            sources.push_back(std::make_unique<PackedFile>(line, path));
            Add(target.get(), name,
                zip_source_function(target.get(), PackedFile::answer, sources.back().get()), ZIP_CM_DEFLATE);
        } else {
            Add(target.get(), name, zip_source_file(target.get(), QFile::encodeName(path).constData(), 0, -1),
                ZIP_CM_STORE);
        }
    }
    if (zip_close(target.get()) != 0)
        throw BadArchive(std::string("the archive cannot be written: ") + zip_strerror(target.get()));
    static_cast<void>(target.release());
}

} // namespace EditorCommon::Zip
