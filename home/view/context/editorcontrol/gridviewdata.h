// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// One card of the project grid. A presentation of the store, not a store. Known to the screens for its enums
/// as "CGridViewData" of the module "myData.CGridViewData" 1.0. GUI thread.
class CGridViewData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString guid READ guid WRITE setGuid NOTIFY guidChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString projType READ projType WRITE setProjType NOTIFY projTypeChanged)
    Q_PROPERTY(QString imag READ imag WRITE setImag NOTIFY imagChanged)
    Q_PROPERTY(QString typeImag READ typeImag WRITE setTypeImag NOTIFY typeImagChanged)
    Q_PROPERTY(bool needUpgrade READ needUpgrade WRITE setNeedUpgrade NOTIFY needUpgradeChanged)
    Q_PROPERTY(bool isUpgrade READ isUpgrade WRITE setIsUpgrade NOTIFY isUpgradeChanged)
    Q_PROPERTY(StateTypeEnum stateType READ stateType WRITE setStateType NOTIFY stateTypeChanged)
    Q_PROPERTY(DealStateEnum dealState READ dealState WRITE setDealState NOTIFY dealStateChanged)
    Q_PROPERTY(QString tipText READ tipText NOTIFY tipTextChanged)

public:
    /// How a project stands to the server.
    enum StateTypeEnum {
        ST_LocalState = 0,        ///< exists only here
        ST_SynchroState = 1,      ///< the same on both sides
        ST_ModifyState = 2,       ///< changed here
        ST_UpdateState = 3,       ///< changed on the server
        ST_ConflictState = 4,     ///< changed on both sides
        ST_UpLoadFailedState = 5, ///< the last upload failed
    };
    Q_ENUM(StateTypeEnum)

    /// The long operation that runs on a card. An upgrade is told by isUpgrade instead.
    enum DealStateEnum { DS_NonState = 0, DS_UploadState = 1, DS_DownloadState = 2, DS_UpDateState = 3 };
    Q_ENUM(DealStateEnum)

    explicit CGridViewData(QObject* parent = nullptr);

    [[nodiscard]] QString guid() const { return m_guid; }
    void setGuid(const QString& guid);
    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString& name);
    /// "CIM" or "BIM".
    [[nodiscard]] QString projType() const { return m_projType; }
    void setProjType(const QString& projType);
    /// URL of the picture. Set to the value that it has, it passes through the default picture, so that a
    /// rewritten file is shown anew.
    [[nodiscard]] QString imag() const { return m_imag; }
    void setImag(const QString& imag);
    /// URL of the small icon of the type.
    [[nodiscard]] QString typeImag() const { return m_typeImag; }
    void setTypeImag(const QString& typeImag);
    [[nodiscard]] bool needUpgrade() const { return m_needUpgrade; }
    void setNeedUpgrade(bool needUpgrade);
    [[nodiscard]] bool isUpgrade() const { return m_isUpgrade; }
    void setIsUpgrade(bool isUpgrade);
    [[nodiscard]] StateTypeEnum stateType() const { return m_stateType; }
    void setStateType(StateTypeEnum stateType);
    [[nodiscard]] DealStateEnum dealState() const { return m_dealState; }
    void setDealState(DealStateEnum dealState);
    /// Where the project's files stand in the server's conversion queue; empty when none does.
    [[nodiscard]] QString tipText() const { return m_tipText; }
    void setTipText(const QString& tipText);

signals:
    void guidChanged();
    void nameChanged();
    void projTypeChanged();
    void imagChanged();
    void typeImagChanged();
    void needUpgradeChanged();
    void isUpgradeChanged();
    void stateTypeChanged();
    void dealStateChanged();
    void tipTextChanged();

private:
    QString m_guid = QLatin1String("");
    QString m_name = QLatin1String("");
    QString m_projType = QLatin1String("");
    QString m_imag = QLatin1String("");
    QString m_typeImag;
    bool m_needUpgrade = false;
    bool m_isUpgrade = false;
    StateTypeEnum m_stateType = ST_SynchroState;
    DealStateEnum m_dealState = DS_NonState;
    QString m_tipText;
};

} // namespace TorvoEditor
