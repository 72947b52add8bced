// SPDX-License-Identifier: MIT
#include "core/homeapp.h"

#include "EditorCommon/kyvapi.h"
#include "TorvoSDK/torvosession.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "convert/bimmgr.h"
#include "convert/floorinfomgr.h"
#include "convert/floormatchedctrl.h"
#include "convert/serviceconvertmgr.h"
#include "core/messageboxmgr.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "tabs/tabmgr.h"
#include "tabs/websdkmgr.h"
#include "view/context/editorcontrol/editorcontrol.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/infocardcontroller.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QQmlContext>

namespace TorvoEditor
{

namespace
{

/// A manager as the table knows it.
struct MgrRow {
    CHomeApp::Place place;
    std::type_index type;
    std::shared_ptr<IMgrObj> (*make)();
};

template<class Manager>
MgrRow Row(CHomeApp::Place place)
{
    return {place, typeid(Manager), []() -> std::shared_ptr<IMgrObj> { return std::make_shared<Manager>(); }};
}

/// All managers, in the order of creation: a constructor may rely on the managers above it only. Beside each
/// its place in the passes: priority 3 is server access, 4 the local store, 5 controllers, 6 what builds on
/// those.
const std::vector<MgrRow>& MgrTable()
{
    // clang-format off
    static const std::vector<MgrRow> table = {
        Row<CInfoCardController>({5, 2}),
        Row<CGridViewController>({5, 5}),
        Row<CProjectMgr>({3, 1}),
        Row<CLocalProjectInfoMgr>({4, 1}),
        Row<CEditorControl>({5, 6}),
        Row<CTabMgr>({5, 1}),
        Row<CMessageBoxMgr>({5, 7}),
        Row<CBimMgr>({5, 8}),
        Row<CWebSDKMgr>({5, 4}),
        Row<CServiceConvertMgr>({6, 1}),
        Row<CFloorInfoMgr>({5, 3}),
        Row<CFloorMatchedCtrl>({6, 2}),
    };
    // clang-format on
    return table;
}

void SetSessionProperties(const TorvoSDK::CTorvoSession& session)
{
    auto* app = QCoreApplication::instance();
    app->setProperty("token", QString::fromStdWString(session.token));
    app->setProperty("sdkAddr", QString::fromStdWString(session.sdkAddr));
    app->setProperty("serverAddr", QString::fromStdWString(session.serverAddr));
    app->setProperty("appVer", QString::fromStdWString(session.appVer));
    app->setProperty("loginName", QString::fromStdWString(session.loginName));
    app->setProperty("cookies", QString::fromStdWString(session.cookies));
}

/// An address that consists of the path alone: the host had no server to put before it.
bool IsPathWithoutServer(const std::wstring& address)
{
    return address == L"/torvo" || address == L"/api/torvo";
}

bool LogIn(const TorvoSDK::CTorvoSession& session)
{
    EditorCommon::KYVApi::init(QString::fromStdWString(session.serverAddr),
                               QString::fromStdWString(session.token));
    auto* director = ZRSmartDB::GetIDBDirector();
    if (!director->SetServer(session.serverAddr))
        return false;
    auto* database = director->GetDatabase();
    database->SetUp(0);
    database->GetNetAccess()->LoginByToken(session.token);
    database->GetNetAccess()->SetCookie(session.cookies);
    return true;
}

} // namespace

CHomeApp& CHomeApp::instance()
{
    static CHomeApp app;
    return app;
}

bool CHomeApp::Init(const TorvoSDK::CTorvoSession& session)
{
    SetSessionProperties(session);
    if (IsPathWithoutServer(session.serverAddr)) {
        qDebug() << "CHomeApp::Init serverAddr is Invalid" << QString::fromStdWString(session.sdkAddr);
        return false;
    }
    if (!LogIn(session))
        return false;
    createMgrs();
    ForEachMgr([](IMgrObj* mgr) { mgr->Init(); });
    if (auto* editorControl = GetMgr<CEditorControl>())
        editorControl->setIsBimSdk(session.isBimSdk);
    return true;
}

void CHomeApp::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("appPath"),
                                QDir(QCoreApplication::applicationDirPath()).absolutePath());
    ForEachMgr([context](IMgrObj* mgr) { mgr->RegisterContext(context); });
}

void CHomeApp::OnViewReady()
{
    ForEachMgr([](IMgrObj* mgr) { mgr->OnViewReady(); });
}

void CHomeApp::UnInit()
{
    ForEachMgr([](IMgrObj* mgr) { mgr->UnInit(); });
    while (!m_mgrs.empty()) {
        const auto last = std::move(m_mgrs.back().mgr);
        m_mgrs.pop_back();
    }
}

void CHomeApp::ForEachMgr(const std::function<void(IMgrObj*)>& visit) const
{
    for (const auto& entry : m_mgrs)
        visit(entry.mgr.get());
}

std::shared_ptr<IMgrObj> CHomeApp::findMgr(std::type_index type) const
{
    const auto found =
        std::find_if(m_mgrs.begin(), m_mgrs.end(), [&](const Entry& entry) { return entry.type == type; });
    return found == m_mgrs.end() ? nullptr : found->mgr;
}

void CHomeApp::createMgrs()
{
    for (const auto& row : MgrTable())
        putMgr({row.place, row.type, row.make()});
}

void CHomeApp::putMgr(Entry entry)
{
    const auto place =
        std::lower_bound(m_mgrs.begin(), m_mgrs.end(), entry,
                         [](const Entry& left, const Entry& right) { return left.place < right.place; });
    if (place != m_mgrs.end() && place->type == entry.type)
        *place = std::move(entry);
    else
        m_mgrs.insert(place, std::move(entry));
}

} // namespace TorvoEditor
