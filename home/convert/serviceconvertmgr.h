// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// Follows the model archives that are converted on the server. Published as "serviceConvertMgr". GUI thread.
///
/// The whole feature is switched by the file "WebConvert.json" beside the program, key "using", text "1".
class CServiceConvertMgr : public QObject, public IMgrObj
{
    Q_OBJECT
    Q_PROPERTY(bool isVisible READ isVisible NOTIFY isVisibleChanged)

public:
    /// One model on its way: a task on this machine, or a job on the server.
    struct TKyvConvertInfo {
        QString bimProj;   ///< guid of the building project
        QString aliasGuid; ///< local id of a task on this machine
        QString id;        ///< the server's id
        int state = 0;     ///< 5 waits in the server's queue, 6 is being converted there
        int sort = -1;     ///< position in its queue
    };

    /// Models on their way, by building project.
    using TKyvConvertMap = QMap<QString, QList<TKyvConvertInfo>>;

    /// Reads the switch.
    explicit CServiceConvertMgr(QObject* parent = nullptr);

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    /// The feature is switched on.
    [[nodiscard]] bool isVisible() const { return m_isVisible; }

    /// A task of any project is still on this machine; closing the program would lose it.
    [[nodiscard]] Q_INVOKABLE bool hasUploadingProj() const;

    /// AddQueuePositions of the jobs on the server.
    void GetConvertInfo(QMap<QString, QList<int>>& positions) const;

signals:
    void isVisibleChanged();

private slots:
    void LoadConfig();

private:
    TKyvConvertMap m_serviceInfos; ///< jobs under way on the server
    TKyvConvertMap m_localInfos;   ///< tasks on this machine
    bool m_isVisible = false;
};

/// True when any project has an entry.
[[nodiscard]] bool HoldsTask(const CServiceConvertMgr::TKyvConvertMap& tasks);

/// Adds to `positions`, by project, the place of each job in the server's queue; 0 for one that does not wait
/// there. A waiting job without a place is left out, with a line in the log.
void AddQueuePositions(const CServiceConvertMgr::TKyvConvertMap& jobs, QMap<QString, QList<int>>& positions);

} // namespace TorvoEditor
