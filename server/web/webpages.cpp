// SPDX-License-Identifier: MIT
#include "server/web/webpages.h"

#include "server/accounts/token.h"
#include "server/projects/revisionfile.h"
#include "server/web/consolepage.h"
#include "server/web/html.h"
#include "server/web/page.h"
#include "server/web/projectpage.h"

#include <ctime>
#include <string_view>

namespace server
{

namespace
{

constexpr std::string_view cookieName = "torvo_browser";
constexpr std::int64_t browserSeconds = 12L * 3600;
constexpr std::uint64_t largestPicture = 16U << 20U;

/// The value of `name` in a list like "a=1; b=2".
std::string_view ValueIn(std::string_view list, std::string_view name, char separator)
{
    while (!list.empty()) {
        const auto end = list.find(separator);
        auto entry = list.substr(0, end);
        while (entry.starts_with(' '))
            entry.remove_prefix(1);
        if (entry.starts_with(name) && entry.substr(name.size()).starts_with('='))
            return entry.substr(name.size() + 1);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return {};
}

std::string GuardOf(const Request& request)
{
    return JobList::guardOf(std::string(ValueIn(request.cookie, cookieName, ';')));
}

bool IsConsole(const Request& request)
{
    return request.path.size() == 1 && request.path[0] == "console";
}

bool IsProject(const Request& request)
{
    return request.path.size() == 2 && request.path[0] == "projects";
}

bool IsPicture(const Request& request)
{
    return request.path.size() == 3 && request.path[0] == "projects" && request.path[2] == "picture";
}

bool IsOfModels(const Request& request)
{
    return ModelFiles::isList(request) || ModelFiles::isFile(request);
}

/// What the page of a project loads.
bool IsPartOfProject(const Request& request)
{
    return IsPicture(request) || IsOfModels(request);
}

/// Pages link to each other by relative addresses, so that a proxy may serve them below any path.
PageFrame FrameOf(const Request& request, std::string title)
{
    return {.title = std::move(title), .loginName = {}, .depth = request.path.size() - 1};
}

/// Which button of the program leads to the page that was asked for.
std::string ButtonOf(const Request& request)
{
    return IsProject(request) ? "请回到程序，点击工程卡片上的“打开服务端工程”。"
                              : "请回到程序，点击标题栏上的“控制台”。";
}

Reply TicketRefusal(const Request& request, TicketUse use)
{
    if (use == TicketUse::usedBefore)
        return NoticeReply(403, FrameOf(request, "这个链接已经用过了"),
                           "为了安全，程序给出的链接只能打开一次。", ButtonOf(request));
    if (use == TicketUse::expired)
        return NoticeReply(403, FrameOf(request, "这个链接已经过期"),
                           "为了安全，程序给出的链接只在一分钟内有效。", ButtonOf(request));
    return NoticeReply(403, FrameOf(request, "这个链接无效"), "链接不完整，或者程序中的登录已经结束。",
                       ButtonOf(request));
}

Reply NotLoggedIn(const Request& request)
{
    return NoticeReply(403, FrameOf(request, "请从程序打开这个页面"), "浏览器还没有登录，或者登录已经结束。",
                       ButtonOf(request));
}

Reply WrongMethod(const Request& request)
{
    auto reply =
        NoticeReply(405, FrameOf(request, "不能这样访问"), "这里只有可以查看的页面。", ButtonOf(request));
    reply.headers.emplace_back("Allow", JobList::isAction(request) ? "POST"
                                        : IsOfModels(request)      ? "GET, HEAD"
                                                                   : "GET");
    return reply;
}

Reply NoSuchPage(const Request& request)
{
    return NoticeReply(404, FrameOf(request, "没有这个页面"), "地址不完整，或者页面已经不在了。",
                       ButtonOf(request));
}

Reply NoSuchProject(const Request& request)
{
    return NoticeReply(404, FrameOf(request, "没有这个工程"),
                       "服务器上没有这个工程，或者当前帐号无权查看它。",
                       "请在程序中确认工程已经上传，并且登录的是正确的帐号。");
}

/// The names of files promise nothing: what is sent as a picture starts like one.
std::string_view PictureType(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xD8\xFF"))
        return "image/jpeg";
    return bytes.starts_with("\x89PNG\r\n") ? "image/png" : "";
}

} // namespace

bool WebPages::isQuick(const Request& request)
{
    return request.path.size() == 2 && request.path[0] == "assets";
}

Reply WebPages::failure(const Request& request)
{
    return NoticeReply(500, FrameOf(request, "服务器出错了"), "服务器暂时无法回答。", "请稍后再试。");
}

Reply WebPages::answer(const Request& request)
{
    // A model may be so large that somebody asks for its header first.
    const bool isHead = request.method == "HEAD" && IsOfModels(request);
    const bool isPost = request.method == "POST" && JobList::isAction(request);
    if ((request.method != "GET" || JobList::isAction(request)) && !isHead && !isPost)
        return WrongMethod(request);
    if (isQuick(request))
        return AssetReply(request.path[1]);
    const bool isPage = IsConsole(request) || IsProject(request);
    if (!isPage && !IsPartOfProject(request) && !JobList::isList(request) && !isPost)
        return NoSuchPage(request);
    const auto ticket = ValueIn(request.query, "ticket", '&');
    if (!ticket.empty() && isPage)
        return exchange(request, std::string(ticket));
    const auto session = sessionOf(request);
    if (!session)
        return NotLoggedIn(request);
    return answerTo(request, *session);
}

Reply WebPages::answerTo(const Request& request, const Session& session)
{
    if (IsConsole(request))
        return console(request, session);
    if (JobList::isList(request))
        return m_jobs.list(session);
    if (!JobList::isAction(request))
        return project(request, session);
    // The cookie alone does not prove that it was a page of ours that asked.
    if (request.guard != GuardOf(request))
        return NotLoggedIn(request);
    return m_jobs.act(request, session);
}

Reply WebPages::exchange(const Request& request, const std::string& ticket)
{
    const std::string cookie = MakeToken();
    const std::int64_t now = std::time(nullptr);
    const auto use = m_store.useTicket(TokenName(ticket), now, TokenName(cookie), now + browserSeconds);
    if (use != TicketUse::good)
        return TicketRefusal(request, use);
    Reply reply = EmptyReply(303);
    reply.headers.emplace_back("Location", PathName(request.path.back()));
    // It ends with the browser: nothing of the login stays on a computer that others use as well.
    std::string setCookie = std::string(cookieName) + '=' + cookie + "; Path=/; HttpOnly; SameSite=Strict";
    if (request.isEncrypted)
        setCookie += "; Secure";
    reply.headers.emplace_back("Set-Cookie", setCookie);
    reply.headers.emplace_back("Cache-Control", "no-store");
    AddGuards(reply);
    return reply;
}

std::optional<Session> WebPages::sessionOf(const Request& request)
{
    const auto cookie = ValueIn(request.cookie, cookieName, ';');
    if (cookie.empty())
        return std::nullopt;
    return m_store.findBrowser(TokenName(cookie), std::time(nullptr));
}

Reply WebPages::console(const Request& request, const Session& session)
{
    return ConsolePage(session, GuardOf(request), m_store.visibleProjects(session.account),
                       m_store.visibleStates(session.account));
}

Reply WebPages::project(const Request& request, const Session& session)
{
    const auto found = m_store.findProject(session.account, request.path[1]);
    if (!found)
        return NoSuchProject(request);
    const auto& [project, state] = *found;
    if (ModelFiles::isList(request))
        return m_models.list(session, project);
    if (ModelFiles::isFile(request))
        return m_models.file(request, session, project);
    const auto root = wire::DigestFromHex(state.head);
    const auto revision = root ? m_revisions.find(state.guid, *root) : nullptr;
    if (IsPicture(request))
        return picture(request, state, revision.get());
    return ProjectPage(session, project, state, revision.get());
}

Reply WebPages::picture(const Request& request, const ProjectState& state, const LoadedRevision* revision)
{
    auto missing = EmptyReply(404);
    AddGuards(missing);
    const auto* file = revision != nullptr ? FindFile(*revision, pictureFile) : nullptr;
    if (file == nullptr || file->size > largestPicture)
        return missing;
    // The browser asks each time whether it is still the same one, so that no other account gets it from
    // the browser's memory.
    const std::string tag = '"' + state.head + '"';
    Reply reply;
    if (request.ifNoneMatch == tag) {
        reply.status = 304;
    } else {
        reply.body = FileBytes(m_packs, *revision, *file);
        reply.contentType = PictureType(reply.body);
        if (reply.contentType.empty())
            return missing;
    }
    reply.headers.emplace_back("ETag", tag);
    reply.headers.emplace_back("Cache-Control", "private, no-cache");
    AddGuards(reply);
    return reply;
}

} // namespace server
