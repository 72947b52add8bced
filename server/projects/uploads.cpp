// SPDX-License-Identifier: MIT
#include "server/projects/uploads.h"

#include "server/accounts/token.h"
#include "server/storage/packs.h"
#include "wire/manifestdelta.h"
#include "wire/piecestream.h"
#include "wire/projectfolder.h"

#include <algorithm>
#include <ctime>
#include <iostream>
#include <utility>

namespace server
{

namespace
{

using Reason = UploadRefused::Reason;

/// What has arrived is made known so often: enough that an interruption costs little, seldom enough that the
/// disk is not waited for all the time.
constexpr std::uint64_t syncBytes = 256U << 20U;

std::chrono::milliseconds TimeBetweenExtensions(std::chrono::seconds leaseTime)
{
    return std::chrono::milliseconds(leaseTime) / 10;
}

[[noreturn]] void RefuseGone()
{
    throw UploadRefused(Reason::gone, "this upload has ended; begin it again");
}

void Require(UploadAnswer answer)
{
    switch (answer) {
    case UploadAnswer::granted:
        return;
    case UploadAnswer::notAllowed:
        throw UploadRefused(Reason::notAllowed, "this account may not change the project");
    case UploadAnswer::busy:
        throw UploadRefused(Reason::busy, "the project is being uploaded by somebody else");
    case UploadAnswer::converting:
        throw UploadRefused(Reason::converting, "the server is converting the project");
    case UploadAnswer::conflict:
        throw UploadRefused(Reason::conflict, "the project has been changed on the server meanwhile");
    case UploadAnswer::gone:
        RefuseGone();
    }
}

wire::Manifest ReadManifest(const wire::Manifest& base, std::string_view delta)
{
    auto decoded = wire::DecodeManifestDelta(base, delta);
    if (const auto* refusal = std::get_if<wire::Refusal>(&decoded))
        throw UploadRefused(Reason::badContent, refusal->reason);
    auto manifest = std::get<wire::Manifest>(std::move(decoded));
    bool hasDatabase = false;
    for (const auto& file : manifest.files) {
        if (!wire::IsProjectFile(file.path))
            throw UploadRefused(Reason::badContent, file.path + " is no file of a project");
        hasDatabase = hasDatabase || file.path == wire::projectDatabaseName;
    }
    if (!hasDatabase)
        throw UploadRefused(Reason::badContent, "a project without its database");
    return manifest;
}

/// The frames of a piece stream with the names of their pieces.
std::vector<std::pair<wire::Digest, std::span<const std::byte>>> NamedFrames(std::string_view stream)
{
    std::vector<std::pair<wire::Digest, std::span<const std::byte>>> frames;
    wire::FrameReader reader(stream);
    while (const auto frame = reader.next())
        frames.emplace_back(wire::DigestOf(frame->bytes), frame->stored);
    if (!reader.isGood())
        throw UploadRefused(Reason::badContent, "a piece stream that is damaged or cut short");
    return frames;
}

} // namespace

struct Uploads::Upload {
    UploadLease lease;
    Project project;
    std::optional<std::string> base; ///< that must be the newest revision; nothing for a forced upload
    std::shared_ptr<const LoadedRevision> baseRevision; ///< may be null
    bool isAhead = false;
    wire::Manifest manifest;
    std::unordered_map<wire::Digest, std::optional<PieceLocation>> fresh; ///< nothing: has not come yet

    std::mutex mutex; ///< protects what follows, and the locations above
    bool isEnded = false;
    std::chrono::steady_clock::time_point extended = std::chrono::steady_clock::now();
    std::unique_ptr<PackWriter> writer;
    std::vector<StoredPiece> arrived; ///< and not yet known to the store
    std::uint64_t arrivedBytes = 0;

