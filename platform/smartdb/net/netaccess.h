// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdbnetaccess.h"
#include "http/client.h"
#include "smartdb/lasterror.h"
#include "smartdb/net/statetable.h"
#include "smartdb/net/taskqueue.h"

#include <functional>

namespace ZRSmartDB
{

/// The server queries of the contract.
class NetAccess final : public CZRDBNetAccess
{
public:
    NetAccess(http::Client& client, StateTable& states, TaskQueue& queue, LastError& lastError);

    [[nodiscard]] Concurrency::task<std::wstring>
    GetStatusByProjId(const ZRSmartFormat::SZRFTGuid& guid, std::shared_ptr<std::wstring> reply) override;
    [[nodiscard]] Concurrency::task<std::wstring> GetProjType(const ZRSmartFormat::SZRFTGuid& guid,
                                                              std::shared_ptr<std::wstring> reply) override;
    [[nodiscard]] Concurrency::task<std::wstring>
    GetCountryList(std::shared_ptr<std::wstring> reply) override;
    [[nodiscard]] Concurrency::task<std::wstring>
    GetAdministrativeRegion(const std::wstring& id, std::shared_ptr<std::wstring> reply) override;
    [[nodiscard]] Concurrency::task<std::wstring> CanAppIdUpload(const std::wstring& appId) override;
    [[nodiscard]] Concurrency::task<std::wstring>
    DownloadFileAry(const std::vector<std::wstring>& serverPaths,
                    const std::vector<std::wstring>& localPaths) override;
    void LoginByToken(const std::wstring& token) override;
    void SetCookie(const std::wstring& cookies) override;

private:
    /// Runs `query` on a thread of the library; what it gives becomes the task's result.
    [[nodiscard]] Concurrency::task<std::wstring> start(std::function<http::Fault()> query);
    [[nodiscard]] http::Fault fetchText(const std::string& path, std::wstring& text);
    [[nodiscard]] http::Fault fetchFile(const std::wstring& serverPath, const std::wstring& localPath);

    http::Client& m_client;
    StateTable& m_states;
    TaskQueue& m_queue;
    LastError& m_lastError;
};

} // namespace ZRSmartDB
