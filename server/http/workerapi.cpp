// SPDX-License-Identifier: MIT
#include "server/http/workerapi.h"

#include "server/conversions/portions.h"
#include "server/http/conversionbodies.h"
#include "wire/path.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <iostream>

namespace server
{

namespace
{

using nlohmann::json;

constexpr std::size_t longestWorker = 64;
constexpr std::size_t portion = 1U << 20U;
/// Nothing is heard of a worker while its model is taken over, however large that is.
constexpr std::chrono::seconds publishTime{60};

bool IsWorkerName(const std::string& text)
{
    return !text.empty() && text.size() <= longestWorker &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) {
               return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
           });
}

Reply Missing()
{
    return ErrorReply(404, code::missing, "there is no such thing here");
}

[[noreturn]] void RefuseBody(const std::string& words)
{
    throw ConversionRefused(400, code::badRequest, words);
}

[[noreturn]] void RefuseJob()
{
    throw ConversionRefused(404, code::jobMissing, "the job is not this worker's");
}

} // namespace

WorkerApi::WorkerApi(Store& store, const Places& places, std::chrono::seconds lease)
    : m_store(store)
    , m_archives(places.archives)
    , m_models(places.models)
    , m_publisher(store, places.packs)
    , m_key(places.key)
    , m_lease(lease)
{
}

Reply WorkerApi::answer(const Request& request)
{
    constexpr std::string_view scheme = "Bearer ";
    if (!request.authorization.starts_with(scheme) ||
        !m_key.isKey(std::string_view(request.authorization).substr(scheme.size())))
        return ErrorReply(401, code::wrongKey, "this is not the key for workers");
    const auto& path = request.path; // workers, name, jobs, id, what, ...
    if (path.size() < 3 || path[2] != "jobs")
        return Missing();
    try {
        if (!IsWorkerName(path[1]))
            RefuseBody("a worker's name is made of 1 to 64 letters, digits and hyphens");
        if (path.size() > 3)
            return routeJob(request, path[1]);
        return request.method == "POST" ? takeJob(path[1])
                                        : ErrorReply(405, code::wrongMethod, "this cannot be done here");
    } catch (const ConversionRefused& refusal) {
        return ErrorReply(refusal.status(), refusal.code(), refusal.what());
    }
}

Reply WorkerApi::routeJob(const Request& request, const std::string& worker)
{
    const auto& path = request.path; // workers, name, jobs, id, what, ...
    const auto is = [&](std::size_t size, const char* what) {
        return path.size() == size && path[4] == what;
    };
    using Answer = std::function<Reply(const Job&)>;
    std::string method;
    Answer answer;
    if (path.size() == 4) {
        method = "DELETE";
        answer = [&](const Job& job) { return giveBack(job, worker); };
    } else if (is(6, "archive")) {
        method = "GET";
        answer = [&](const Job& job) { return archiveBytes(job, path[5]); };
    } else if (is(5, "progress")) {
        method = "PUT";
        answer = [&](const Job& job) { return progress(request, job, worker); };
    } else if (path.size() > 6 && path[4] == "model") {
        method = "PUT";
        answer = [&](const Job& job) { return takeBytes(request, job); };
    } else if (is(5, "publish")) {
        method = "POST";
        answer = [&](const Job& job) { return publish(request, job, worker); };
    } else if (is(5, "fail")) {
        method = "POST";
        answer = [&](const Job& job) { return fail(request, job, worker); };
    } else {
        return Missing();
    }
    if (request.method != method)
        return ErrorReply(405, code::wrongMethod, "this cannot be done here");
    const std::lock_guard lock(lockOf(path[3]));
    return answer(keptJob(path[3], worker));
}

std::int64_t WorkerApi::leaseEnd(std::chrono::seconds lease) const
{
    return std::time(nullptr) + lease.count();
}

