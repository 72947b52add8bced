// SPDX-License-Identifier: MIT
#include "smartdb/net/upload.h"

#include "smartdb/data/localstate.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/log.h"
#include "smartdb/net/aheadsender.h"
#include "smartdb/net/piecesender.h"
#include "smartdb/net/projectrecord.h"
#include "smartdb/net/remotetree.h"
#include "smartdb/net/servercodes.h"
#include "smartdb/text.h"
#include "wire/manifestdelta.h"
#include "wire/message.h"

#include <thread>
#include <unordered_set>
#include <utility>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr int attempts = 4;
constexpr std::chrono::seconds beginTime(120);
constexpr std::chrono::seconds commitTime(120);
constexpr std::chrono::seconds abandonTime(3);
constexpr std::chrono::milliseconds restAfterBreak(500);
constexpr const char* tilesType = "3DTILES";
const wire::Manifest noFiles;

/// The pieces that the server lacks, each at one of its places.
std::vector<PiecePlace> PlacesOf(const wire::Manifest& manifest, const std::vector<wire::Piece>& fresh,
                                 const std::vector<bool>& isMissing)
{
    std::unordered_set<wire::Digest> wanted;
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        if (isMissing[i])
            wanted.insert(fresh[i].name);
    }
    std::vector<PiecePlace> places;
    for (std::uint32_t file = 0; file < manifest.files.size() && !wanted.empty(); ++file) {
        std::uint64_t offset = 0;
        for (const auto& piece : manifest.files[file].pieces) {
            if (wanted.erase(piece.name) > 0)
                places.push_back({file, offset, piece.size, piece.name});
            offset += piece.size;
        }
    }
    return places;
}

std::uint64_t BytesOf(const std::vector<PiecePlace>& places)
{
    std::uint64_t bytes = 0;
    for (const auto& place : places)
        bytes += place.size;
    return bytes;
}

std::uint64_t BytesIn(const fs::path& folder)
{
    std::uint64_t bytes = 0;
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(folder, ignored))
        bytes += entry.is_regular_file(ignored) ? entry.file_size(ignored) : 0;
    return bytes;
}

[[noreturn]] void RefuseBeginning()
{
    throw Failure(http::faultcode::badReply,
                  "the project server answered with something that is no beginning of an upload");
}

/// The path of the requests of an upload that has begun.
std::string PathOf(const std::string& guid, const http::Reply& reply)
{
    const auto message = wire::ReadMessage(reply.body);
    const auto head = message ? json::parse(message->head, nullptr, false) : json();
    if (!head.is_object() || !head.contains("upload") || !head["upload"].is_string())
        RefuseBeginning();
    return ProjectPath(guid) + "/uploads/" + http::EncodedName(head["upload"].get<std::string>());
}

bool IsBroken(const http::Fault& fault)
{
    return fault.code == http::faultcode::unreachable || fault.code == http::faultcode::timedOut;
}

} // namespace

/// One project of an upload.
struct Upload::Task {
    std::string guid;
    std::string parent; ///< of a model
    bool isForced = false;
};

/// What the server has said at the beginning.
struct Upload::Granted {
    std::string path; ///< of the requests of this upload
    std::vector<PiecePlace> missing;
};

Upload::Upload(http::Client& client, std::shared_ptr<Disk> disk, fs::path dataFolder)
    : m_client(client)
    , m_disk(std::move(disk))
    , m_dataFolder(std::move(dataFolder))
    , m_side(m_disk, m_dataFolder)
{
}

void Upload::run(const std::string& guid, bool isForced)
{
    send({guid, {}, isForced});
}

void Upload::send(const Task& task)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (sendOnce(task))
            return;
    }
    throw Failure(localcode::cannotWrite,
                  "the project is being changed all the time, or the server ends its upload again and again; "
                  "try again later");
}

bool Upload::sendOnce(const Task& task)
{
    const auto folder = ProjectFolder(m_dataFolder, task.guid);
    const auto head = RemoteTree(m_client, task.guid).head();
    const auto headName = head ? wire::ToHex(*head) : std::string();
    const auto local = LocalStateOf(*m_disk, folder, headName);
    // Nothing to send. A forced upload goes on: it makes the server's revision this one, whatever it was.
    if (!local.isChanged && !task.isForced && head)
        return true;
    const auto described = describe(task, !head);
    const auto& tree = *described;
    if (tree.state().revision == headName && !task.isForced) {
        WriteSynced(*m_disk, folder, tree.state(), tree.manifest());
        return true;
    }
    const auto granted = begin(task, tree, head ? tree.baseRevision() : std::string());
    try {
        Progress progress("upload " + task.guid, BytesOf(granted.missing));
        progress.add(0);
        const auto sending = PieceSender(m_client, granted.path, tree, granted.missing, progress).run();
        if (sending == Sending::done)
            sendModels(task);
        if (sending == Sending::done && commit(task, tree, granted))
            return true;
        if (sending == Sending::fileHasChanged)
            qCInfo(smartdbLog) << "a project was changed during its upload; it is described anew";
        return false;
    } catch (const Failure&) {
        abandon(task, granted.path);
        throw;
    }
}

