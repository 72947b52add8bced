// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/revision.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace server
{

/// A model archive that arrives or has arrived.
struct Archive {
    std::string id;
    std::int64_t account = 0;
    std::string guid; ///< of the building project
    std::string path; ///< the client's name for it
    std::uint64_t size = 0;
    std::uint64_t received = 0;
    std::string md5; ///< of the whole archive, empty until it is finished
};

/// How far a job has come; the numbers are those of the wire.
enum class JobStatus { done = 2, running = 3, failed = 4, waiting = 6 };

/// An archive that is to become a model of a building project.
struct Job {
    std::string id;
    std::string guid; ///< of the building project
    std::int64_t account = 0;
    std::string archive; ///< id
    std::string path;
    std::string name;     ///< of the model
    std::string oldModel; ///< whose place the model takes; empty for none, and once it has failed
    int mode = 0;         ///< of the converter
    JobStatus status = JobStatus::waiting;
    double percent = 0.0;
    int sort = 0; ///< place among all that wait, 1 for the next one; 0 unless it waits
};

struct ConversionFailure {
    std::string id;
    std::string name;
    std::string reason;
    std::int64_t happened = 0; ///< seconds since 1970
};

/// A job as a list of the jobs of many projects tells it.
struct ListedJob {
    Job job;
    std::string project;    ///< name of the building project
    std::string reason;     ///< why it has failed, empty unless it has
    std::int64_t ended = 0; ///< seconds since 1970; 0 unless it has failed or come to a model
    bool mayChange = false; ///< the account that asks may end it, or have it done again
};

/// A model that is there to be used.
struct UsableModel {
    std::string guid;
    std::string name;
};

/// What a job has come to.
struct Publication {
    Project model;
    Revision modelRevision;
    std::string buildingBase; ///< that must be the building project's newest revision
    Revision buildingRevision;
    std::vector<StoredPiece> newPieces;
};

enum class PublishAnswer {
    published,
    conflict, ///< the building project has another revision by now
    gone,     ///< the job is somebody else's, or was deleted
};

/// What the server remembers of archives and of what is made of them. As with all of the store, every
/// operation is whole or not at all.
class ConversionRecords
{
public:
    virtual ~ConversionRecords() = default;

    // Archives

    /// Finds the archive of this account, path and size, or makes it under the id that `archive` brings. One
    /// of another size under the path loses it, and goes to `replaced` unless a job uses it.
    [[nodiscard]] virtual Archive beginArchive(const Archive& archive, std::int64_t now,
                                               std::vector<std::string>& replaced) = 0;
    [[nodiscard]] virtual std::optional<Archive> findArchive(std::int64_t account, const std::string& guid,
                                                             const std::string& id) = 0;
    virtual void setReceived(const std::string& id, std::uint64_t received, std::int64_t now) = 0;
    virtual void setFinished(const std::string& id, const std::string& md5, std::int64_t now) = 0;
    virtual void removeArchive(const std::string& id) = 0;
    /// Forgets archives that nobody has touched since `before` and no job uses, and gives their ids.
    [[nodiscard]] virtual std::vector<std::string> forgetArchives(std::int64_t before) = 0;
    /// Whether an archive of this id is known.
    [[nodiscard]] virtual bool hasArchive(const std::string& id) = 0;

    // Jobs

    enum class AddAnswer { added, noArchive, otherDigest, noOldModel };

    /// Registers a job for the finished archive at its path. One that is there for it already is given
    /// instead: its id stands in `job` then.
    [[nodiscard]] virtual AddAnswer addJob(Job& job, const std::string& md5) = 0;
    /// Jobs of a project that have not come to a model, in their order.
    [[nodiscard]] virtual std::vector<Job> jobsOf(const std::string& guid) = 0;
    [[nodiscard]] virtual std::optional<Job> findJob(const std::string& id) = 0;
    /// Takes a job out, whatever it is at, unless it has come to a model; gives its archive's id. Nothing
    /// when there is no such job.
    [[nodiscard]] virtual std::optional<std::string> removeJob(const std::string& id) = 0;
    /// What runs, then what waits, then what has ended, the last one first, of the projects that an account
    /// sees; the first two hundred.
    [[nodiscard]] virtual std::vector<ListedJob> visibleJobs(std::int64_t account) = 0;
    /// Puts a failed job at the end of the queue. It takes the old model's place if that is still there.
    /// False when there is no such failed job, or its archive has gone.
    [[nodiscard]] virtual bool retryJob(const std::string& id) = 0;
    [[nodiscard]] virtual std::vector<ConversionFailure> failuresOf(const std::string& guid) = 0;
    [[nodiscard]] virtual std::vector<UsableModel> modelsOf(const std::string& guid) = 0;

    // Workers

    /// Gives the next job to a worker until `until`, when there is one whose project is neither uploaded nor
    /// converted.
    [[nodiscard]] virtual std::optional<Job> takeJob(const std::string& worker, std::int64_t until) = 0;
    /// Keeps a job until `until` and tells how far it has come. False when it is the worker's no more.
    [[nodiscard]] virtual bool keepJob(const std::string& id, const std::string& worker, double percent,
                                       std::int64_t until) = 0;
    /// Makes the model one of the project, in place of the old one, and ends the job.
    [[nodiscard]] virtual PublishAnswer publishModel(const Job& job, const std::string& worker,
                                                     const Publication& publication, std::int64_t now) = 0;
    /// Ends a job that has come to nothing.
    virtual void failJob(const std::string& id, const std::string& worker, const std::string& reason,
                         std::int64_t now) = 0;
    /// Puts jobs of workers that were not heard of until now back into the queue; those that were begun
    /// `mostAttempts` times have failed. Forgets jobs that have come to a model before `before`.
    virtual void reviveJobs(std::int64_t now, int mostAttempts, std::int64_t before) = 0;
};

} // namespace server
