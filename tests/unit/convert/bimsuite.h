// SPDX-License-Identifier: MIT
#pragma once

#include "KYVConvertCommon/kyvconvertstate.h"
#include "convert/bimmgr.h"
#include "core/filefunctions.h"
#include "fakes/fakekyvconvertmgr.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"

#include <QSignalSpy>
#include <QTest>

/// The manager of models in a home that runs over the stand-ins, with the building projects "bim" and "other"
/// on this machine.
class BimSuite
{
public:
    using State = KYVConvertCommon::CKYVConvertState;

    BimSuite()
    {
        for (const auto* guid : {"bim", "other"})
            Fakes::SmartDB::instance().add(guid, guid, "BIM");
        if (!TorvoEditor::CHomeApp::instance().Init(Fakes::TestSession()))
            qFatal("no home");
        listChanged = std::make_unique<QSignalSpy>(&mgr(), &TorvoEditor::CBimMgr::projListChanged);
        convertingChanged = std::make_unique<QSignalSpy>(&mgr(), &TorvoEditor::CBimMgr::isConvertingChanged);
        log.take();
        Fakes::ForgetCalls();
    }

    [[nodiscard]] static TorvoEditor::CBimMgr& mgr()
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CBimMgr>();
    }
    [[nodiscard]] static Fakes::ModelStore& store(const QString& guid = "bim")
    {
        return Fakes::SmartDB::instance().find(guid)->project->models;
    }

    /// Makes a project current, with models of these uids in its database.
    void sync(const QString& guid, const QStringList& uids = {})
    {
        for (const auto& uid : uids)
            store(guid).add(uid, "model " + uid);
        mgr().syncProjList(guid);
        forget();
    }

    /// From now on only what follows is seen.
    void forget()
    {
        listChanged->clear();
        convertingChanged->clear();
        log.take();
        Fakes::ForgetCalls();
    }

    /// The entry that shows this name, or null.
    [[nodiscard]] static State* named(const QString& name)
    {
        const auto list = mgr().projList();
        for (auto* entry : list) {
            if (auto* state = qobject_cast<State*>(entry); state->name() == name)
                return state;
        }
        return nullptr;
    }
    /// "name state" of each entry.
    [[nodiscard]] static QStringList shown()
    {
        QStringList lines;
        const auto list = mgr().projList();
        for (auto* entry : list) {
            const auto* state = qobject_cast<State*>(entry);
            lines.append(QStringLiteral("%1 %2").arg(state->name()).arg(state->convertState()));
        }
        return lines;
    }

    /// Begins to convert an archive for a project; gives its uid.
    [[nodiscard]] static QString add(const QString& guid, const QString& file = "/m/a.kyv")
    {
        mgr().add(guid, QUrl(file));
        return Fakes::CallsOf({"ConvertKyv"}).last().mid(QString("ConvertKyv(").size()).section(',', 0, 0);
    }
    static void tell(const QString& uid, int state) { Fakes::TellConversion(uid, "file", state); }

    [[nodiscard]] static QString data() { return TorvoEditor::DataDir(); }
    /// The last value that was told of isConverting, and how often it was: "true 1".
    [[nodiscard]] QString converting() const
    {
        return QStringLiteral("%1 %2")
            .arg(mgr().isConverting() ? "true" : "false")
            .arg(convertingChanged->size());
    }

    Fakes::LogBook log;
    Fakes::Surroundings around;
    std::unique_ptr<QSignalSpy> listChanged;
    std::unique_ptr<QSignalSpy> convertingChanged;
};