    void take(const wire::Digest& name, std::span<const std::byte> frame, const std::filesystem::path& packs);
    void sync();
    void forgetArrived();
    [[nodiscard]] std::vector<PieceLocation> layout() const;
};

void Uploads::Upload::take(const wire::Digest& name, std::span<const std::byte> frame,
                           const std::filesystem::path& packs)
{
    const auto piece = fresh.find(name);
    if (piece == fresh.end())
        throw UploadRefused(Reason::badContent, "a piece that the project does not consist of");
    if (piece->second)
        return;
    if (!writer)
        writer = std::make_unique<PackWriter>(packs);
    piece->second = writer->append({reinterpret_cast<const char*>(frame.data()), frame.size()});
    arrived.emplace_back(name, *piece->second);
    arrivedBytes += frame.size();
}

void Uploads::Upload::sync()
{
    if (writer)
        writer->sync();
}

/// After a failed write nobody knows what of it stands in the pack.
void Uploads::Upload::forgetArrived()
{
    for (const auto& [name, location] : std::exchange(arrived, {}))
        fresh[name].reset();
    arrivedBytes = 0;
    writer.reset();
}

std::vector<PieceLocation> Uploads::Upload::layout() const
{
    std::unordered_map<wire::Digest, PieceLocation> known;
    if (baseRevision) {
        std::size_t index = 0;
        for (const auto& file : baseRevision->manifest.files) {
            for (const auto& piece : file.pieces)
                known.emplace(piece.name, baseRevision->layout.at(index++));
        }
    }
    std::vector<PieceLocation> locations;
    for (const auto& file : manifest.files) {
        for (const auto& piece : file.pieces) {
            const auto sent = fresh.find(piece.name);
            if (sent != fresh.end() && !sent->second)
                throw UploadRefused(Reason::incomplete, "pieces of the project are missing");
            locations.push_back(sent != fresh.end() ? *sent->second : known.at(piece.name));
        }
    }
    return locations;
}

Uploads::Uploads(Store& store, RevisionCache& revisions, std::filesystem::path packs,
                 std::chrono::seconds leaseTime)
    : m_store(store)
    , m_revisions(revisions)
    , m_packs(std::move(packs))
    , m_leaseTime(leaseTime)
{
}

Uploads::~Uploads()
{
    for (const auto& [id, upload] : m_uploads) {
        const std::lock_guard lock(upload->mutex);
        keepArrived(*upload);
    }
}

UploadLease Uploads::renewed(const Upload& upload) const
{
    auto lease = upload.lease;
    const auto between = std::chrono::ceil<std::chrono::seconds>(TimeBetweenExtensions(m_leaseTime));
    lease.until = std::time(nullptr) + (m_leaseTime + between).count();
    return lease;
}

/// Not with every request: the database waits for the disk, and there for the pieces that have just come.
bool Uploads::extend(Upload& upload)
{
    if (upload.isEnded)
        return false;
    const auto now = std::chrono::steady_clock::now();
    if (now - upload.extended < TimeBetweenExtensions(m_leaseTime))
        return true;
    if (!m_store.extendUpload(renewed(upload)))
        return false;
    upload.extended = now;
    return true;
}

Uploads::Begun Uploads::begin(const wire::Digest& session, const Wish& wish)
{
    auto upload = std::make_shared<Upload>();
    upload->project = wish.project;
    upload->lease = {wish.project.guid, MakeToken(), session, 0};
    if (!wish.isForced)
        upload->base = wish.base;
    if (wish.against) {
        upload->baseRevision = m_revisions.find(wish.project.guid, *wish.against);
        if (!upload->baseRevision)
            throw UploadRefused(Reason::unknownBase, "the server does not know this revision");
    }
    const wire::Manifest nothing;
    const auto& base = upload->baseRevision ? upload->baseRevision->manifest : nothing;
    upload->isAhead = wish.isAhead;
    if (!wish.isAhead)
        upload->manifest = ReadManifest(base, wish.delta);
    Require(m_store.beginUpload(renewed(*upload), upload->project, upload->base));

    // What an interrupted upload of the same client has brought counts as well.
    std::vector<std::shared_ptr<Upload>> former;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [id, other] : m_uploads) {
            if (other->lease.guid == upload->lease.guid)
                former.push_back(other);
        }
    }
    for (const auto& other : former) {
        const std::lock_guard lock(other->mutex);
        keepArrived(*other);
        other->isEnded = true;
        forget(other->lease.id);
    }

    const auto fresh = wire::FreshPieces(base, upload->manifest);
    const auto locations = m_store.findPieces(fresh);
    Begun begun{upload->lease.id, std::vector<bool>(fresh.size())};
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        upload->fresh.emplace(fresh[i].name, locations[i]);
        begun.missing[i] = !locations[i];
    }
    const std::lock_guard lock(m_mutex);
    m_uploads.emplace(begun.id, std::move(upload));
    return begun;
}

std::shared_ptr<Uploads::Upload> Uploads::find(const std::string& guid, const std::string& id)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_uploads.find(id);
    if (found == m_uploads.end() || found->second->lease.guid != guid)
        RefuseGone();
    return found->second;
}

