// SPDX-License-Identifier: MIT
#include "smartdb/net/folderbuilder.h"

#include "smartdb/failure.h"
#include "smartdb/net/room.h"
#include "smartdb/text.h"

#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr auto elsewhere = wire::PieceOrigin::elsewhere;
constexpr std::size_t writeBytes = 1U << 20U;

Batch FetchedRuns(const wire::SyncPlan& plan)
{
    Batch runs;
    for (const auto& step : plan.steps) {
        std::uint32_t index = 0;
        for (const auto& origin : step.pieces) {
            if (origin.file == elsewhere)
                runs.push_back({step.file, index, origin.count});
            index += origin.count;
        }
    }
    return runs;
}

std::uint64_t BuiltBytes(const wire::SyncPlan& plan, const wire::Manifest& want)
{
    std::uint64_t bytes = 0;
    for (const auto& step : plan.steps) {
        if (step.sameAs == elsewhere)
            bytes += want.files[step.file].size;
    }
    return bytes;
}

std::uint64_t BytesOfRun(const wire::Manifest& manifest, const wire::PieceRun& run)
{
    std::uint64_t bytes = 0;
    for (std::uint32_t i = 0; i < run.count; ++i)
        bytes += manifest.files[run.file].pieces[run.first + i].size;
    return bytes;
}

std::uint64_t BytesOfRuns(const wire::Manifest& manifest, const Batch& runs)
{
    std::uint64_t bytes = 0;
    for (const auto& run : runs)
        bytes += BytesOfRun(manifest, run);
    return bytes;
}

} // namespace

/// Gathers small pieces, which have been checked, into large writes.
class FolderBuilder::Writer
{
public:
    Writer(Disk& disk, const std::filesystem::path& file, const wire::FileEntry& entry)
        : m_output(disk.create(file, entry.mode))
    {
    }

    void write(std::span<const std::byte> bytes)
    {
        m_gathered.insert(m_gathered.end(), bytes.begin(), bytes.end());
        if (m_gathered.size() >= writeBytes)
            flush();
    }

    void finish()
    {
        flush();
        m_output->close();
    }

private:
    void flush()
    {
        m_output->write(m_gathered);
        m_gathered.clear();
    }

    std::unique_ptr<OutputFile> m_output;
    std::vector<std::byte> m_gathered;
};

FolderBuilder::FolderBuilder(http::Client& client, Disk& disk, const LocalTree& have,
                             const wire::Manifest& want, std::string guid, std::filesystem::path folder)
    : m_client(client)
    , m_disk(disk)
    , m_have(have)
    , m_want(want)
    , m_guid(std::move(guid))
    , m_folder(std::move(folder))
    , m_reader(have)
{
}

void FolderBuilder::build()
{
    const auto plan = wire::PlanBetween(m_have.manifest(), m_want);
    RequireRoom(m_disk, m_folder, BuiltBytes(plan, m_want));
    const auto runs = FetchedRuns(plan);
    Progress progress("update " + m_guid, BytesOfRuns(m_want, runs));
    progress.add(0);
    FetchStream stream(m_client, m_guid, m_want, PlanBatches(m_want, runs, batchBytes), progress);
    for (const auto& step : plan.steps)
        buildFile(step, stream);
    stream.finish();
}

void FolderBuilder::buildFile(const wire::FileStep& step, FetchStream& stream)
{
    const auto& file = m_want.files[step.file];
    const auto path = m_folder / PathOfUtf8(file.path);
    m_disk.makeFolder(path.parent_path());
    if (step.sameAs != elsewhere && m_have.manifest().files[step.sameAs].mode == file.mode) {
        m_disk.link(m_have.source(step.sameAs), path);
        return;
    }
    Writer writer(m_disk, path, file);
    const auto all = static_cast<std::uint32_t>(file.pieces.size());
    const auto origins =
        step.sameAs == elsewhere ? step.pieces : std::vector<wire::PieceOrigin>{{step.sameAs, 0, all}};
    std::uint32_t index = 0;
    for (const auto& origin : origins) {
        if (origin.file == elsewhere)
            stream.read(BytesOfRun(m_want, {step.file, index, origin.count}),
                        [&](std::span<const std::byte> bytes) { writer.write(bytes); });
        else
            takeLocal(file, index, origin, step, writer);
        index += origin.count;
    }
    writer.finish();
}

void FolderBuilder::takeLocal(const wire::FileEntry& file, std::uint32_t index,
                              const wire::PieceOrigin& origin, const wire::FileStep& step, Writer& writer)
{
    for (std::uint32_t i = 0; i < origin.count; ++i) {
        const auto& piece = file.pieces[index + i];
        const auto bytes =
            m_reader.read({origin.file, offsetOf(origin.file, origin.first + i), piece.size, piece.name});
        // A database that has been opened since differs in its first page although nothing was changed.
        if (bytes)
            writer.write(*bytes);
        else
            fetchAlone(step, index + i, writer);
    }
}

void FolderBuilder::fetchAlone(const wire::FileStep& step, std::uint32_t index, Writer& writer)
{
    const wire::PieceRun run{step.file, index, 1};
    Progress untold({}, 0);
    FetchStream stream(m_client, m_guid, m_want, {{run}}, untold);
    stream.read(BytesOfRun(m_want, run), [&](std::span<const std::byte> bytes) { writer.write(bytes); });
    stream.finish();
}

std::uint64_t FolderBuilder::offsetOf(std::uint32_t file, std::uint32_t piece)
{
    auto& offsets = m_offsets[file];
    if (offsets.empty()) {
        std::uint64_t offset = 0;
        for (const auto& one : m_have.manifest().files[file].pieces) {
            offsets.push_back(offset);
            offset += one.size;
        }
    }
    return offsets[piece];
}

} // namespace ZRSmartDB
