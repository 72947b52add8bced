// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/conversionrecords.h"
#include "wire/digest.h"
#include "wire/manifest.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace server
{

/// How an account's password is kept: a salted scrypt hash.
struct PasswordHash {
    std::string salt;
    std::string hash;
};

struct Account {
    std::int64_t id = 0;
    std::string name;      ///< what is typed at the login
    std::string loginName; ///< what the title bar shows
    std::optional<std::int64_t> organisation;
    PasswordHash password;
};

struct Session {
    std::int64_t account = 0;
    std::string name;
    std::string loginName;
    std::int64_t expires = 0; ///< seconds since 1970
};

/// How a project stands on the server.
enum class ProjectStatus { uploadFailed = -1, uploading = 0, normal = 1, converting = 3 };

/// The word for a status on the wire.
[[nodiscard]] inline std::string StatusWord(ProjectStatus status)
{
    return std::to_string(static_cast<int>(status));
}

struct ProjectState {
    std::string guid;
    ProjectStatus status = ProjectStatus::normal;
    std::string head;         ///< name of the newest revision, empty before the first
    std::int64_t revised = 0; ///< when that became the newest, seconds since 1970; 0 before the first
};

/// An upload that runs: one client at a time has a project, as long as it keeps sending.
struct UploadLease {
    std::string guid;
    std::string id;
    wire::Digest session;   ///< name of the token of the client
    std::int64_t until = 0; ///< seconds since 1970
};

/// Whether an upload may begin or end.
enum class UploadAnswer {
    granted,
    notAllowed, ///< the project belongs to others
    busy,       ///< another client uploads it
    converting, ///< the server converts it
    conflict,   ///< it has a newer revision than the client started from
    gone,       ///< the upload has ended
};

/// What became of a ticket.
enum class TicketUse { good, usedBefore, expired, unknown };

/// What the server remembers. Every operation is whole or not at all, may be called on any thread, waits for
/// the database and throws std::exception when that fails, DiskFull when its disk takes no more.
class Store : public ConversionRecords
{
public:
    ~Store() override = default;

    // Accounts

    /// The id of a new account; nothing when the name is taken.
    [[nodiscard]] virtual std::optional<std::int64_t> addAccount(const Account& account) = 0;
    [[nodiscard]] virtual std::optional<Account> findAccount(const std::string& name) = 0;
    [[nodiscard]] virtual std::vector<Account> accounts() = 0;
    /// Replaces a password and ends the account's sessions. False when there is no such account.
    [[nodiscard]] virtual bool setPassword(const std::string& name, const PasswordHash& password) = 0;

    virtual void addSession(const wire::Digest& token, std::int64_t account, std::int64_t expires) = 0;
    /// The session of a token; nothing when there is none or when it has expired at `now`.
    [[nodiscard]] virtual std::optional<Session> findSession(const wire::Digest& token, std::int64_t now) = 0;
    virtual void removeSession(const wire::Digest& token) = 0;

    // Browsers

    /// Remembers a ticket that lets one browser in as the session `session`, until `expires`.
    virtual void addTicket(const wire::Digest& ticket, const wire::Digest& session, std::int64_t expires) = 0;
    /// Uses a ticket up at `now`. A good one lets the browser with the cookie `cookie` in, until
    /// `cookieExpires` and for as long as the session lasts.
    [[nodiscard]] virtual TicketUse useTicket(const wire::Digest& ticket, std::int64_t now,
                                              const wire::Digest& cookie, std::int64_t cookieExpires) = 0;
    /// The session of a browser; nothing when it was not let in or when that has ended at `now`.
    [[nodiscard]] virtual std::optional<Session> findBrowser(const wire::Digest& cookie,
                                                             std::int64_t now) = 0;

    // Organisations

    /// The id of the organisation of that name, made or given this tree. `tree` is JSON.
    virtual std::int64_t putOrganisation(const std::string& name, const std::string& tree) = 0;
    /// The tree of an account's organisation; empty when it has none.
    [[nodiscard]] virtual std::string organisationTree(std::int64_t account) = 0;

    // Applications

    virtual void putApplication(const std::string& id, bool mayUpload, const std::string& reason) = 0;
    /// Why projects of an application may not be uploaded; empty when they may.
    [[nodiscard]] virtual std::string uploadRefusal(const std::string& id) = 0;

    // Projects

    /// A number that grows with every change of what anybody sees of projects.
    [[nodiscard]] virtual std::int64_t changeCounter() = 0;
    /// What an account sees: its own, its organisation's and the demonstration projects, without models, in a
    /// stable order.
    [[nodiscard]] virtual std::vector<Project> visibleProjects(std::int64_t account) = 0;
    /// The states of what an account sees, models included.
    [[nodiscard]] virtual std::vector<ProjectState> visibleStates(std::int64_t account) = 0;
    /// A project and its state when the account sees it.
    [[nodiscard]] virtual std::optional<std::pair<Project, ProjectState>>
    findProject(std::int64_t account, const std::string& guid) = 0;
    /// Whether an account may change a project: its owner, and everybody of its organisation.
    [[nodiscard]] virtual bool mayChange(std::int64_t account, const std::string& guid) = 0;
    virtual void putProject(const Project& project) = 0;
    virtual void setName(const std::string& guid, const std::string& name) = 0;
    virtual void setStatus(const std::string& guid, ProjectStatus status) = 0;

    // Revisions

    [[nodiscard]] virtual std::optional<Revision> findRevision(const std::string& guid,
                                                               const wire::Digest& root) = 0;
    /// The name of a project's newest revision, empty when it has none.
    [[nodiscard]] virtual std::string head(const std::string& guid) = 0;
    [[nodiscard]] virtual std::optional<PieceLocation> findPiece(const wire::Digest& name) = 0;
    /// The same for many, in their order.
    [[nodiscard]] virtual std::vector<std::optional<PieceLocation>>
    findPieces(std::span<const wire::Piece> pieces) = 0;
    virtual void addPieces(std::span<const StoredPiece> pieces) = 0;
    /// Makes a revision the newest of its project, with the pieces that it brought.
    virtual void commitRevision(const std::string& guid, const Revision& revision,
                                std::span<const StoredPiece> newPieces) = 0;

    // Uploads

    /// Gives a project to a client for its upload, and makes it known when it is new. `project.owner` is the
    /// account that asks. `base` is the revision that the client started from, empty for none; nothing when
    /// it does not matter. A client that has the project already gets it anew.
    [[nodiscard]] virtual UploadAnswer beginUpload(const UploadLease& lease, const Project& project,
                                                   const std::optional<std::string>& base) = 0;
    /// Extends all uploads of the client. False when this one has ended.
    [[nodiscard]] virtual bool extendUpload(const UploadLease& lease) = 0;
    /// Makes the revision the newest, and ends the upload unless the answer is a conflict of revisions.
    [[nodiscard]] virtual UploadAnswer commitUpload(const UploadLease& lease, const Project& project,
                                                    const std::optional<std::string>& base,
                                                    const Revision& revision,
                                                    std::span<const StoredPiece> newPieces) = 0;
    /// Ends an upload that brought nothing; its project gets the status.
    virtual void endUpload(const UploadLease& lease, ProjectStatus status) = 0;
    /// Ends the uploads whose clients have stopped sending, as failed, and gives their ids.
    virtual std::vector<std::string> endStaleUploads(std::int64_t now) = 0;
};

} // namespace server
