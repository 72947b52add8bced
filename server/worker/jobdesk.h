// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/conversionrecords.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace server
{

/// The job has gone to somebody else, or was deleted: nothing that is said about it counts any more.
class JobLost : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The worker is to end in the middle of a job.
class JobStopped : public std::runtime_error
{
public:
    JobStopped()
        : std::runtime_error("the worker is to end")
    {
    }
};

/// Where a worker gets its jobs and leaves what they have come to. One job at a time, which is the worker's
/// as long as something is said about it every few seconds. All operations may throw std::exception.
class JobDesk
{
public:
    virtual ~JobDesk() = default;

    /// Takes the next job; nothing when there is none.
    [[nodiscard]] virtual std::optional<Job> take() = 0;
    /// Says how far a job has come. False when it is lost.
    [[nodiscard]] virtual bool keep(const Job& job, double percent) = 0;
    /// The archive of a job as a file, brought into `folder` when it is not on this machine. Throws JobLost
    /// and JobStopped.
    [[nodiscard]] virtual std::filesystem::path archive(const Job& job,
                                                        const std::filesystem::path& folder) = 0;
    /// Makes what the converter has left in `folder` under the name `model` a model of the project, and ends
    /// the job. Throws JobLost and JobStopped.
    virtual void publish(const Job& job, const std::filesystem::path& folder, const std::string& model) = 0;
    /// Ends a job that has come to nothing.
    virtual void fail(const Job& job, const std::string& reason) = 0;
    /// Puts a job back into the queue.
    virtual void giveBack(const Job& job) = 0;
};

} // namespace server
