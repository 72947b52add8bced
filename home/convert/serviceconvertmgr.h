// SPDX-License-Identifier: MIT
#pragma once

#include "convert/kyvconvertmodel.h"
#include "convert/kyvuploadmgr.h"
#include "core/mgrobj.h"

#include <QJsonArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

namespace TorvoEditor
{

/// Follows the models that are converted on the server, from the chosen archive to the finished model.
/// Published as "serviceConvertMgr", its list as "serviceConvertModel". GUI thread; every question to the
/// server waits for the answer.
///
/// The list of a project puts three sources together: finished models, jobs on the server, and tasks on this
/// machine, which nothing else remembers. One project is current while its dialog is open; its list is read
/// anew every 30 seconds, the progress of one of its jobs every 3, the jobs of all projects every 180. The
/// whole feature is switched by the file "WebConvert.json" beside the program, key "using", text "1".
class CServiceConvertMgr : public QObject, public IMgrObj
{
    Q_OBJECT
    Q_PROPERTY(bool isVisible READ isVisible NOTIFY isVisibleChanged)
    Q_PROPERTY(QJsonArray failedArray READ failedArray NOTIFY failedArrayChanged)

public:
    /// One model on its way: a task on this machine, a job on the server, or a finished model.
    struct TKyvConvertInfo {
        QString bimProj;     ///< guid of the building project
        QString kyvGuid;     ///< nobody fills it
        QString name;        ///< as it is shown
        int state = 0;       ///< a number of KyvConvertState
        QString aliasGuid;   ///< local id of a task on this machine
        QString id;          ///< the server's id
        QString path;        ///< of the chosen archive
        int convertType = 0; ///< as TKyvUploadTask has it
        int sort = -1;       ///< position in its queue
        double process = 0;  ///< 0 to 1
        QString oldModelId;  ///< the server's id of the model that this one replaces
    };

    /// Models by building project.
    using TKyvConvertMap = QMap<QString, QList<TKyvConvertInfo>>;

    /// Reads the switch.
    explicit CServiceConvertMgr(QObject* parent = nullptr);

    /// Starts to follow the jobs of all projects, when the feature is switched on.
    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    /// The feature is switched on.
    [[nodiscard]] bool isVisible() const { return m_isVisible; }
    /// The failures of the current project: objects with the texts "name", "guid" and "faildDate".
    [[nodiscard]] QJsonArray failedArray() const { return m_failedArray; }

    /// Vets a project, makes it current and reads its list. False when it may not be converted now, which the
    /// user is told, or when the server cannot be asked.
    [[nodiscard]] Q_INVOKABLE bool checkServiceConvert(const QString& bimProj);
    /// The dialog has closed: no project is current any more.
    Q_INVOKABLE void clearCurBimProj();
    /// Queues an archive as a new model of the current project.
    Q_INVOKABLE void addKyvModel(const QString& strPath, int convertType);
    /// Queues an archive in the place of the finished model `kyvProj`, which leaves the list at once.
    Q_INVOKABLE void updateKyvModel(const QString& strPath, const QString& kyvProj, int convertType);
    /// Deletes one task or job of the current project.
    Q_INVOKABLE void delKyvModel(const QString& kyvGuid);
    /// Deletes all tasks and jobs of the current project.
    Q_INVOKABLE void delAllKyvModel();
    /// Whether a project is a building project that is the same here and on the server, or older here. The
    /// reason of a refusal is logged, and shown with `isShowDialog`.
    [[nodiscard]] Q_INVOKABLE bool checkBimProj(const QString& bimProj, bool isShowDialog = true);
    /// A task of any project is still on this machine; closing the program would lose it.
    [[nodiscard]] Q_INVOKABLE bool hasUploadingProj() const;

    /// AddQueuePositions of the jobs on the server.
    void GetConvertInfo(QMap<QString, QList<int>>& positions) const;

signals:
    void isVisibleChanged();
    void failedArrayChanged();

private slots:
    void OnConvertTimerOut();
    void OnCurBimProjTimerOut();
    void OnProcessTimerOut();
    void OnRepackageStartNty(const QString& aliasGuid);
    void OnRepackageFinishedNty(const QString& aliasGuid, bool bSuccess);
    void OnUploadStartNty(const QString& aliasGuid);
    void OnUploadFinishedNty(const QString& aliasGuid, const QString& projId, bool bSuccess);
    void OnSortChanged(bool isRepackageChanged, bool isUploadChanged);
    void LoadConfig();

private:
    // Milliseconds.
    static constexpr int convertInterval = 180000;
    static constexpr int curBimProjInterval = 30000;
    static constexpr int processInterval = 3000;

    void scanAllProjects();
    [[nodiscard]] bool readJobs(const QString& bimProj, QStringList& excluded);
    [[nodiscard]] bool readFinished(const QStringList& excluded);
    /// Reads everything of the current project anew. False when there is none or the server cannot be asked;
    /// the rows then stay.
    bool refresh();
    void rebuildFailed();
    void rebuildRows();
    void updateProgress();
    [[nodiscard]] TKyvConvertInfo newRecord(const QString& path, int convertType) const;
    void queue(const TKyvConvertInfo& record);
    void setLocalState(const QString& aliasGuid, int state);
    [[nodiscard]] TKyvConvertInfo* findLocal(const QString& aliasGuid, QString& bimProj);
    void refuse(bool isShowDialog, const QString& text) const;

    TKyvConvertMap m_serviceInfos;  ///< jobs under way on the server
    TKyvConvertMap m_localInfos;    ///< tasks on this machine
    TKyvConvertMap m_finishedInfos; ///< finished models
    QJsonArray m_failedArray;
    QString m_curBimProj;     ///< project of the open dialog; empty when it is closed
    QString m_curProcessGuid; ///< the server's id of the job whose progress is asked for
    CKyvUploadMgr m_uploadMgr;
    // Once started the timers go on; their handlers find nothing to do while no project is current.
    QTimer m_convertTimer;
    QTimer m_curBimProjTimer;
    QTimer m_processTimer;
    CKyvConvertModel* m_model; ///< owned, as a child
    bool m_isVisible = false;
};

/// A row that shows an entry: under the server's id, or else the local one.
[[nodiscard]] CKyvConvertData* NewRow(const CServiceConvertMgr::TKyvConvertInfo& info);

/// True when any project has an entry.
[[nodiscard]] bool HoldsTask(const CServiceConvertMgr::TKyvConvertMap& tasks);

/// Adds to `positions`, by project, the place of each job in the server's queue; 0 for one that does not wait
/// there. A waiting job without a place is left out, with a line in the log.
void AddQueuePositions(const CServiceConvertMgr::TKyvConvertMap& jobs, QMap<QString, QList<int>>& positions);

} // namespace TorvoEditor