void Uploads::forget(const std::string& id)
{
    const std::lock_guard lock(m_mutex);
    m_uploads.erase(id);
}

std::vector<bool> Uploads::wanted(const std::string& guid, const std::string& id,
                                  std::span<const wire::Piece> pieces)
{
    const auto upload = find(guid, id);
    const auto locations = m_store.findPieces(pieces);
    const std::lock_guard lock(upload->mutex);
    if (!extend(*upload))
        RefuseGone();
    if (!upload->isAhead || upload->fresh.size() + pieces.size() > wire::mostPieces)
        throw UploadRefused(Reason::badContent, "pieces that nobody can want to know of");
    std::vector<bool> wanted(pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const auto known = upload->fresh.emplace(pieces[i].name, locations[i]).first;
        wanted[i] = !known->second;
    }
    return wanted;
}

void Uploads::addPieces(const std::string& guid, const std::string& id, std::string_view stream)
{
    const auto upload = find(guid, id);
    // Before anybody is kept waiting: this is what takes the time.
    const auto frames = NamedFrames(stream);
    std::vector<StoredPiece> settling;
    std::unique_ptr<OpenFile> file;
    {
        const std::lock_guard lock(upload->mutex);
        if (!extend(*upload))
            RefuseGone();
        try {
            for (const auto& [name, frame] : frames)
                upload->take(name, frame, m_packs);
            if (upload->arrivedBytes >= syncBytes) {
                file = upload->writer->flush();
                settling = std::exchange(upload->arrived, {});
                upload->arrivedBytes = 0;
            }
        } catch (const UploadRefused&) {
            throw;
        } catch (const std::exception&) {
            upload->forgetArrived();
            throw;
        }
    }
    if (file)
        settle(*upload, *file, settling);
}

/// Makes pieces known when they are on the disk. What the client sends by its other connections is taken
/// meanwhile.
void Uploads::settle(Upload& upload, const OpenFile& file, std::span<const StoredPiece> pieces)
{
    try {
        SyncToDisk(file);
        m_store.addPieces(pieces);
    } catch (const std::exception&) {
        const std::lock_guard lock(upload.mutex);
        for (const auto& [name, location] : pieces)
            upload.fresh[name].reset();
        upload.forgetArrived();
        throw;
    }
}

wire::Digest Uploads::commit(const std::string& guid, const std::string& id)
{
    const auto upload = find(guid, id);
    const std::lock_guard lock(upload->mutex);
    if (upload->isEnded)
        RefuseGone();
    if (upload->isAhead)
        throw UploadRefused(Reason::incomplete, "the files of the project have not been told yet");
    const auto root = wire::RootOf(upload->manifest);
    const Revision revision{root, wire::EncodeManifest(upload->manifest), Layout(upload->layout()).encode()};
    try {
        upload->sync();
    } catch (const std::exception&) {
        upload->forgetArrived();
        throw;
    }
    const auto answer =
        m_store.commitUpload(upload->lease, upload->project, upload->base, revision, upload->arrived);
    if (answer == UploadAnswer::conflict)
        m_store.endUpload(upload->lease, ProjectStatus::normal);
    upload->isEnded = true;
    forget(id);
    Require(answer);
    return root;
}

void Uploads::abandon(const std::string& guid, const std::string& id)
{
    const auto upload = find(guid, id);
    const std::lock_guard lock(upload->mutex);
    keepArrived(*upload);
    upload->isEnded = true;
    m_store.endUpload(upload->lease, ProjectStatus::uploadFailed);
    forget(id);
}

void Uploads::endStale()
{
    for (const auto& id : m_store.endStaleUploads(std::time(nullptr))) {
        std::shared_ptr<Upload> upload;
        {
            const std::lock_guard lock(m_mutex);
            const auto found = m_uploads.find(id);
            if (found == m_uploads.end())
                continue;
            upload = std::move(found->second);
            m_uploads.erase(found);
        }
        const std::lock_guard lock(upload->mutex);
        keepArrived(*upload);
        upload->isEnded = true;
    }
}

/// Throws nothing: what cannot be kept will be sent again.
void Uploads::keepArrived(Upload& upload)
{
    try {
        upload.sync();
        m_store.addPieces(upload.arrived);
        upload.arrived.clear();
        upload.arrivedBytes = 0;
        upload.writer.reset();
    } catch (const std::exception& failure) {
        std::cerr << "pieces of an upload could not be kept: " << failure.what() << '\n';
        upload.forgetArrived();
    }
}

} // namespace server
