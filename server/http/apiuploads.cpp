// SPDX-License-Identifier: MIT
#include "server/accounts/token.h"
#include "server/http/api.h"
#include "server/projects/uploads.h"
#include "wire/manifestdelta.h"
#include "wire/message.h"

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;
using Reason = UploadRefused::Reason;

constexpr std::size_t longestGuid = 128;
constexpr std::size_t longestRevision = 64;
constexpr std::size_t longestName = 4096;
constexpr std::size_t longestText = 1U << 20U;

Reply RefusalReply(const UploadRefused& refusal)
{
    switch (refusal.reason()) {
    case Reason::notAllowed:
        return ErrorReply(403, code::notAllowed, refusal.what());
    case Reason::busy:
        return ErrorReply(409, code::busy, refusal.what());
    case Reason::converting:
        return ErrorReply(409, code::converting, refusal.what());
    case Reason::conflict:
        return ErrorReply(409, code::conflict, refusal.what());
    case Reason::unknownBase:
        return ErrorReply(409, code::unknownBase, refusal.what());
    case Reason::gone:
        return ErrorReply(404, code::uploadGone, refusal.what());
    case Reason::incomplete:
        return ErrorReply(409, code::incomplete, refusal.what());
    case Reason::badContent:
        break;
    }
    return ErrorReply(400, code::badRequest, refusal.what());
}

[[noreturn]] void RefuseContent(const std::string& words)
{
    throw UploadRefused(Reason::badContent, words);
}

std::string TextAt(const json& object, const char* key, std::size_t longest)
{
    const auto value = object.find(key);
    if (value == object.end() || !value->is_string())
        RefuseContent(std::string("the text \"") + key + "\" is missing");
    auto text = value->get<std::string>();
    if (text.size() > longest)
        RefuseContent(std::string("the text \"") + key + "\" is too long");
    return text;
}

json AttributesOf(const json& given)
{
    json attributes = json::object();
    if (!given.is_object())
        RefuseContent("attributes that are no object");
    for (const auto& [key, value] : given.items()) {
        if (!value.is_string())
            RefuseContent("an attribute that is no text");
        attributes[key] = value;
    }
    return attributes;
}

/// What the list of projects says of it; made anew so that nothing unknown gets in.
std::string RecordOf(const json& given)
{
    json record;
    for (const char* key : {"longitude", "latitude", "iotCode", "earthConfig", "proj4"})
        record[key] = TextAt(given, key, longestText);
    record["attributes"] = AttributesOf(given.value("attributes", json::object()));
    auto text = record.dump();
    if (text.size() > longestText)
        RefuseContent("too many attributes");
    return text;
}

Project ProjectOf(const std::string& guid, const json& given, std::int64_t account)
{
    if (!given.is_object())
        RefuseContent("an upload without its project");
    Project project;
    project.guid = guid;
    project.type = TextAt(given, "type", longestName);
    project.name = TextAt(given, "name", longestName);
    project.parent = TextAt(given, "parent", longestGuid);
    const bool isModel = project.type == "MODEL";
    if (!isModel && project.type != "CIM" && project.type != "BIM")
        RefuseContent("a project of an unknown type");
    if (isModel == project.parent.empty())
        RefuseContent("a model needs the project that it belongs to, and nothing else has one");
    project.record = RecordOf(given);
    project.owner = account;
    return project;
}

Uploads::Wish WishOf(const std::string& guid, const wire::Message& message, std::int64_t account)
{
    const auto given = json::parse(message.head, nullptr, false);
    if (!given.is_object())
        RefuseContent("an upload that does not tell what it is of");
    Uploads::Wish wish;
    wish.base = TextAt(given, "base", longestRevision);
    const auto against = TextAt(given, "against", longestRevision);
    wish.against = wire::DigestFromHex(against);
    if (!wish.against && !against.empty())
        RefuseContent("files that are told against no revision");
    const auto force = given.find("force");
    wish.isForced = force != given.end() && force->is_boolean() && force->get<bool>();
    const auto ahead = given.find("ahead");
    wish.isAhead = ahead != given.end() && ahead->is_boolean() && ahead->get<bool>();
    if (wish.isAhead && !message.body.empty())
        RefuseContent("files that are told now and later");
    wish.project = ProjectOf(guid, given.value("project", json()), account);
    wish.delta = message.body;
    return wish;
}

bool IsGuid(const std::string& guid)
{
    return !guid.empty() && guid.size() <= longestGuid && wire::PathRefusal("proj_" + guid).empty() &&
           guid.find('/') == std::string::npos;
}

} // namespace

Reply Api::routeUpload(const Request& request, const Session& session)
{
    const auto& path = request.path; // projects, guid, "uploads", id, what
    const auto wrongMethod = [] { return ErrorReply(405, code::wrongMethod, "this cannot be done here"); };
    try {
        if (path.size() == 3)
            return request.method == "POST" ? beginUpload(request, session) : wrongMethod();
        if (path.size() == 4)
            return request.method == "DELETE" ? abandonUpload(path[1], path[3]) : wrongMethod();
        if (path.size() == 5 && path[4] == "pieces")
            return request.method == "POST" ? uploadPieces(path[1], path[3], request.body) : wrongMethod();
        if (path.size() == 5 && path[4] == "wanted")
            return request.method == "POST" ? wantedPieces(path[1], path[3], request.body) : wrongMethod();
        if (path.size() == 5 && path[4] == "commit")
            return request.method == "POST" ? commitUpload(path[1], path[3]) : wrongMethod();
    } catch (const UploadRefused& refusal) {
        return RefusalReply(refusal);
    }
    return ErrorReply(404, code::missing, "there is no such thing here");
}

Reply Api::beginUpload(const Request& request, const Session& session)
{
    const auto& guid = request.path[1];
    if (!IsGuid(guid))
        RefuseContent("no project can have this key");
    const auto message = wire::ReadMessage(request.body);
    if (!message)
        RefuseContent("a damaged message");
    const auto token = TokenName(std::string_view(request.authorization).substr(7));
    const auto begun = m_uploads.begin(token, WishOf(guid, *message, session.account));
    Reply reply;
    reply.contentType = "application/x-torvo-upload";
    reply.body = wire::WriteMessage(json{{"upload", begun.id}}.dump(), wire::EncodeBits(begun.missing));
    return reply;
}

Reply Api::wantedPieces(const std::string& guid, const std::string& id, const std::string& names)
{
    const auto pieces = wire::DecodePieces(names);
    if (const auto* refusal = std::get_if<wire::Refusal>(&pieces))
        RefuseContent(refusal->reason);
    Reply reply;
    reply.contentType = "application/x-torvo-bits";
    reply.body = wire::EncodeBits(m_uploads.wanted(guid, id, std::get<std::vector<wire::Piece>>(pieces)));
    return reply;
}

Reply Api::uploadPieces(const std::string& guid, const std::string& id, const std::string& stream)
{
    m_uploads.addPieces(guid, id, stream);
    return EmptyReply(204);
}

Reply Api::commitUpload(const std::string& guid, const std::string& id)
{
    const auto root = m_uploads.commit(guid, id);
    return JsonReply(200, json{{"head", wire::ToHex(root)}}.dump());
}

Reply Api::abandonUpload(const std::string& guid, const std::string& id)
{
    m_uploads.abandon(guid, id);
    return EmptyReply(204);
}

} // namespace server
