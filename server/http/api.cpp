// SPDX-License-Identifier: MIT
#include "server/http/api.h"

#include "server/accounts/token.h"
#include "server/regions/regions.h"

#include <ctime>
#include <exception>
#include <iostream>

namespace server
{

namespace
{

Reply Expired()
{
    return ErrorReply(401, code::loginExpired, "the login has expired");
}

Reply Missing()
{
    return ErrorReply(404, code::missing, "there is no such thing here");
}

Reply WrongMethod()
{
    return ErrorReply(405, code::wrongMethod, "this cannot be done here");
}

Reply Tagged(const Request& request, const TaggedAnswer& answer)
{
    Reply reply = request.ifNoneMatch == answer.tag ? EmptyReply(304) : JsonReply(200, answer.body);
    reply.headers.emplace_back("ETag", answer.tag);
    return reply;
}

/// Regions are part of the program: nobody needs to ask twice on one day.
Reply Lasting(Reply reply)
{
    reply.headers.emplace_back("Cache-Control", "private, max-age=86400");
    return reply;
}

Reply RegionsBelow(const Request& request)
{
    const auto parent = QueryValue(request.query, "parent");
    if (!parent || parent->size() > Regions::longestId)
        return ErrorReply(400, code::badRequest, "the id of a parent region is needed");
    return Lasting(Tagged(request, Regions::known().below(*parent)));
}

} // namespace

Api::Api(Store& store, const WorkerApi::Places& places, const Times& times)
    : m_store(store)
    , m_packs(places.packs)
    , m_lists(store)
    , m_revisions(store)
    , m_uploads(store, m_revisions, places.packs, times.uploadLease)
    , m_conversions(store, places.archives)
    , m_workers(store, places, times.jobLease)
    , m_pages(store, m_revisions, m_packs, places.archives)
    , m_tokenLife(times.tokenLife)
{
}

bool Api::isQuick(const Request& request)
{
    if (request.isForPage)
        return WebPages::isQuick(request);
    return request.path.size() == 1 && request.path.front() == "health";
}

Reply Api::answer(const Request& request)
{
    try {
        return request.isForPage ? m_pages.answer(request) : route(request);
    } catch (const DiskFull& exception) {
        std::cerr << request.method << " failed: " << exception.what() << '\n';
        return request.isForPage ? m_pages.failure(request)
                                 : ErrorReply(507, code::diskFull, "the disk of the project server is full");
    } catch (const std::exception& exception) {
        std::cerr << request.method << " failed: " << exception.what() << '\n';
        return request.isForPage
                   ? m_pages.failure(request)
                   : ErrorReply(500, code::serverError, "the server cannot answer at the moment");
    }
}

Reply Api::route(const Request& request)
{
    const auto& path = request.path;
    if (path.size() == 1 && path[0] == "health")
        return request.method == "GET" ? JsonReply(200, R"({"status":"ok","version":")" TORVO_VERSION R"("})")
                                       : WrongMethod();
    if (path.size() == 1 && path[0] == "login")
        return request.method == "POST" ? login(request) : WrongMethod();
    if (path[0] == "workers")
        return m_workers.answer(request);

    const auto session = sessionOf(request);
    return session ? routeWithSession(request, *session) : Expired();
}

std::optional<Session> Api::sessionOf(const Request& request)
{
    constexpr std::string_view scheme = "Bearer ";
    if (!request.authorization.starts_with(scheme))
        return std::nullopt;
    const auto token = TokenName(std::string_view(request.authorization).substr(scheme.size()));
    return m_store.findSession(token, std::time(nullptr));
}

bool Api::mayBeLarge(const Request& request)
{
    const auto& path = request.path;
    if (request.isForPage || path.size() != 3 || path[0] != "projects" || path[2] != "uploads")
        return false;
    try {
        return sessionOf(request).has_value();
    } catch (const std::exception& exception) {
        std::cerr << "a session could not be looked up: " << exception.what() << '\n';
        return false;
    }
}

void Api::tick()
{
    try {
        m_uploads.endStale();
    } catch (const std::exception& exception) {
        std::cerr << "uploads that have stopped could not be ended: " << exception.what() << '\n';
    }
    try {
        m_conversions.tick();
        m_workers.tick();
    } catch (const std::exception& exception) {
        std::cerr << "conversions could not be looked after: " << exception.what() << '\n';
    }
}

Reply Api::routeWithSession(const Request& request, const Session& session)
{
    const auto& path = request.path;
    if (path.size() == 1 && path[0] == "session")
        return this->session(request, session);
    if (path.size() == 1 && path[0] == "organisation")
        return request.method == "GET" ? organisation(session) : WrongMethod();
    if (path.size() == 1 && path[0] == "tickets")
        return request.method == "POST" ? ticket(request) : WrongMethod();
    if (path.size() == 3 && path[0] == "applications" && path[2] == "upload")
        return request.method == "GET" ? uploadPermission(path[1]) : WrongMethod();
    if (path.size() == 1 && path[0] == "countries")
        return request.method == "GET" ? Lasting(Tagged(request, Regions::known().countries()))
                                       : WrongMethod();
    if (path.size() == 1 && path[0] == "regions")
        return request.method == "GET" ? RegionsBelow(request) : WrongMethod();
    if (path[0] == "conversions")
        return m_conversions.answerJobs(request, session);
    if (path[0] == "projects")
        return ConversionApi::isProjects(request) ? m_conversions.answerProjects(request, session)
                                                  : routeProject(request, session);
    return Missing();
}

Reply Api::routeProject(const Request& request, const Session& session)
{
    const auto& path = request.path;
    if (path.size() == 1)
        return request.method == "GET" ? Tagged(request, *m_lists.projects(session.account)) : WrongMethod();
    if (path.size() == 2 && path[1] == "states")
        return request.method == "GET" ? Tagged(request, *m_lists.states(session.account)) : WrongMethod();

    // A project that is uploaded for the first time is not known yet.
    if (path.size() >= 3 && path[2] == "uploads")
        return routeUpload(request, session);

    const auto found = m_store.findProject(session.account, path[1]);
    if (!found)
        return Missing();
    const auto& [known, state] = *found;
    if (path.size() == 2)
        return request.method == "GET" ? project(known, state) : WrongMethod();
    if (path.size() == 3 && path[2] == "name")
        return request.method == "PUT" ? rename(request, session, path[1]) : WrongMethod();
    if (path.size() > 3 && path[2] == "files") {
        std::string file = path[3];
        for (std::size_t i = 4; i < path.size(); ++i)
            file += '/' + path[i];
        return request.method == "GET" ? projectFile(state, file) : WrongMethod();
    }
    if (path.size() == 4 && path[2] == "revisions")
        return request.method == "GET" ? manifest(request, path[1], path[3]) : WrongMethod();
    if (path.size() == 6 && path[2] == "revisions" && path[4] == "from")
        return request.method == "GET" ? manifestDelta(path[1], path[3], path[5]) : WrongMethod();
    if (path.size() == 5 && path[2] == "revisions" && path[4] == "pieces")
        return request.method == "POST" ? pieces(request, path[1], path[3]) : WrongMethod();
    return Missing();
}

} // namespace server
