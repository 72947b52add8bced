// SPDX-License-Identifier: MIT
#include "server/web/page.h"

#include "server/web/assets.h"
#include "server/web/html.h"
#include "wire/digest.h"

#include <algorithm>
#include <functional>
#include <map>

namespace server
{

namespace
{

/// Everything that a page needs comes from this server, and nothing of it may be put into another site.
constexpr const char* policy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

/// The address of an asset, relative to /web. It names the content, so browsers may keep it for ever.
std::string AssetAddress(const Asset& asset)
{
    return "assets/" + std::string(asset.name) +
           "?v=" + wire::ToHex(wire::DigestOf(asset.bytes)).substr(0, 12);
}

const std::string& AssetAddress(std::string_view name)
{
    static const auto addresses = [] {
        std::map<std::string, std::string, std::less<>> made;
        for (const auto& asset : Assets())
            made.emplace(asset.name, AssetAddress(asset));
        return made;
    }();
    return addresses.find(name)->second;
}

std::string ScriptElement(const std::string& root, std::string_view name)
{
    return "<script src=\"" + root + AssetAddress(name) + "\" defer></script>\n";
}

std::string UpwardsBy(std::size_t depth)
{
    std::string path;
    for (std::size_t i = 0; i < depth; ++i)
        path += "../";
    return path;
}

std::string Head(const PageFrame& frame, const std::string& root)
{
    std::string head = "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                       Escaped(frame.title) +
                       " - Torvo</title>\n"
                       "<meta name=\"viewport\" content=\"width=device-width\">\n"
                       "<meta name=\"color-scheme\" content=\"light dark\">\n"
                       "<link rel=\"icon\" href=\"" +
                       root + AssetAddress("icon.svg") + "\">\n<link rel=\"stylesheet\" href=\"" + root +
                       AssetAddress("style.css") + "\">\n" + ScriptElement(root, "page.js");
    if (!frame.guard.empty())
        head += "<meta name=\"guard\" content=\"" + Escaped(frame.guard) + "\">\n";
    if (!frame.script.empty())
        head += ScriptElement(root, frame.script);
    return head + "</head>\n";
}

} // namespace

Reply PageReply(unsigned status, const PageFrame& frame, std::string_view content)
{
    const std::string root = UpwardsBy(frame.depth);
    Reply reply;
    reply.status = status;
    reply.contentType = "text/html; charset=utf-8";
    reply.body = Head(frame, root) + "<body>\n<header class=\"bar\">";
    if (frame.loginName.empty())
        reply.body += "<span>Torvo</span>";
    else
        reply.body += "<a href=\"" + root + "console\">Torvo 控制台</a><span class=\"who\"><bdi>" +
                      Escaped(frame.loginName) + "</bdi></span>";
    reply.body += "</header>\n<main>\n";
    if (frame.isBelowConsole)
        reply.body += "<p class=\"back\"><a href=\"" + root + "console\">返回工程列表</a></p>\n";
    reply.body += "<h1><bdi>" + Escaped(frame.title) + "</bdi></h1>\n";
    reply.body += content;
    reply.body += "</main>\n</body>\n</html>\n";
    reply.headers.emplace_back("Cache-Control", "no-store");
    AddGuards(reply);
    return reply;
}

Reply NoticeReply(unsigned status, const PageFrame& frame, std::string_view why, std::string_view whatToDo)
{
    const std::string content = "<p>" + Escaped(why) + "</p>\n<p>" + Escaped(whatToDo) + "</p>\n";
    return PageReply(status, frame, content);
}

void AddGuards(Reply& reply)
{
    reply.headers.emplace_back("Content-Security-Policy", policy);
    reply.headers.emplace_back("X-Content-Type-Options", "nosniff");
    reply.headers.emplace_back("Referrer-Policy", "no-referrer");
    reply.headers.emplace_back("Cross-Origin-Opener-Policy", "same-origin");
    reply.headers.emplace_back("Cross-Origin-Resource-Policy", "same-origin");
}

Reply AssetReply(std::string_view name)
{
    const auto assets = Assets();
    const auto asset = std::find_if(assets.begin(), assets.end(),
                                    [&](const Asset& candidate) { return candidate.name == name; });
    if (asset == assets.end()) {
        auto missing = EmptyReply(404);
        AddGuards(missing);
        return missing;
    }
    Reply reply;
    reply.contentType = asset->type;
    reply.body = asset->bytes;
    reply.headers.emplace_back("Cache-Control", "public, max-age=31536000, immutable");
    AddGuards(reply);
    return reply;
}

} // namespace server
