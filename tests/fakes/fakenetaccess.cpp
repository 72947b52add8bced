// SPDX-License-Identifier: MIT
#include "fakes/fakenetaccess.h"

#include "fakes/calls.h"

#include <stdexcept>

namespace Fakes
{

namespace
{

QString Text(const ZRSmartFormat::SZRFTGuid& guid)
{
    return QString::fromStdWString(ZRSmartFormat::GuidToText(guid));
}

QString Text(const std::vector<std::wstring>& texts)
{
    QStringList list;
    for (const auto& text : texts)
        list.append(QString::fromStdWString(text));
    return list.join(QLatin1Char(','));
}

} // namespace

NetAccess::Task NetAccess::answer(const QString& query, const QString& argument,
                                  const std::shared_ptr<std::wstring>& text)
{
    Called(QStringLiteral("%1(%2)").arg(query, argument));
    Reply reply;
    reply.error = QStringLiteral("unreachable");
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_replies.find({query, argument});
        if (found != m_replies.end())
            reply = found->second;
    }
    const Concurrency::task_completion_event<std::wstring> event;
    Task task(event);
    if (reply.isCanceled)
        event.set_exception(Concurrency::task_canceled());
    else if (!reply.exception.isEmpty())
        event.set_exception(std::runtime_error(reply.exception.toStdString()));
    else {
        if (text && reply.error.isEmpty())
            *text = reply.text.toStdWString();
        event.set(reply.error.toStdWString());
    }
    return task;
}

NetAccess::Task NetAccess::GetStatusByProjId(const ZRSmartFormat::SZRFTGuid& guid,
                                             std::shared_ptr<std::wstring> reply)
{
    return answer(QStringLiteral("GetStatusByProjId"), Text(guid), reply);
}

NetAccess::Task NetAccess::GetProjType(const ZRSmartFormat::SZRFTGuid& guid,
                                       std::shared_ptr<std::wstring> reply)
{
    return answer(QStringLiteral("GetProjType"), Text(guid), reply);
}

NetAccess::Task NetAccess::GetCountryList(std::shared_ptr<std::wstring> reply)
{
    return answer(QStringLiteral("GetCountryList"), QString(), reply);
}

NetAccess::Task NetAccess::GetAdministrativeRegion(const std::wstring& id,
                                                   std::shared_ptr<std::wstring> reply)
{
    return answer(QStringLiteral("GetAdministrativeRegion"), QString::fromStdWString(id), reply);
}

NetAccess::Task NetAccess::CanAppIdUpload(const std::wstring& appId)
{
    return answer(QStringLiteral("CanAppIdUpload"), QString::fromStdWString(appId), nullptr);
}

NetAccess::Task NetAccess::DownloadFileAry(const std::vector<std::wstring>& serverPaths,
                                           const std::vector<std::wstring>& localPaths)
{
    Called(QStringLiteral("DownloadFileAry to %1").arg(Text(localPaths)));
    return answer(QStringLiteral("DownloadFileAry"), Text(serverPaths), nullptr);
}

void NetAccess::LoginByToken(const std::wstring& token)
{
    Called(QStringLiteral("LoginByToken(%1)").arg(QString::fromStdWString(token)));
}

void NetAccess::SetCookie(const std::wstring& cookies)
{
    Called(QStringLiteral("SetCookie(%1)").arg(QString::fromStdWString(cookies)));
}

void NetAccess::setReply(const QString& query, const QString& argument, const Reply& reply)
{
    const std::lock_guard lock(m_mutex);
    m_replies[{query, argument}] = reply;
}

void NetAccess::forgetReplies()
{
    const std::lock_guard lock(m_mutex);
    m_replies.clear();
}

} // namespace Fakes
