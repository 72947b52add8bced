// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdbnetaccess.h"

#include <map>
#include <mutex>

#include <QString>

namespace Fakes
{

/// How one server query ends.
struct Reply {
    QString text;            ///< what goes into the shared text
    QString error;           ///< the task's result; not empty leaves the shared text alone
    bool isCanceled = false; ///< the task is cancelled instead
    QString exception;       ///< not empty: the task throws a std::runtime_error of this text instead
};

/// Server queries with replies that a test sets, answered at once. A query without a reply ends in the error
/// "unreachable". Replies are kept by the query's name and its argument, for example "GetStatusByProjId" and
/// a guid. Any thread.
class NetAccess final : public ZRSmartDB::CZRDBNetAccess
{
public:
    using Task = Concurrency::task<std::wstring>;

    Task GetStatusByProjId(const ZRSmartFormat::SZRFTGuid& guid,
                           std::shared_ptr<std::wstring> reply) override;
    Task GetProjType(const ZRSmartFormat::SZRFTGuid& guid, std::shared_ptr<std::wstring> reply) override;
    Task GetCountryList(std::shared_ptr<std::wstring> reply) override;
    Task GetAdministrativeRegion(const std::wstring& id, std::shared_ptr<std::wstring> reply) override;
    Task CanAppIdUpload(const std::wstring& appId) override;
    Task DownloadFileAry(const std::vector<std::wstring>& serverPaths,
                         const std::vector<std::wstring>& localPaths) override;
    void LoginByToken(const std::wstring& token) override;
    void SetCookie(const std::wstring& cookies) override;

    void setReply(const QString& query, const QString& argument, const Reply& reply);
    void forgetReplies();

private:
    Task answer(const QString& query, const QString& argument, const std::shared_ptr<std::wstring>& text);

    std::mutex m_mutex; ///< guards the replies
    std::map<std::pair<QString, QString>, Reply> m_replies;
};

} // namespace Fakes
