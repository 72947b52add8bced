// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "ZRSmartDB/zrprojupgrader.h"
#include "project/guidtext.h"

#include <exception>
#include <optional>
#include <set>

#include <QDebug>
#include <QStringList>

namespace TorvoEditor
{

namespace
{

// The numbers of CGridViewData::StateTypeEnum, which lies above this folder.
constexpr int localState = 0;
constexpr int updateState = 3;
constexpr int uploadFailedState = 5;

/// The server's bare word about a project; nothing when it cannot be had, which is logged.
std::optional<std::wstring> ServerWord(ZRSmartDB::IZRDatabase& database, const QString& guid)
{
    const auto reply = std::make_shared<std::wstring>();
    const std::wstring error = database.GetNetAccess()->GetStatusByProjId(KeyOf(guid), reply).get();
    if (error.empty())
        return *reply;
    qDebug() << "CProjectMgr::GetProjStatus error:" << QString::fromStdWString(error);
    return std::nullopt;
}

/// Whatever `query` throws, a cancelled request above all, is a failure and a line in the log.
template<class Query>
bool Guarded(Query query)
{
    try {
        return query();
    } catch (const std::exception& exception) {
        qDebug() << "CProjectMgr::GetProjStatus GetProjStatus error: " << exception.what();
        return false;
    }
}

/// What the server's word says; the state as it was for a word that nobody knows.
int ServerStateOf(const std::wstring& word, int state)
{
    if (word == L"0")
        return SS_Uploading;
    if (word == L"-1")
        return SS_UploadFailed;
    if (word == L"2")
        return SS_None;
    if (word == L"1")
        return SS_Normal;
    if (word == L"3")
        return SS_Converting;
    return state;
}

} // namespace

bool CProjectMgr::GetProjStatus(const QString& guid, int& state)
{
    return m_projectDB != nullptr && Guarded([&] { return readProjStatus(guid, state); });
}

bool CProjectMgr::readProjStatus(const QString& guid, int& state)
{
    const auto word = ServerWord(*m_projectDB, guid);
    if (!word)
        return false;
    if (*word == L"-1") {
        state = uploadFailedState;
        return true;
    }
    if (*word == L"2") {
        state = localState;
        return true;
    }
    if (!IsEmptyOrgNode(m_orgRoot) && hasUpdatedBimProject(guid)) {
        state = updateState;
        return true;
    }
    int value = 0;
    if (!m_projectDB->GetProjStatus(KeyOf(guid), m_dataPath.toStdWString(), value))
        return false;
    state = value;
    return true;
}

int CProjectMgr::GetProjStatus(const QString& guid)
{
    int state = localState;
    GetProjStatus(guid, state);
    return state;
}

QString CProjectMgr::GetProjStatusIcon(const QString& guid)
{
    static const QStringList icons = {
        QStringLiteral("qrc:/images/state_ic_unmatched.png"),
        QStringLiteral("qrc:/images/state_ic_matched.png"),
        QStringLiteral("qrc:/images/modify.png"),
        QStringLiteral("qrc:/images/update.png"),
        QStringLiteral("qrc:/images/conflict.png"),
        QStringLiteral("qrc:/images/fail.png"),
    };
    return icons.value(GetProjStatus(guid));
}

bool CProjectMgr::GetServerProjStatus(const QString& guid, int& state)
{
    return m_projectDB != nullptr && Guarded([&] { return readServerProjStatus(guid, state); });
}

bool CProjectMgr::readServerProjStatus(const QString& guid, int& state)
{
    const auto word = ServerWord(*m_projectDB, guid);
    if (!word)
        return false;
    state = ServerStateOf(*word, state);
    return true;
}

int CProjectMgr::GetServerProjStatus(const QString& guid)
{
    int state = SS_None;
    GetServerProjStatus(guid, state);
    return state;
}

bool CProjectMgr::NeedUpgrade(const QString& guid) const
{
    auto* upgrader = m_projectDB != nullptr ? m_projectDB->GetUpgrader() : nullptr;
    return upgrader != nullptr && upgrader->NeedUpgrade(KeyOf(guid), m_dataPath.toStdWString());
}

QSet<QString> CProjectMgr::bimSet(const QString& guid) const
{
    QSet<QString> guids;
    if (GetProject(guid) == nullptr)
        return guids;
    std::set<ZRSmartFormat::SZRFTGuid> keys;
    m_projectDB->GetBimProj(KeyOf(guid), m_dataPath.toStdWString(), keys);
    for (const auto& key : keys)
        guids.insert(TextOf(key));
    return guids;
}

bool CProjectMgr::hasUpdatedBimProject(const QString& guid)
{
    const std::wstring dataFolder = m_dataPath.toStdWString();
    const auto guids = bimSet(guid);
    for (const auto& bimProject : guids) {
        int value = 0;
        static_cast<void>(m_projectDB->GetProjStatus(KeyOf(bimProject), dataFolder, value));
        if (value == updateState)
            return true;
    }
    return false;
}

} // namespace TorvoEditor
