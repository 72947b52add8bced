// SPDX-License-Identifier: MIT
#pragma once

#include "convert/floorinfomgr.h"
#include "convert/floormatchedctrl.h"
#include "fakes/fakefloorinfo.h"
#include "fakes/floortexts.h"
#include "fakes/startedhome.h"
#include "floorlist.h"

#include <memory>

#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

/// The controller of the floor dialog in a home that runs over the stand-ins.
class StartedFloors
{
public:
    StartedFloors()
    {
        Fakes::ForgetFloors();
        if (!TorvoEditor::CHomeApp::instance().Init(Fakes::TestSession()))
            qFatal("no home");
        m_engine = std::make_unique<QQmlEngine>();
        ctrl().RegisterContext(m_engine->rootContext());
    }
    StartedFloors(const StartedFloors&) = delete;
    StartedFloors& operator=(const StartedFloors&) = delete;

    /// The home ends, with all managers.
    void end()
    {
        m_engine.reset();
        TorvoEditor::CHomeApp::instance().UnInit();
    }

    [[nodiscard]] QQmlContext& context() { return *m_engine->rootContext(); }
    [[nodiscard]] static TorvoEditor::CFloorMatchedCtrl& ctrl()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CFloorMatchedCtrl>();
    }
    [[nodiscard]] static TorvoEditor::CFloorInfoMgr& floorInfos()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CFloorInfoMgr>();
    }
    [[nodiscard]] TorvoEditor::CFloorTempModel& rows()
    {
        return *context().contextProperty("floorModel").value<TorvoEditor::CFloorTempModel*>();
    }

    /// The project "bim": two models with floors, and rows with something matched.
    static void addProject()
    {
        for (const char* model : {"a", "b"})
            Fakes::SmartDB::instance().add(model, QString(model).toUpper(), "MODEL").isOpen = true;
        Fakes::FloorsOf("bim") = {
            {{"1F", {{"a", {"x", "y"}}, {"b", {"u"}}}}, {"2F", {}}, {"3F", {{"a", {"z"}}}}},
            {{"default", {{"b", {"v"}}}}},
            {{"reset", {{"b", {"u", "v"}}}}},
            {{"a", {"x", "y", "z", "w"}}, {"b", {"u", "v"}}}};
        floorInfos().Create("bim");
    }

    /// "projName" of each model.
    [[nodiscard]] static QStringList models()
    {
        QStringList names;
        const auto models = ctrl().allMatchedProj();
        for (const auto& model : models)
            names.append(model.toObject()["projName"].toString());
        return names;
    }
    /// "guid name floor" of each floor of the chosen model, with a star behind those that are matched.
    [[nodiscard]] static QStringList floors()
    {
        QStringList lines;
        const auto floors = ctrl().seletedProjFloor();
        for (const auto& entry : floors) {
            const auto floor = entry.toObject();
            const QString star = floor["isMatched"].toBool() ? "*" : "";
            lines.append(QStringList({floor["projGuid"].toString(), floor["projName"].toString(),
                                      floor["floorName"].toString() + star})
                             .join(' '));
        }
        return lines;
    }

private:
    Fakes::Surroundings m_surroundings;
    std::unique_ptr<QQmlEngine> m_engine;
};
