// SPDX-License-Identifier: MIT
#include "smartdb/net/netaccess.h"

#include "smartdb/failure.h"
#include "smartdb/text.h"

#include <atomic>
#include <utility>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

Failure BadReply(const std::string& what)
{
    return {http::faultcode::badReply, "the project server answered with something that is no " + what};
}

/// Splits "/proj_<guid>/<file>" and gives the path of the request for the file.
std::string FilePath(const std::string& serverPath)
{
    constexpr std::string_view prefix = "/proj_";
    const auto slash = serverPath.find('/', prefix.size());
    if (!serverPath.starts_with(prefix) || slash == std::string::npos || slash == prefix.size() ||
        slash + 1 == serverPath.size())
        throw Failure(localcode::badInput, "no file of a project has the path " + serverPath);
    return "/api/v1/projects/" + http::EncodedName(serverPath.substr(prefix.size(), slash - prefix.size())) +
           "/files/" + http::EncodedName(serverPath.substr(slash + 1));
}

/// A new file that appears under its name when it is whole, and goes when it is not.
class ArrivingFile
{
public:
    ArrivingFile(Disk& disk, std::filesystem::path file)
        : m_disk(disk)
        , m_file(std::move(file))
        , m_half(m_file)
    {
        static std::atomic<unsigned> number = 0;
        m_half += '.' + std::to_string(++number) + ".tmp";
        m_disk.makeFolder(m_file.parent_path());
        m_output = m_disk.create(m_half, 0644);
    }
    ArrivingFile(const ArrivingFile&) = delete;
    ArrivingFile& operator=(const ArrivingFile&) = delete;
    ~ArrivingFile()
    {
        m_output.reset();
        std::error_code ignored;
        std::filesystem::remove(m_half, ignored);
    }

    void write(std::span<const std::byte> bytes) { m_output->write(bytes); }

    void finish()
    {
        m_output->close();
        m_disk.move(m_half, m_file);
    }

private:
    Disk& m_disk;
    std::filesystem::path m_file;
    std::filesystem::path m_half;
    std::unique_ptr<OutputFile> m_output;
};

} // namespace

NetAccess::NetAccess(http::Client& client, StateTable& states, TaskQueue& queue, std::shared_ptr<Disk> disk)
    : m_client(client)
    , m_states(states)
    , m_queue(queue)
    , m_disk(std::move(disk))
{
}

Concurrency::task<std::wstring> NetAccess::start(std::function<void()> query)
{
    const Concurrency::task_completion_event<std::wstring> done;
    Concurrency::task<std::wstring> task(done);
    m_queue.post([done, query = std::move(query)] {
        http::Fault fault;
        try {
            query();
        } catch (const Failure& failure) {
            fault = failure.fault();
        } catch (const std::exception& exception) {
            fault = {localcode::badInput, exception.what()};
        }
        if (fault.code == http::faultcode::cancelled)
            done.set_exception(Concurrency::task_canceled());
        else
            done.set(WideOf(http::ToJson(fault)));
    });
    return task;
}

std::string NetAccess::fetch(const std::string& path) const
{
    auto reply = m_client.send({.path = path});
    if (reply.fault)
        throw Failure(reply.fault);
    return std::move(reply.body);
}

Concurrency::task<std::wstring> NetAccess::GetStatusByProjId(const ZRSmartFormat::SZRFTGuid& guid,
                                                             std::shared_ptr<std::wstring> reply)
{
    const std::string text = GuidTextOf(guid);
    if (const auto answer = m_states.known(text)) {
        // No thread needs to be woken, which counts when every project asks.
        if (!answer->fault)
            *reply = WideOf(answer->state.status);
        const Concurrency::task_completion_event<std::wstring> done;
        done.set(WideOf(http::ToJson(answer->fault)));
        return Concurrency::task<std::wstring>(done);
    }
    return start([this, text, reply = std::move(reply)] {
        const auto answer = m_states.find(text);
        if (answer.fault)
            throw Failure(answer.fault);
        *reply = WideOf(answer.state.status);
    });
}

