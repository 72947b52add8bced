// SPDX-License-Identifier: MIT
#include "core/homeapp.h"

#include "EditorCommon/kyvapi.h"
#include "TorvoSDK/torvosession.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "convert/serviceconvertmgr.h"
#include "core/messageboxmgr.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "tabs/tabmgr.h"
#include "view/context/editorcontrol/editorcontrol.h"
#include "view/context/editorcontrol/gridviewcontroller.h"

#include <algorithm>
#include <iterator>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QQmlContext>

namespace TorvoEditor
{

namespace
{

struct Visit {
    std::uint8_t priority; ///< 3 server access, 4 local store, 5 controllers, 6 what builds on those
    std::type_index type;
};

/// The order in which every pass visits the managers.
const std::vector<Visit>& VisitOrder()
{
    static const std::vector<Visit> order = {
        {3, typeid(CProjectMgr)},         {4, typeid(CLocalProjectInfoMgr)}, {5, typeid(CTabMgr)},
        {5, typeid(CGridViewController)}, {5, typeid(CEditorControl)},       {5, typeid(CMessageBoxMgr)},
        {6, typeid(CServiceConvertMgr)},
    };
    return order;
}

std::size_t VisitPosition(std::type_index type)
{
    const auto& order = VisitOrder();
    const auto found = std::find_if(order.begin(), order.end(), [&](const Visit& visit) { return visit.type == type; });
    return static_cast<std::size_t>(std::distance(order.begin(), found));
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
    EditorCommon::KYVApi::init(QString::fromStdWString(session.serverAddr), QString::fromStdWString(session.token));
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
    context->setContextProperty(QStringLiteral("appPath"), QDir(QCoreApplication::applicationDirPath()).absolutePath());
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

IMgrObj* CHomeApp::findMgr(std::type_index type) const
{
    const auto found =
        std::find_if(m_mgrs.begin(), m_mgrs.end(), [&](const Entry& entry) { return entry.type == type; });
    return found == m_mgrs.end() ? nullptr : found->mgr.get();
}

void CHomeApp::createMgrs()
{
    // The order of creation: a constructor may rely on the managers above it only.
    addMgr<CGridViewController>();
    addMgr<CProjectMgr>();
    addMgr<CLocalProjectInfoMgr>();
    addMgr<CEditorControl>();
    addMgr<CTabMgr>();
    addMgr<CMessageBoxMgr>();
    addMgr<CServiceConvertMgr>();
}

template<class Manager>
void CHomeApp::addMgr()
{
    putMgr(typeid(Manager), std::make_shared<Manager>());
}

void CHomeApp::putMgr(std::type_index type, std::shared_ptr<IMgrObj> mgr)
{
    const auto position = VisitPosition(type);
    const auto place = std::find_if(m_mgrs.begin(), m_mgrs.end(),
                                    [&](const Entry& entry) { return VisitPosition(entry.type) >= position; });
    if (place != m_mgrs.end() && place->type == type)
        place->mgr = std::move(mgr);
    else
        m_mgrs.insert(place, {VisitOrder()[position].priority, type, std::move(mgr)});
}

} // namespace TorvoEditor
