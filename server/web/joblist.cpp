// SPDX-License-Identifier: MIT
#include "server/web/joblist.h"

#include "server/web/page.h"
#include "wire/digest.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;

const char* StateWord(JobStatus status)
{
    switch (status) {
    case JobStatus::done:
        return "done";
    case JobStatus::running:
        return "running";
    case JobStatus::failed:
        return "failed";
    case JobStatus::waiting:
        break;
    }
    return "waiting";
}

json EntryOf(const ListedJob& listed)
{
    const auto& job = listed.job;
    const bool isRunning = job.status == JobStatus::running;
    return {{"id", job.id},
            {"name", job.name},
            {"project", job.guid},
            {"projectName", listed.project},
            {"state", StateWord(job.status)},
            {"percent", isRunning ? std::clamp(job.percent, 0.0, 100.0) : 0.0},
            {"place", job.sort},
            {"reason", listed.reason},
            {"ended", listed.ended},
            {"mayChange", listed.mayChange}};
}

Reply Guarded(Reply reply)
{
    reply.headers.emplace_back("Cache-Control", "no-store");
    AddGuards(reply);
    return reply;
}

Reply Refusal(unsigned status, int code, std::string_view words)
{
    return Guarded(ErrorReply(status, code, words));
}

} // namespace

bool JobList::isList(const Request& request)
{
    return request.path.size() == 1 && request.path[0] == "jobs";
}

bool JobList::isAction(const Request& request)
{
    return request.path.size() == 3 && request.path[0] == "jobs" &&
           (request.path[2] == "cancel" || request.path[2] == "retry");
}

std::string JobList::guardOf(const std::string& cookie)
{
    return wire::ToHex(wire::DigestOf("guard of " + cookie));
}

Reply JobList::list(const Session& session)
{
    json entries = json::array();
    for (const auto& listed : m_store.visibleJobs(session.account))
        entries.push_back(EntryOf(listed));
    // A reason comes from a converter, which may have said anything.
    return Guarded(JsonReply(
        200, json{{"jobs", std::move(entries)}}.dump(-1, ' ', false, json::error_handler_t::replace)));
}

Reply JobList::act(const Request& request, const Session& session)
{
    const auto job = m_store.findJob(request.path[1]);
    if (!job || !m_store.findProject(session.account, job->guid))
        return Refusal(404, code::jobMissing, "there is no such job");
    if (!m_store.mayChange(session.account, job->guid))
        return Refusal(403, code::notAllowed, "this account may not change the project");
    if (request.path[2] == "retry") {
        if (!m_store.retryJob(job->id))
            return Refusal(409, code::conflict, "the job has not failed, or its archive has gone");
    } else {
        // Its worker hears of it the next time that it tells how far it is.
        const auto archive = m_store.removeJob(job->id);
        if (!archive)
            return Refusal(404, code::jobMissing, "there is no such job");
        m_archives.remove(*archive);
    }
    return Guarded(EmptyReply(204));
}

} // namespace server
