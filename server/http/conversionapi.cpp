// SPDX-License-Identifier: MIT
#include "server/http/conversionapi.h"

#include "server/accounts/token.h"
#include "server/http/conversionbodies.h"

#include <algorithm>
#include <ctime>
#include <functional>

namespace server
{

namespace
{

using nlohmann::json;

constexpr std::size_t idLength = 32;
constexpr std::int64_t archiveLife = 24LL * 3600;
constexpr std::int64_t doneJobLife = 7 * archiveLife;
constexpr int mostAttempts = 3; ///< the first one, and twice again

std::int64_t Now()
{
    return std::time(nullptr);
}

std::string MakeId()
{
    return MakeToken().substr(0, idLength);
}

Reply WrongMethod()
{
    return ErrorReply(405, code::wrongMethod, "this cannot be done here");
}

Reply Missing()
{
    return ErrorReply(404, code::missing, "there is no such thing here");
}

[[noreturn]] void RefuseArchive()
{
    throw ConversionRefused(404, code::archiveMissing, "there is no such archive");
}

/// As people read it where the server stands.
std::string LocalTime(std::int64_t seconds)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    localtime_r(&time, &parts);
    std::array<char, 32> text{};
    const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return {text.data(), length};
}

Reply Guarded(const std::function<Reply()>& answer)
{
    try {
        return answer();
    } catch (const ConversionRefused& refusal) {
        return ErrorReply(refusal.status(), refusal.code(), refusal.what());
    }
}

} // namespace

ConversionApi::ConversionApi(Store& store, const std::filesystem::path& archives)
    : m_store(store)
    , m_folder(archives)
{
}

bool ConversionApi::isProjects(const Request& request)
{
    const auto& path = request.path;
    return path.size() >= 3 && (path[2] == "archives" || path[2] == "conversions" || path[2] == "models");
}

void ConversionApi::requireBuilding(const Session& session, const std::string& guid)
{
    const auto found = m_store.findProject(session.account, guid);
    if (!found || found->first.type != "BIM")
        throw ConversionRefused(404, code::missing, "there is no such building project");
}

void ConversionApi::requireChange(const Session& session, const std::string& guid)
{
    if (!m_store.mayChange(session.account, guid))
        throw ConversionRefused(403, code::notAllowed, "this account may not change the project");
}

Reply ConversionApi::answerProjects(const Request& request, const Session& session)
{
    return Guarded([&] {
        const auto& path = request.path; // projects, guid, what, ...
        const auto& guid = path[1];
        const bool isGet = request.method == "GET";
        const bool isPost = request.method == "POST";
        if (path[2] == "archives") {
            return routeArchives(request, session);
        }
        if (path[2] == "conversions" && path.size() == 3) {
            if (!isGet && !isPost)
                return WrongMethod();
            requireBuilding(session, guid);
            return isGet ? listJobs(guid) : addJob(request, session);
        }
        const bool isFailures = path[2] == "conversions" && path.size() == 4 && path[3] == "failures";
        const bool isModels = path[2] == "models" && path.size() == 3;
        if (!isFailures && !isModels)
            return Missing();
        if (!isGet)
            return WrongMethod();
        requireBuilding(session, guid);
        return isFailures ? listFailures(guid) : listModels(guid);
    });
}

Reply ConversionApi::routeArchives(const Request& request, const Session& session)
{
    const auto& path = request.path; // projects, guid, archives, id, what, offset
    const auto& guid = path[1];
    const bool isBegin = path.size() == 3;
    const bool isFinish = path.size() == 5 && path[4] == "finish";
    const bool isBytes = path.size() == 6 && path[4] == "bytes";
    if (!isBegin && !isFinish && !isBytes)
        return Missing();
    if (request.method != (isBytes ? "PUT" : "POST"))
        return WrongMethod();
    requireBuilding(session, guid);
    requireChange(session, guid);
    if (isBegin)
        return beginArchive(request, session);
    const std::lock_guard lock(lockOf(path[3]));
    const auto archive = m_store.findArchive(session.account, guid, path[3]);
    if (!archive)
        RefuseArchive();
    return isBytes ? takeBytes(request, *archive) : finishArchive(request, *archive);
}

std::mutex& ConversionApi::lockOf(const std::string& archive)
{
    return m_locks[std::hash<std::string>()(archive) % m_locks.size()];
}

Reply ConversionApi::beginArchive(const Request& request, const Session& session)
{
    Archive wish = ArchiveOf(request.body, request.path[1]);
    wish.id = MakeId();
    wish.account = session.account;
    std::vector<std::string> replaced;
    const auto archive = m_store.beginArchive(wish, Now(), replaced);
    for (const auto& id : replaced)
        m_folder.remove(id);
    return JsonReply(200, json{{"archive", archive.id}, {"received", archive.received}}.dump());
}

