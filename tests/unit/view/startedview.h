// SPDX-License-Identifier: MIT
#pragma once

#include "core/messageboxmgr.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/localprojectinfomgr.h"
#include "project/projectconfig.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/editorcontrol.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/gridviewlistmodel.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <memory>

#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

/// The view models over the stand-ins. A test fills the stand-ins first, then calls start().
class StartedView
{
public:
    /// Enters projects into the file of the local list.
    static void writeLocalList(const QStringList& guids)
    {
        QJsonArray projects;
        for (const auto& guid : guids)
            projects.append(QJsonObject{{"guid", guid}, {"name", guid}, {"customMap", QJsonObject()}});
        TorvoEditor::WriteProjectConfig(QCoreApplication::applicationDirPath() + "/ProjectConfig.json",
                                        TorvoEditor::EncodeProjectConfig(projects));
    }

    /// A project on this machine, with the server's word about it and the state that the library gives it.
    static Fakes::StoredProject& addLocal(const QString& guid, const QString& type, const QString& word = "1",
                                          int state = 1)
    {
        auto& stored = Fakes::SmartDB::instance().add(guid, guid, type);
        stored.state = state;
        setWord(guid, word);
        return stored;
    }

    static void setWord(const QString& guid, const QString& word)
    {
        Fakes::SmartDB::instance().net.setReply("GetStatusByProjId", guid, {word, {}, false, {}});
    }

    /// A project in the server's list.
    TorvoSDK::SServerProjectRecord& addOnServer(const QString& guid, int type, const QString& department = {})
    {
        around.host.projects.addServerProject(guid, guid, type);
        auto& record = around.host.projects.serverProjects.back();
        record.customMap[L"deptId"] = department.toStdWString();
        return record;
    }

    [[nodiscard]] bool start(TorvoSDK::CTorvoSession session = Fakes::TestSession())
    {
        if (!TorvoEditor::CHomeApp::instance().Init(session))
            return false;
        TorvoEditor::CHomeApp::instance().RegisterContext(m_engine.rootContext());
        log.take();
        Fakes::ForgetCalls();
        return true;
    }

    [[nodiscard]] static TorvoEditor::CEditorControl& control()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CEditorControl>();
    }
    [[nodiscard]] static TorvoEditor::CGridViewController& grid()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CGridViewController>();
    }
    [[nodiscard]] TorvoEditor::CGridViewListModel& cards()
    {
        return *published<TorvoEditor::CGridViewListModel>("gridViewModel");
    }
    [[nodiscard]] TorvoEditor::CPanelModel& panel()
    {
        return *published<TorvoEditor::CPanelModel>("leftPanelModel");
    }
    [[nodiscard]] TorvoEditor::CGridViewData& card(const QString& guid)
    {
        return *cards().getDataByGuid(guid);
    }
    [[nodiscard]] static QStringList cardGuids()
    {
        QStringList guids;
        grid().GetCardGuids(guids);
        return guids;
    }

    template<class Object>
    [[nodiscard]] Object* published(const char* name)
    {
        return qobject_cast<Object*>(
            m_engine.rootContext()->contextProperty(name).template value<QObject*>());
    }

    Fakes::Surroundings around;
    Fakes::LogBook log;

private:
    QQmlEngine m_engine;
};
