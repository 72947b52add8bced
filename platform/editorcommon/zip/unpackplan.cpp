// SPDX-License-Identifier: MIT
#include "zip/unpackplan.h"

#include "wire/manifest.h"
#include "wire/path.h"
#include "zip/badarchive.h"

#include <set>
#include <string>

#include <QTextCodec>

namespace EditorCommon::Zip
{

namespace
{

constexpr unsigned madeOnUnix = 3;
constexpr unsigned madeOnMac = 19;

/// The kind of a file in a Unix mode.
constexpr std::uint32_t kindMask = 0170000;
constexpr std::uint32_t regularKind = 0100000;
constexpr std::uint32_t folderKind = 0040000;

unsigned System(const Entry& entry)
{
    return entry.madeBy >> 8U;
}

/// Text in an encoding, or null when the bytes are no text in it.
QString Decoded(const std::string& bytes, const char* encoding)
{
    auto* codec = QTextCodec::codecForName(encoding);
    if (codec == nullptr)
        return {};
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    auto text = codec->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0 ? text : QString();
}

void CheckKind(const Entry& entry, bool isFolder)
{
    if (entry.isLocked())
        throw BadArchive("the archive is locked with a password");
    if (System(entry) != madeOnUnix && System(entry) != madeOnMac)
        return;
    const auto kind = (entry.attributes >> 16U) & kindMask;
    if (kind != 0 && kind != (isFolder ? folderKind : regularKind))
        throw BadArchive("the archive holds a link or a device");
}

void CheckSizes(const Entry& entry, bool isFolder, const Limits& limits)
{
    if (isFolder && entry.size != 0)
        throw BadArchive("a folder of the archive has contents");
    if (entry.method == 0 && entry.size != entry.packedSize)
        throw BadArchive("an entry that is not packed has two sizes");
    if (entry.size > limits.harmless && entry.size / limits.ratio > entry.packedSize)
        throw BadArchive("an entry unfolds to too many times its size");
}

/// Every path that is taken, as the least discerning file system would compare it.
class Paths
{
public:
    void take(const QString& path, bool isFolder)
    {
        const auto folded = wire::FoldedPath(path.toStdString());
        for (auto slash = folded.find('/'); slash != std::string::npos; slash = folded.find('/', slash + 1))
            takeFolder(folded.substr(0, slash));
        if (isFolder)
            takeFolder(folded);
        else if (m_folders.count(folded) != 0 || !m_files.insert(folded).second)
            throw BadArchive("two entries of the archive have one name");
    }

private:
    void takeFolder(const std::string& folded)
    {
        if (m_files.count(folded) != 0)
            throw BadArchive("an entry of the archive is a file and a folder");
        m_folders.insert(folded);
    }

    std::set<std::string> m_files;
    std::set<std::string> m_folders;
};

} // namespace

QString EntryPath(const Entry& entry)
{
    QString path;
    if (entry.hasUtf8Name()) {
        path = Decoded(entry.name, "UTF-8");
    } else {
        if (System(entry) == madeOnUnix || System(entry) == madeOnMac)
            path = Decoded(entry.name, "UTF-8");
        if (path.isNull())
            path = Decoded(entry.name, "GB18030");
    }
    if (path.isNull())
        throw BadArchive("a name in the archive is in no encoding that is known");
    return path.replace('\\', '/');
}

UnpackPlan PlanUnpacking(const std::vector<Entry>& entries, const Limits& limits)
{
    UnpackPlan plan;
    Paths paths;
    std::uint64_t packed = 0;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const auto& entry = entries[index];
        auto path = EntryPath(entry);
        const bool isFolder = path.endsWith('/');
        if (isFolder)
            path.chop(1);
        CheckKind(entry, isFolder);
        CheckSizes(entry, isFolder, limits);
        if (const auto refusal = wire::PathRefusal(path.toStdString()); !refusal.empty())
            throw BadArchive("the archive holds " + refusal);
        paths.take(path, isFolder);
        if (entry.size > limits.bytes - plan.bytes)
            throw BadArchive("the archive unfolds to more than may be unpacked");
        plan.bytes += entry.size;
        packed += entry.packedSize;
        if (isFolder)
            plan.folders.append(path);
        else
            plan.files.push_back({index, entry.size, path});
    }
    if (plan.bytes > limits.harmless && plan.bytes / limits.ratio > packed)
        throw BadArchive("the archive unfolds to too many times its size");
    return plan;
}

} // namespace EditorCommon::Zip