Concurrency::task<std::wstring> NetAccess::GetProjType(const ZRSmartFormat::SZRFTGuid& guid,
                                                       std::shared_ptr<std::wstring> reply)
{
    return start(
        [this, path = "/api/v1/projects/" + http::EncodedName(GuidTextOf(guid)), reply = std::move(reply)] {
            const auto project = json::parse(fetch(path), nullptr, false);
            if (!project.is_object() || !project.contains("type") || !project["type"].is_string())
                throw BadReply("project");
            *reply = WideOf(project["type"].get<std::string>());
        });
}

void NetAccess::fetchList(const std::string& path, std::wstring& text) const
{
    const auto body = fetch(path);
    if (!json::parse(body, nullptr, false).is_array())
        throw BadReply("list");
    text = WideOf(body);
}

Concurrency::task<std::wstring> NetAccess::GetCountryList(std::shared_ptr<std::wstring> reply)
{
    return start([this, reply = std::move(reply)] { fetchList("/api/v1/countries", *reply); });
}

Concurrency::task<std::wstring> NetAccess::GetAdministrativeRegion(const std::wstring& id,
                                                                   std::shared_ptr<std::wstring> reply)
{
    return start([this, path = "/api/v1/regions?parent=" + http::EncodedName(Utf8Of(id)),
                  reply = std::move(reply)] { fetchList(path, *reply); });
}

Concurrency::task<std::wstring> NetAccess::CanAppIdUpload(const std::wstring& appId)
{
    return start([this, id = Utf8Of(appId)] {
        // An account without applications has no say of theirs to wait for.
        if (id.empty())
            return;
        const auto permission =
            json::parse(fetch("/api/v1/applications/" + http::EncodedName(id) + "/upload"), nullptr, false);
        if (!permission.is_object() || !permission.contains("allowed") || !permission["allowed"].is_boolean())
            throw BadReply("permission");
        if (permission["allowed"].get<bool>())
            return;
        const auto reason = permission.find("msg");
        throw Failure(localcode::notOffered, reason != permission.end() && reason->is_string()
                                                 ? reason->get<std::string>()
                                                 : "projects of this application may not be uploaded");
    });
}

Concurrency::task<std::wstring> NetAccess::DownloadFileAry(const std::vector<std::wstring>& serverPaths,
                                                           const std::vector<std::wstring>& localPaths)
{
    return start([this, serverPaths, localPaths] {
        if (serverPaths.size() != localPaths.size())
            throw Failure(localcode::badInput,
                          "each file needs one path on the server and one on this machine");
        for (std::size_t i = 0; i < serverPaths.size(); ++i)
            fetchFile(Utf8Of(serverPaths[i]), PathOf(localPaths[i]));
    });
}

void NetAccess::fetchFile(const std::string& serverPath, const std::filesystem::path& file) const
{
    ArrivingFile arriving(*m_disk, file);
    std::optional<Failure> failure;
    http::Request request{.path = FilePath(serverPath), .timeout = std::chrono::seconds(0)};
    request.largestReply = SIZE_MAX;
    request.take = [&](std::span<const std::byte> bytes) {
        try {
            arriving.write(bytes);
            return true;
        } catch (const Failure& cannotWrite) {
            failure = cannotWrite;
            return false;
        }
    };
    const auto reply = m_client.send(request);
    if (failure)
        throw Failure(*failure);
    if (reply.fault)
        throw Failure(reply.fault);
    arriving.finish();
}

void NetAccess::LoginByToken(const std::wstring& token)
{
    m_client.setToken(Utf8Of(token));
    m_states.startAnew();
}

void NetAccess::SetCookie(const std::wstring& cookies)
{
    m_client.setCookies(Utf8Of(cookies));
    m_states.startAnew();
}

} // namespace ZRSmartDB
