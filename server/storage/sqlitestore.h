// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/store.h"

#include <filesystem>
#include <memory>
#include <mutex>

namespace server
{

/// A store in one SQLite file, shared by several threads and processes.
class SqliteStore : public Store
{
public:
    /// Opens the file, makes it when it is missing. Throws std::exception when it cannot be used, and for a
    /// file that a newer version has written.
    explicit SqliteStore(std::filesystem::path file);
    ~SqliteStore() override;

    [[nodiscard]] std::optional<std::int64_t> addAccount(const Account& account) override;
    [[nodiscard]] std::optional<Account> findAccount(const std::string& name) override;
    [[nodiscard]] std::vector<Account> accounts() override;
    [[nodiscard]] bool setPassword(const std::string& name, const PasswordHash& password) override;
    void addSession(const wire::Digest& token, std::int64_t account, std::int64_t expires) override;
    [[nodiscard]] std::optional<Session> findSession(const wire::Digest& token, std::int64_t now) override;
    void removeSession(const wire::Digest& token) override;
    void addTicket(const wire::Digest& ticket, const wire::Digest& session, std::int64_t expires) override;
    [[nodiscard]] TicketUse useTicket(const wire::Digest& ticket, std::int64_t now,
                                      const wire::Digest& cookie, std::int64_t cookieExpires) override;
    [[nodiscard]] std::optional<Session> findBrowser(const wire::Digest& cookie, std::int64_t now) override;
    std::int64_t putOrganisation(const std::string& name, const std::string& tree) override;
    [[nodiscard]] std::string organisationTree(std::int64_t account) override;
    void putApplication(const std::string& id, bool mayUpload, const std::string& reason) override;
    [[nodiscard]] std::string uploadRefusal(const std::string& id) override;
    [[nodiscard]] std::int64_t changeCounter() override;
    [[nodiscard]] std::vector<Project> visibleProjects(std::int64_t account) override;
    [[nodiscard]] std::vector<ProjectState> visibleStates(std::int64_t account) override;
    [[nodiscard]] std::optional<std::pair<Project, ProjectState>>
    findProject(std::int64_t account, const std::string& guid) override;
    [[nodiscard]] bool mayChange(std::int64_t account, const std::string& guid) override;
    void putProject(const Project& project) override;
    void setName(const std::string& guid, const std::string& name) override;
    void setStatus(const std::string& guid, ProjectStatus status) override;
    [[nodiscard]] std::optional<Revision> findRevision(const std::string& guid,
                                                       const wire::Digest& root) override;
    [[nodiscard]] std::string head(const std::string& guid) override;
    [[nodiscard]] std::optional<PieceLocation> findPiece(const wire::Digest& name) override;
    [[nodiscard]] std::vector<std::optional<PieceLocation>>
    findPieces(std::span<const wire::Piece> pieces) override;
    void addPieces(std::span<const StoredPiece> pieces) override;
    void commitRevision(const std::string& guid, const Revision& revision,
                        std::span<const StoredPiece> newPieces) override;
    [[nodiscard]] UploadAnswer beginUpload(const UploadLease& lease, const Project& project,
                                           const std::optional<std::string>& base) override;
    [[nodiscard]] bool extendUpload(const UploadLease& lease) override;
    [[nodiscard]] UploadAnswer commitUpload(const UploadLease& lease, const Project& project,
                                            const std::optional<std::string>& base, const Revision& revision,
                                            std::span<const StoredPiece> newPieces) override;
    void endUpload(const UploadLease& lease, ProjectStatus status) override;
    std::vector<std::string> endStaleUploads(std::int64_t now) override;
    [[nodiscard]] Archive beginArchive(const Archive& archive, std::int64_t now,
                                       std::vector<std::string>& replaced) override;
    [[nodiscard]] std::optional<Archive> findArchive(std::int64_t account, const std::string& guid,
                                                     const std::string& id) override;
    void setReceived(const std::string& id, std::uint64_t received, std::int64_t now) override;
    void setFinished(const std::string& id, const std::string& md5, std::int64_t now) override;
    void removeArchive(const std::string& id) override;
    [[nodiscard]] std::vector<std::string> forgetArchives(std::int64_t before) override;
    [[nodiscard]] bool hasArchive(const std::string& id) override;
    [[nodiscard]] AddAnswer addJob(Job& job, const std::string& md5) override;
    [[nodiscard]] std::vector<Job> jobsOf(const std::string& guid) override;
    [[nodiscard]] std::optional<Job> findJob(const std::string& id) override;
    [[nodiscard]] std::optional<std::string> removeJob(const std::string& id) override;
    [[nodiscard]] std::vector<ListedJob> visibleJobs(std::int64_t account) override;
    [[nodiscard]] bool retryJob(const std::string& id) override;
    [[nodiscard]] std::vector<ConversionFailure> failuresOf(const std::string& guid) override;
    [[nodiscard]] std::vector<UsableModel> modelsOf(const std::string& guid) override;
    [[nodiscard]] std::optional<Job> takeJob(const std::string& worker, std::int64_t until) override;
    [[nodiscard]] bool keepJob(const std::string& id, const std::string& worker, double percent,
                               std::int64_t until) override;
    [[nodiscard]] PublishAnswer publishModel(const Job& job, const std::string& worker,
                                             const Publication& publication, std::int64_t now) override;
    void failJob(const std::string& id, const std::string& worker, const std::string& reason,
                 std::int64_t now) override;
    void reviveJobs(std::int64_t now, int mostAttempts, std::int64_t before) override;

    class Connection;
    class Lease;

private:
    [[nodiscard]] Lease lease();

    std::filesystem::path m_file;
    std::mutex m_mutex; ///< protects the free connections
    std::vector<std::unique_ptr<Connection>> m_free;
};

} // namespace server
