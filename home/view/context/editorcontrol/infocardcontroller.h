// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"
#include "project/projectinforecord.h"

#include <memory>

#include <QJsonObject>
#include <QObject>
#include <QString>

namespace XHUTILITY
{
class CTreeModel;
}

namespace TorvoEditor
{

class CProjectInfo;

/// Fills the info card, and keeps the organisation as a tree for the choice of a department. Published as
/// "infoCardCtrl", with the card's data as "proInfoModel" and the tree as "orgModel". GUI thread.
class CInfoCardController : public QObject, public IMgrObj
{
    Q_OBJECT

public:
    explicit CInfoCardController(QObject* parent = nullptr);
    ~CInfoCardController() override;

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    /// Shows a project: from this machine when it is here, else what the server's list says of it, with a
    /// picture that is fetched first. A project that neither knows leaves the card as it is.
    Q_INVOKABLE void showProjectInfo(const QString& projGuid);

    /// What the card holds now.
    [[nodiscard]] SProjectInfoRecord GetProjectInfo() const;

    /// The card's data themselves; as long as this manager.
    [[nodiscard]] CProjectInfo* projectInfo() const { return m_projectInfo.get(); }

private:
    QString m_expandPath;
    QJsonObject m_expandAttrs; ///< what the file of additional rows held
    std::unique_ptr<CProjectInfo> m_projectInfo;
    std::unique_ptr<XHUTILITY::CTreeModel> m_orgModel; ///< of maps of "id", "name" and "canSelect"
};

} // namespace TorvoEditor
