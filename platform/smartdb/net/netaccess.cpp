// SPDX-License-Identifier: MIT
#include "smartdb/net/netaccess.h"

#include "smartdb/text.h"

#include <fstream>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

/// Splits "/proj_<guid>/<file>".
bool SplitServerPath(const std::string& path, std::string& guid, std::string& file)
{
    constexpr std::string_view prefix = "/proj_";
    const auto slash = path.find('/', prefix.size());
    if (!path.starts_with(prefix) || slash == std::string::npos)
        return false;
    guid = path.substr(prefix.size(), slash - prefix.size());
    file = path.substr(slash + 1);
    return !guid.empty() && !file.empty();
}

/// A file appears whole or not at all.
bool WriteWhole(const std::filesystem::path& file, const std::string& bytes)
{
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    const auto half = file.string() + ".tmp";
    {
        std::ofstream stream(half, std::ios::binary);
        stream << bytes;
        if (!stream.flush()) {
            std::filesystem::remove(half, error);
            return false;
        }
    }
    std::filesystem::rename(half, file, error);
    return !error;
}

} // namespace

NetAccess::NetAccess(http::Client& client, StateTable& states, TaskQueue& queue, LastError& lastError)
    : m_client(client)
    , m_states(states)
    , m_queue(queue)
    , m_lastError(lastError)
{
}

Concurrency::task<std::wstring> NetAccess::start(std::function<http::Fault()> query)
{
    const Concurrency::task_completion_event<std::wstring> done;
    const Concurrency::task<std::wstring> task(done);
    m_queue.post([this, done, query = std::move(query)] {
        const auto fault = query();
        if (fault.code == http::faultcode::cancelled) {
            done.set_exception(Concurrency::task_canceled());
            return;
        }
        if (fault)
            m_lastError.set(fault);
        done.set(WideOf(http::ToJson(fault)));
    });
    return task;
}

Concurrency::task<std::wstring> NetAccess::GetStatusByProjId(const ZRSmartFormat::SZRFTGuid& guid,
                                                             std::shared_ptr<std::wstring> reply)
{
    const std::string text = GuidTextOf(guid);
    if (m_states.isFresh()) {
        // Known already: no thread needs to be woken, which counts when every project asks.
        http::Fault fault;
        const auto state = m_states.find(text, fault);
        if (!fault) {
            *reply = WideOf(state.status);
            const Concurrency::task_completion_event<std::wstring> done;
            done.set(std::wstring());
            return Concurrency::task<std::wstring>(done);
        }
    }
    return start([this, text, reply] {
        http::Fault fault;
        const auto state = m_states.find(text, fault);
        if (!fault)
            *reply = WideOf(state.status);
        return fault;
    });
}

Concurrency::task<std::wstring> NetAccess::GetProjType(const ZRSmartFormat::SZRFTGuid& guid,
                                                       std::shared_ptr<std::wstring> reply)
{
    return start([this, text = GuidTextOf(guid), reply]() -> http::Fault {
        const auto answer = m_client.send({.path = "/api/v1/projects/" + http::EncodedName(text)});
        if (answer.fault)
            return answer.fault;
        const auto project = json::parse(answer.body, nullptr, false);
        if (!project.is_object() || !project.contains("type") || !project["type"].is_string())
            return {http::faultcode::badReply,
                    "the project server answered with something that is no project"};
        *reply = WideOf(project["type"].get<std::string>());
        return {};
    });
}

http::Fault NetAccess::fetchText(const std::string& path, std::wstring& text)
{
    const auto answer = m_client.send({.path = path});
    if (!answer.fault)
        text = WideOf(answer.body);
    return answer.fault;
}

Concurrency::task<std::wstring> NetAccess::GetCountryList(std::shared_ptr<std::wstring> reply)
{
    return start([this, reply] { return fetchText("/api/v1/countries", *reply); });
}

Concurrency::task<std::wstring> NetAccess::GetAdministrativeRegion(const std::wstring& id,
                                                                   std::shared_ptr<std::wstring> reply)
{
    return start([this, path = "/api/v1/regions?parent=" + http::EncodedName(Utf8Of(id)), reply] {
        return fetchText(path, *reply);
    });
}

Concurrency::task<std::wstring> NetAccess::CanAppIdUpload(const std::wstring& appId)
{
    return start([this, id = Utf8Of(appId)]() -> http::Fault {
        if (id.empty())
            return {};
        const auto answer =
            m_client.send({.path = "/api/v1/applications/" + http::EncodedName(id) + "/upload"});
        if (answer.fault)
            return answer.fault;
        const auto permission = json::parse(answer.body, nullptr, false);
        if (!permission.is_object() || !permission.contains("allowed") || !permission["allowed"].is_boolean())
            return {http::faultcode::badReply,
                    "the project server answered with something that is no permission"};
        if (permission["allowed"].get<bool>())
            return {};
        return {localcode::notOffered, permission.value("msg", std::string())};
    });
}

Concurrency::task<std::wstring> NetAccess::DownloadFileAry(const std::vector<std::wstring>& serverPaths,
                                                           const std::vector<std::wstring>& localPaths)
{
    return start([this, serverPaths, localPaths]() -> http::Fault {
        for (std::size_t i = 0; i < serverPaths.size() && i < localPaths.size(); ++i) {
            if (auto fault = fetchFile(serverPaths[i], localPaths[i]))
                return fault;
        }
        return {};
    });
}

http::Fault NetAccess::fetchFile(const std::wstring& serverPath, const std::wstring& localPath)
{
    std::string guid;
    std::string file;
    if (!SplitServerPath(Utf8Of(serverPath), guid, file))
        return {localcode::notHere, "no project's file has the path " + Utf8Of(serverPath)};
    const auto answer = m_client.send(
        {.path = "/api/v1/projects/" + http::EncodedName(guid) + "/files/" + http::EncodedName(file),
         .timeout = std::chrono::seconds(60)});
    if (answer.fault)
        return answer.fault;
    if (!WriteWhole(PathOf(localPath), answer.body))
        return {localcode::cannotWrite, "the file " + Utf8Of(localPath) + " cannot be written"};
    return {};
}

void NetAccess::LoginByToken(const std::wstring& token)
{
    m_client.setToken(Utf8Of(token));
    m_states.forget();
}

void NetAccess::SetCookie(const std::wstring& cookies)
{
    m_client.setCookies(Utf8Of(cookies));
}

} // namespace ZRSmartDB
