// SPDX-License-Identifier: MIT
#pragma once

#include "convert/serviceconvertmgr.h"
#include "startedview.h"
#include "uploadsuite.h"

#include <initializer_list>

/// The tracker in a home that runs over the stand-ins, with the feature switched on. A test fills the
/// stand-ins, then calls start().
class StartedConvert : public StartedView
{
public:
    StartedConvert()
    {
        setSwitch(R"({"using": "1"})");
        Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server = {}; });
    }
    ~StartedConvert() { QFile::remove(switchFile()); }
    StartedConvert(const StartedConvert&) = delete;
    StartedConvert& operator=(const StartedConvert&) = delete;

    [[nodiscard]] static QString switchFile()
    {
        return QCoreApplication::applicationDirPath() + "/WebConvert.json";
    }
    static void setSwitch(const QByteArray& bytes)
    {
        QFile file(switchFile());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no switch");
    }

    /// Building projects that may be converted, with no models, jobs or failures.
    static void addBims(const QStringList& guids)
    {
        writeLocalList(guids);
        for (const auto& guid : guids) {
            addLocal(guid, "BIM");
            setModels(guid, {});
            setJobs(guid, {});
            Fakes::ChangeConversions([&](Fakes::KyvConversions& server) { server.failures[guid] = {}; });
        }
    }

    /// A started home whose dialog is open for the project "bim".
    [[nodiscard]] bool startOpened()
    {
        addBims({"bim", "other"});
        return start() && convert().checkServiceConvert("bim");
    }

    static void setModels(const QString& bimProj, const QStringList& ids)
    {
        QJsonArray models;
        for (const auto& id : ids)
            models.append(QJsonObject{{"id", id}, {"name", "model " + id}});
        Fakes::ChangeConversions([&](Fakes::KyvConversions& server) { server.models[bimProj] = models; });
    }

    [[nodiscard]] static QJsonObject job(const QString& id, const QString& status, int sort = 0,
                                         const QString& oldModelId = {})
    {
        return {{"projectId", "bim"}, {"name", "job " + id},      {"id", id},
                {"sort", sort},       {"oldModelId", oldModelId}, {"status", status}};
    }
    static void setJobs(const QString& bimProj, std::initializer_list<QJsonObject> list)
    {
        QJsonArray jobs;
        for (const auto& each : list)
            jobs.append(each);
        Fakes::ChangeConversions([&](Fakes::KyvConversions& server) { server.jobs[bimProj] = jobs; });
    }
    static void setPercent(const QString& id, double percent)
    {
        Fakes::ChangeConversions([&](Fakes::KyvConversions& server) { server.percents[id] = percent; });
    }

    [[nodiscard]] static TorvoEditor::CServiceConvertMgr& convert()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CServiceConvertMgr>();
    }
    [[nodiscard]] TorvoEditor::CKyvConvertModel& rows()
    {
        return *published<TorvoEditor::CKyvConvertModel>("serviceConvertModel");
    }
    /// Name and state of each row.
    [[nodiscard]] QStringList shown()
    {
        QStringList lines;
        for (int index = 0; index < rows().getCount(); ++index)
            lines.append(QString("%1 %2").arg(row(index).name()).arg(row(index).state()));
        return lines;
    }
    [[nodiscard]] TorvoEditor::CKyvConvertData& row(int index)
    {
        const auto value = rows().data(rows().index(index), TorvoEditor::CKyvConvertModel::listDataRole);
        return *value.value<TorvoEditor::CKyvConvertData*>();
    }

    [[nodiscard]] static QTimer& timer(const char* name)
    {
        auto* found = convert().findChild<QTimer*>(name);
        if (found == nullptr)
            qFatal("no timer");
        return *found;
    }
    /// Lets a timer's time come.
    static void fire(const char* name)
    {
        QTimerEvent event(timer(name).timerId());
        QCoreApplication::sendEvent(&timer(name), &event);
    }

    UploadSurroundings uploads; ///< archives; the stand-ins in their first state
};