Reply ConversionApi::takeBytes(const Request& request, const Archive& archive)
{
    const auto offset = OffsetOf(request.path[5]);
    if (!archive.md5.empty())
        throw ConversionRefused(409, code::archiveFinished, "the archive is finished");
    if (offset != archive.received)
        throw ConversionRefused(409, code::wrongOffset, "the bytes do not start where the archive ends");
    if (request.body.empty() || request.body.size() > archive.size - archive.received)
        throw ConversionRefused(400, code::badRequest, "no bytes, or more than the archive was to have");
    m_folder.write(archive.id, offset, request.body);
    const auto received = archive.received + request.body.size();
    m_store.setReceived(archive.id, received, Now());
    return JsonReply(200, json{{"received", received}}.dump());
}

Reply ConversionApi::finishArchive(const Request& request, const Archive& archive)
{
    const auto md5 = Md5Of(request.body);
    const auto isOther = [](const std::string& words) {
        return ConversionRefused(409, code::otherDigest, words);
    };
    if (!archive.md5.empty() && archive.md5 != md5)
        throw isOther("the archive was finished with another digest");
    if (archive.received < archive.size)
        throw ConversionRefused(409, code::archiveIncomplete, "bytes of the archive are missing");
    if (archive.md5.empty()) {
        if (m_folder.md5(archive.id, archive.size) != md5) {
            m_store.removeArchive(archive.id);
            m_folder.remove(archive.id);
            throw isOther("the archive has another digest");
        }
        m_store.setFinished(archive.id, md5, Now());
    }
    return JsonReply(200, json{{"path", archive.path}}.dump());
}

Reply ConversionApi::addJob(const Request& request, const Session& session)
{
    requireChange(session, request.path[1]);
    auto [job, md5] = JobOf(request.body, request.path[1]);
    job.id = MakeId();
    job.account = session.account;
    switch (m_store.addJob(job, md5)) {
    case Store::AddAnswer::added:
        break;
    case Store::AddAnswer::noArchive:
        RefuseArchive();
    case Store::AddAnswer::otherDigest:
        throw ConversionRefused(409, code::otherDigest, "the archive has another digest");
    case Store::AddAnswer::noOldModel:
        throw ConversionRefused(404, code::modelMissing, "the project has no model of this id");
    }
    return JsonReply(200, json{{"id", job.id}}.dump());
}

Reply ConversionApi::listJobs(const std::string& guid)
{
    json jobs = json::array();
    for (const auto& job : m_store.jobsOf(guid))
        jobs.push_back({{"projectId", job.guid},
                        {"name", job.name},
                        {"id", job.id},
                        {"oldModelId", job.oldModel},
                        {"sort", job.sort},
                        {"status", std::to_string(static_cast<int>(job.status))}});
    return JsonReply(200, json{{"jobs", std::move(jobs)}}.dump());
}

Reply ConversionApi::listFailures(const std::string& guid)
{
    json failures = json::array();
    for (const auto& failure : m_store.failuresOf(guid))
        failures.push_back({{"id", failure.id},
                            {"name", failure.name},
                            {"reason", failure.reason},
                            {"updateDate", LocalTime(failure.happened)}});
    return JsonReply(200, json{{"failures", std::move(failures)}}.dump());
}

Reply ConversionApi::listModels(const std::string& guid)
{
    json models = json::array();
    for (const auto& model : m_store.modelsOf(guid))
        models.push_back({{"id", model.guid}, {"name", model.name}});
    return JsonReply(200, json{{"models", std::move(models)}}.dump());
}

Reply ConversionApi::answerJobs(const Request& request, const Session& session)
{
    return Guarded([&] {
        const auto& path = request.path; // conversions, id, what
        const bool isProgress = path.size() == 3 && path[2] == "progress";
        if (path.size() != 2 && !isProgress)
            return Missing();
        if (request.method != (isProgress ? "GET" : "DELETE"))
            return WrongMethod();
        const auto job = m_store.findJob(path[1]);
        if (!job || !m_store.findProject(session.account, job->guid))
            throw ConversionRefused(404, code::jobMissing, "there is no such job");
        return isProgress ? progress(*job) : removeJob(*job, session);
    });
}

Reply ConversionApi::progress(const Job& job)
{
    const bool isRunning = job.status == JobStatus::running;
    return JsonReply(200, json{{"percent", isRunning ? std::clamp(job.percent, 1.0, 100.0) : 0.0}}.dump());
}

Reply ConversionApi::removeJob(const Job& job, const Session& session)
{
    requireChange(session, job.guid);
    const auto archive = m_store.removeJob(job.id);
    if (!archive)
        throw ConversionRefused(404, code::jobMissing, "there is no such job");
    m_folder.remove(*archive);
    return EmptyReply(204);
}

void ConversionApi::tick()
{
    for (const auto& id : m_store.forgetArchives(Now() - archiveLife))
        m_folder.remove(id);
    m_store.reviveJobs(Now(), mostAttempts, Now() - doneJobLife);
}

} // namespace server
