// SPDX-License-Identifier: MIT
#pragma once

#include "KYVConvertCommon/kyvconvertmgr.h"
#include "KYVConvertCommon/kyvconvertstate.h"
#include "core/mgrobj.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QUrl>

namespace ZRSmartDB
{
class IZRModelStore;
}

namespace TorvoEditor
{

class CFloorInfoMgr;

/// The models of building projects: converts files on this machine and takes them into the project, replaces
/// and removes them, and tells each change to the floors of the project. Published as "bimMgr". GUI thread.
///
/// A list is what the project's database holds, read by syncProjList, and the conversions since then.
class CBimMgr : public QObject, public IMgrObj
{
    Q_OBJECT
    Q_PROPERTY(
        QString currentBimGuid READ currentBimGuid WRITE setCurrentBimGuid NOTIFY currentBimGuidChanged)
    Q_PROPERTY(QList<QObject*> projList READ projList NOTIFY projListChanged)
    Q_PROPERTY(bool isConverting READ isConverting NOTIFY isConvertingChanged)

public:
    explicit CBimMgr(QObject* parent = nullptr);

    /// A project is gone from this machine: ends all conversions and forgets the project's models.
    virtual void removeBimProj(QString bimGuid);

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    /// The project whose models are shown.
    [[nodiscard]] QString currentBimGuid() const { return m_currentBimGuid; }
    void setCurrentBimGuid(const QString& bimGuid);
    /// Its models, CKYVConvertState, in the order of their uids.
    [[nodiscard]] QList<QObject*> projList() const;
    /// One of them was being converted when that was last looked at: after each change of a conversion.
    [[nodiscard]] bool isConverting() const { return m_isConverting; }

public slots:
    /// Makes a project current and brings its list to what the project's database holds. Conversions that are
    /// still running, or have failed, leave the list.
    void syncProjList(const QString& bimGuid);

    // Files are local paths, or URLs of such. An empty one is no order.

    /// Converts a model archive into a new model of the project. Level loading comes with quality or with
    /// performance first.
    void add(const QString& bimGuid, const QUrl& file, bool isLevelModel = false,
             bool levelPerformanceFirst = true);
    /// Converts a model archive into one that replaces the model `kyvGuid`, which stays in the project until
    /// then.
    void update(const QString& bimGuid, const QUrl& file, const QString& kyvGuid, bool isLevelModel = false,
                bool levelPerformanceFirst = true);
    /// Converts a DWG drawing into a new model of the current project.
    void addDwgProj(const QUrl& file);
    /// Converts an FBX file into a new model of the current project.
    void addFBXProj(const QUrl& file);

    /// Takes a model out of a project that is open.
    void remove(const QString& bimGuid, const QString& kyvGuid);
    /// The project's dialog was dismissed: closes the project, ends all conversions, forgets its models.
    void cancle(const QString& bimGuid);

    /// Whether a model of the current project may be replaced: it came from an archive and is finished.
    [[nodiscard]] bool checkedUpdate(const QString& selectedGuid) const;

signals:
    void currentBimGuidChanged();
    void projListChanged();
    void isConvertingChanged(bool inConverting);

protected slots:
    /// The engine says that a conversion has entered `state`, a number of CKYVConvertState::ConvertState.
    void onReadyConvertKyv(const QString& uid, const QString& file, int state);

private:
    using State = KYVConvertCommon::CKYVConvertState;
    using Models = QMap<QString, QObject*>; ///< CKYVConvertState by uid

    State* addEntry(const QString& bimGuid, const QString& path, bool isKyvModel, bool isLevelModel);
    void takeFinished(const QString& bimGuid, State& state);
    void importModel(const QString& bimGuid, const QString& uid);
    void updateModel(const QString& bimGuid, const QString& oldUid, const QString& uid);
    void showImported(const QString& bimGuid, const QString& uid);
    /// Brings the entries of a project in line with its database; gives the uids that this has.
    [[nodiscard]] QStringList takeRecords(const QString& bimGuid);
    void dropAllBut(const QString& bimGuid, const QStringList& uids);
    void checkConverting();

    QString m_currentBimGuid;
    KYVConvertCommon::CKYVConvertMgr m_convertMgr;
    QMap<QString, Models> m_bimProjs; ///< by building project; the states are children of this
    bool m_isConverting = false;
};

} // namespace TorvoEditor
