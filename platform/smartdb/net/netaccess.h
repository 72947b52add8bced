// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdbnetaccess.h"
#include "http/client.h"
#include "smartdb/disk/disk.h"
#include "smartdb/net/statetable.h"
#include "smartdb/net/taskqueue.h"

#include <functional>
#include <memory>

namespace ZRSmartDB
{

/// The server queries of the contract. What it is given must outlive it; the queue must be stopped before any
/// of that goes.
class NetAccess final : public CZRDBNetAccess
{
public:
    NetAccess(http::Client& client, StateTable& states, TaskQueue& queue, std::shared_ptr<Disk> disk);

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
    /// Runs `query` on a thread of the library; what it throws becomes the task's result.
    [[nodiscard]] Concurrency::task<std::wstring> start(std::function<void()> query);

    /// The body of a successful answer. Throws Failure.
    [[nodiscard]] std::string fetch(const std::string& path) const;
    void fetchList(const std::string& path, std::wstring& text) const;
    void fetchFile(const std::string& serverPath, const std::filesystem::path& file) const;

    http::Client& m_client;
    StateTable& m_states;
    TaskQueue& m_queue;
    const std::shared_ptr<Disk> m_disk;
};

} // namespace ZRSmartDB