/// Of a project that is new to the server the pieces are sent as soon as they are read: nearly all of them
/// will be missing, and what is read once need not be read again for being sent.
std::unique_ptr<LocalTree> Upload::describe(const Task& task, bool isNew)
{
    const auto folder = ProjectFolder(m_dataFolder, task.guid);
    if (!isNew)
        return std::make_unique<LocalTree>(folder, m_side.path());
    Progress progress("upload " + task.guid, BytesIn(folder));
    AheadSender ahead(
        m_client, [&] { return beginAhead(task); }, progress);
    try {
        auto tree = std::make_unique<LocalTree>(
            folder, m_side.path(),
            [&](const wire::Piece& piece, std::span<const std::byte> bytes) { ahead.take(piece, bytes); });
        ahead.finish();
        return tree;
    } catch (const Failure&) {
        ahead.giveUp();
        if (!ahead.path().empty())
            abandon(task, ahead.path());
        throw;
    }
}

/// Begins an upload whose files will be told by another beginning, which takes over what has arrived.
std::string Upload::beginAhead(const Task& task)
{
    const auto reply =
        askToBegin(task, {{"base", ""}, {"against", ""}, {"force", task.isForced}, {"ahead", true}}, {});
    if (reply.fault)
        throw Failure(reply.fault);
    return PathOf(task.guid, reply);
}

Upload::Granted Upload::begin(const Task& task, const LocalTree& tree, const std::string& base)
{
    const auto* against = tree.baseFiles() != nullptr ? tree.baseFiles() : &noFiles;
    auto reply = askToBegin(task, tree, base, *against);
    if (reply.fault.code == servercode::unknownBase) {
        against = &noFiles;
        reply = askToBegin(task, tree, base, *against);
    }
    if (reply.fault)
        throw Failure(reply.fault);
    auto path = PathOf(task.guid, reply);
    const auto fresh = wire::FreshPieces(*against, tree.manifest());
    const auto bits = wire::DecodeBits(wire::ReadMessage(reply.body)->body, fresh.size());
    const auto* isMissing = std::get_if<std::vector<bool>>(&bits);
    if (isMissing == nullptr)
        RefuseBeginning();
    return {std::move(path), PlacesOf(tree.manifest(), fresh, *isMissing)};
}

http::Reply Upload::askToBegin(const Task& task, const LocalTree& tree, const std::string& base,
                               const wire::Manifest& against)
{
    const bool isAgainstNothing = against.files.empty();
    return askToBegin(task,
                      {{"base", base},
                       {"against", isAgainstNothing ? std::string() : wire::ToHex(wire::RootOf(against))},
                       {"force", task.isForced}},
                      wire::EncodeManifestDelta(against, tree.manifest()));
}

http::Reply Upload::askToBegin(const Task& task, json head, std::string_view delta)
{
    head["project"] = ProjectRecordOf(ProjectFolder(m_dataFolder, task.guid), task.parent);
    http::Request request;
    request.method = "POST";
    request.path = ProjectPath(task.guid) + "/uploads";
    request.contentType = "application/x-torvo-upload";
    request.body = wire::WriteMessage(head.dump(-1, ' ', false, json::error_handler_t::replace), delta);
    request.timeout = beginTime;
    return m_client.send(request);
}

/// False when the upload has to begin anew.
bool Upload::commit(const Task& task, const LocalTree& tree, const Granted& granted)
{
    const auto folder = ProjectFolder(m_dataFolder, task.guid);
    // The answer may get lost although the server has taken the revision.
    WriteAttempt(*m_disk, folder, tree.state(), tree.manifest());
    http::Request request;
    request.method = "POST";
    request.path = granted.path + "/commit";
    request.contentType = "application/json";
    request.timeout = commitTime;
    http::Reply reply;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        reply = m_client.send(request);
        if (!IsBroken(reply.fault))
            break;
        std::this_thread::sleep_for(restAfterBreak);
    }
    const bool mayBeTaken = reply.fault.code == servercode::uploadGone || IsBroken(reply.fault);
    if (mayBeTaken) {
        const auto head = RemoteTree(m_client, task.guid).head();
        if (!head || wire::ToHex(*head) != tree.state().revision) {
            if (IsBroken(reply.fault))
                throw Failure(reply.fault);
            return false;
        }
    } else if (reply.fault.code == servercode::incomplete) {
        return false;
    } else if (reply.fault) {
        throw Failure(reply.fault);
    }
    AdoptAttempt(*m_disk, folder, tree.state().revision);
    return true;
}

void Upload::sendModels(const Task& task)
{
    if (!task.parent.empty())
        return;
    for (const auto& [text, type] : ProjectFile(ProjectFolder(m_dataFolder, task.guid)).readModelTypes()) {
        const auto model = GuidTextOf(GuidOf(text));
        if (type != tilesType && IsProjectHere(ProjectFolder(m_dataFolder, model)))
            send({model, task.guid, task.isForced});
    }
}

void Upload::abandon(const Task& task, const std::string& path) noexcept
{
    http::Request request;
    request.method = "DELETE";
    request.path = path;
    request.timeout = abandonTime;
    // Without it the server ends the upload by itself, later.
    if (m_client.send(request).fault)
        qCInfo(smartdbLog) << "the server does not know yet that an upload has failed:" << task.guid.c_str();
}

} // namespace ZRSmartDB
