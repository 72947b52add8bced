// SPDX-License-Identifier: MIT
#pragma once

#include "XHUtility/sorttreemodel.h"
#include "XHUtility/treemodel.h"
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
#include <QTimer>
#include <QTimerEvent>

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
        listenToBoxes();
        log.take();
        Fakes::ForgetCalls();
        return true;
    }

    /// Gives the account an organisation with one department, "d1".
    void giveAnOrganisation()
    {
        TorvoSDK::SOrgNode department;
        department.id = L"d1";
        department.name = L"设计所";
        department.canSelect = true;
        TorvoSDK::SOrgNode root;
        root.id = L"root";
        root.name = L"公司";
        root.children.push_back(department);
        around.host.projects.organisation = root;
    }

    /// From now on the book of calls has a line for each card that comes or goes ("card added", "card
    /// removed") and for each item of the tree that changes, comes or goes ("item").
    void writeDownTheScreens()
    {
        auto* model = &cards();
        QObject::connect(model, &QAbstractItemModel::rowsInserted, &m_listener,
                         [model](const QModelIndex&, int row) {
                             Fakes::Called("card added(" + model->getProjectInfoData(row)->guid() + ")");
                         });
        QObject::connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, &m_listener,
                         [model](const QModelIndex&, int row) {
                             Fakes::Called("card removed(" + model->getProjectInfoData(row)->guid() + ")");
                         });
        auto* tree = panel().treeModel().value<XHUTILITY::CSortTreeModel*>()->sourceModel();
        const auto guidOf = [](const QModelIndex& index) {
            return index.data(XHUTILITY::CTreeModel::valueRole).toMap().value("text2").toString();
        };
        QObject::connect(
            tree, &QAbstractItemModel::dataChanged, &m_listener,
            [guidOf](const QModelIndex& index) { Fakes::Called("item changed(" + guidOf(index) + ")"); });
        QObject::connect(tree, &QAbstractItemModel::rowsInserted, &m_listener,
                         [tree, guidOf](const QModelIndex& parent, int row) {
                             Fakes::Called("item added(" + guidOf(tree->index(row, 0, parent)) + ")");
                         });
        QObject::connect(tree, &QAbstractItemModel::rowsAboutToBeRemoved, &m_listener,
                         [tree, guidOf](const QModelIndex& parent, int row) {
                             Fakes::Called("item removed(" + guidOf(tree->index(row, 0, parent)) + ")");
                         });
    }

    /// Waits until the book of calls has this line.
    [[nodiscard]] static bool waitForCall(const QString& call)
    {
        return QTest::qWaitFor([&] { return Fakes::Calls().contains(call); });
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
    /// The card of a project that has one.
    [[nodiscard]] TorvoEditor::CGridViewData& card(const QString& guid)
    {
        return *cards().getDataByGuid(guid);
    }
    /// The name that the tree shows for a project.
    [[nodiscard]] QString itemText(const QString& guid)
    {
        auto* model = panel().treeModel().value<XHUTILITY::CSortTreeModel*>()->sourceModel();
        const auto indexes = model->match(model->index(0, 0), Qt::DisplayRole, {}, -1, Qt::MatchRecursive);
        for (const auto& index : indexes) {
            const auto row = index.data(XHUTILITY::CTreeModel::valueRole).toMap();
            if (row.value("text2").toString() == guid)
                return row.value("text1").toString();
        }
        return {};
    }
    /// Lets the periodic refresh come.
    static void letTheTimerFire()
    {
        auto* timer = control().findChild<QTimer*>();
        QVERIFY(timer != nullptr);
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
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
    QStringList boxes;   ///< title and text of the boxes that came, from the start on
    bool answer = false; ///< what the user says to a question

private:
    void listenToBoxes()
    {
        using TorvoEditor::CMessageBoxMgr;
        auto* mgr = TorvoEditor::CHomeApp::instance().GetMgr<CMessageBoxMgr>();
        QObject::connect(mgr, &CMessageBoxMgr::sigShowTip, &m_listener,
                         [this](const QString& title, const QString& text) {
                             boxes.append(title + ": " + text);
                             Fakes::Called("tip(" + text + ")");
                         });
        QObject::connect(mgr, &CMessageBoxMgr::sigCheckBox, &m_listener,
                         [this, mgr](const QString& title, const QString& text) {
                             boxes.append(title + "? " + text);
                             QMetaObject::invokeMethod(
                                 mgr, [this, mgr] { mgr->callResultCallBack(answer); }, Qt::QueuedConnection);
                         });
    }

    QQmlEngine m_engine;
    QObject m_listener;
};
