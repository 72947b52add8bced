// SPDX-License-Identifier: MIT
#pragma once

#include "server/projects/revisioncache.h"
#include "server/storage/store.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace server
{

/// Why an upload is refused.
class UploadRefused : public std::runtime_error
{
public:
    enum class Reason {
        notAllowed,
        busy,
        converting,
        conflict,
        unknownBase, ///< the client has to tell its files whole
        gone,        ///< there is no such upload; the client has to begin anew
        incomplete,  ///< pieces are missing; the client has to begin anew
        badContent,
    };

    UploadRefused(Reason reason, const std::string& words)
        : std::runtime_error(words)
        , m_reason(reason)
    {
    }

    [[nodiscard]] Reason reason() const { return m_reason; }

private:
    Reason m_reason;
};

/// The uploads that run. Pieces that have arrived stay when an upload fails, so that the next one needs to
/// send the rest only. Any thread. Operations throw UploadRefused, DiskFull, and std::exception when the
/// database fails.
class Uploads
{
public:
    /// A client that sends nothing for `leaseTime` has given up.
    Uploads(Store& store, RevisionCache& revisions, std::filesystem::path packs,
            std::chrono::seconds leaseTime);
    ~Uploads();

    /// What a client asks for at the beginning.
    struct Wish {
        Project project;                     ///< with the account as its owner
        std::string base;                    ///< the revision that the client started from, empty for none
        bool isForced = false;               ///< also when the base is not the newest revision any more
        std::optional<wire::Digest> against; ///< what `delta` is told against, nothing: against no files
        std::string_view delta;              ///< the new revision
        bool isAhead = false;                ///< the revision is told later, by another beginning
    };

    struct Begun {
        std::string id;
        std::vector<bool> missing; ///< for each fresh piece of the revision whether it must be sent
    };

    [[nodiscard]] Begun begin(const wire::Digest& session, const Wish& wish);

    /// Which of these pieces must be sent. Only for an upload whose revision is told later: its pieces come
    /// as they are read.
    [[nodiscard]] std::vector<bool> wanted(const std::string& guid, const std::string& id,
                                           std::span<const wire::Piece> pieces);

    /// Takes a piece stream. Only pieces that the revision is made of, or that were asked about, are taken.
    void addPieces(const std::string& guid, const std::string& id, std::string_view stream);

    /// Makes the revision the newest. Returns its name.
    [[nodiscard]] wire::Digest commit(const std::string& guid, const std::string& id);

    /// The client gives up; the project's last upload then has failed.
    void abandon(const std::string& guid, const std::string& id);

    /// Ends uploads whose clients have stopped sending. To be called once a second or so.
    void endStale();

private:
    struct Upload;

    [[nodiscard]] std::shared_ptr<Upload> find(const std::string& guid, const std::string& id);
    void forget(const std::string& id);
    void keepArrived(Upload& upload);
    void settle(Upload& upload, const OpenFile& file, std::span<const StoredPiece> pieces);
    /// Says that the client still sends. False when the upload has ended. Its mutex must be held.
    [[nodiscard]] bool extend(Upload& upload);
    [[nodiscard]] UploadLease renewed(const Upload& upload) const;

    Store& m_store;
    RevisionCache& m_revisions;
    const std::filesystem::path m_packs;
    const std::chrono::seconds m_leaseTime;
    std::mutex m_mutex; ///< protects the table
    std::unordered_map<std::string, std::shared_ptr<Upload>> m_uploads;
};

} // namespace server
