// SPDX-License-Identifier: MIT
#pragma once

#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"

#include <QString>

/// The project managers over the stand-ins. A test fills the stand-ins first, then calls start().
class StartedProjects
{
public:
    [[nodiscard]] bool start()
    {
        if (!TorvoEditor::CHomeApp::instance().Init(Fakes::TestSession()))
            return false;
        log.take();
        Fakes::ForgetCalls();
        return true;
    }

    [[nodiscard]] static TorvoEditor::CProjectMgr& mgr()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CProjectMgr>();
    }

    [[nodiscard]] static ZRSmartFormat::SZRFTGuid key(const QString& text)
    {
        return ZRSmartFormat::GuidFromText(text.toStdWString());
    }

    /// An open project on this machine that the server has too, in this state.
    static Fakes::StoredProject& addOpen(const QString& guid, const QString& type, int state = 1)
    {
        auto& stored = Fakes::SmartDB::instance().add(guid, QStringLiteral("name of ") + guid, type);
        stored.isOpen = true;
        stored.state = state;
        Fakes::SmartDB::instance().net.setReply("GetStatusByProjId", guid, {"1", {}, false, {}});
        return stored;
    }

    /// Places `linked` in the scene by an object of the guid "o_" + `linked`.
    static Fakes::SceneObject& link(const QString& scene, const QString& linked)
    {
        return Fakes::SmartDB::instance().find(scene)->project->addObject(key("o_" + linked), key(linked));
    }

    void giveAnOrganisation()
    {
        TorvoSDK::SOrgNode root;
        root.id = L"root";
        around.host.projects.organisation = root;
    }

    Fakes::Surroundings around;
    Fakes::LogBook log;
};