std::mutex& WorkerApi::lockOf(const std::string& job)
{
    return m_locks[std::hash<std::string>()(job) % m_locks.size()];
}

Job WorkerApi::keptJob(const std::string& id, const std::string& worker)
{
    auto job = m_store.findJob(id);
    if (!job || !m_store.keepJob(id, worker, job->percent, leaseEnd(m_lease)))
        RefuseJob();
    return *std::move(job);
}

Reply WorkerApi::takeJob(const std::string& worker)
{
    const auto job = m_store.takeJob(worker, leaseEnd(m_lease));
    if (!job)
        return EmptyReply(204);
    m_models.remove(job->id);
    const auto archive = m_store.findArchive(job->account, job->guid, job->archive);
    if (!archive) {
        m_store.failJob(job->id, worker, "the archive is not there any more", std::time(nullptr));
        return EmptyReply(204);
    }
    return JsonReply(200, json{{"id", job->id},
                               {"name", job->name},
                               {"mode", job->mode},
                               {"size", archive->size},
                               {"md5", archive->md5},
                               {"leaseSeconds", m_lease.count()}}
                              .dump());
}

Reply WorkerApi::archiveBytes(const Job& job, const std::string& offset)
{
    Reply reply;
    reply.contentType = "application/octet-stream";
    reply.body = ReadPortion(m_archives.file(job.archive), OffsetOf(offset), portion);
    return reply;
}

Reply WorkerApi::progress(const Request& request, const Job& job, const std::string& worker)
{
    const auto percent = PercentOf(request.body);
    if (!m_store.keepJob(job.id, worker, percent, leaseEnd(m_lease)))
        RefuseJob();
    return EmptyReply(204);
}

Reply WorkerApi::takeBytes(const Request& request, const Job& job)
{
    auto path = request.path[6]; // workers, name, jobs, id, model, offset, path...
    for (std::size_t i = 7; i < request.path.size(); ++i)
        path += '/' + request.path[i];
    if (!wire::PathRefusal(path).empty())
        RefuseBody("a path that no file of a model can have");
    if (!m_models.write(job.id, path, OffsetOf(request.path[5]), request.body))
        throw ConversionRefused(409, code::wrongOffset, "the bytes start behind the end of the file");
    return EmptyReply(204);
}

Reply WorkerApi::publish(const Request& request, const Job& job, const std::string& worker)
{
    const auto model = MakeGuid();
    if (!m_models.complete(job.id, FilesOf(request.body), "proj_" + model))
        throw ConversionRefused(409, code::archiveIncomplete, "the model has come in parts only");
    const auto isKept = [&] {
        return m_store.keepJob(job.id, worker, publishingPercent, leaseEnd(publishTime));
    };
    try {
        if (!m_publisher.publish(job, worker, m_models.folder(job.id), model, isKept))
            RefuseJob();
        m_archives.remove(job.archive);
    } catch (const ConversionRefused&) {
        throw;
    } catch (const std::exception& exception) {
        std::cerr << "job " << job.id << " failed: " << exception.what() << '\n';
        m_store.failJob(job.id, worker, exception.what(), std::time(nullptr));
    }
    m_models.remove(job.id);
    return EmptyReply(204);
}

Reply WorkerApi::fail(const Request& request, const Job& job, const std::string& worker)
{
    m_store.failJob(job.id, worker, ReasonOf(request.body), std::time(nullptr));
    m_models.remove(job.id);
    return EmptyReply(204);
}

/// A lease that has run out is the way on which jobs go back into the queue.
Reply WorkerApi::giveBack(const Job& job, const std::string& worker)
{
    (void)m_store.keepJob(job.id, worker, 0.0, 0);
    m_models.remove(job.id);
    return EmptyReply(204);
}

void WorkerApi::tick()
{
    m_models.removeUnless([this](const std::string& id) {
        const auto job = m_store.findJob(id);
        return job && job->status == JobStatus::running;
    });
}

} // namespace server
