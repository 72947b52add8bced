// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace KYVConvertCommon
{

/// One model of a building project and how far its conversion on this machine has come. GUI thread.
class CKYVConvertState : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString uid MEMBER uid NOTIFY uidChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(ConvertState convertState READ convertState WRITE setConvertState NOTIFY convertStateChanged)
    Q_PROPERTY(bool isLevelModel MEMBER isLevelModel NOTIFY isLevelModelChanged)

public:
    enum ConvertState {
        Waiting = 0,         ///< queued in the engine
        Converting = 1,      ///< the engine works on it
        ConvertFinished = 2, ///< converted, or read from the project
        ConvertFailed = 3,   ///< the engine gave up
    };
    Q_ENUM(ConvertState)

    enum PendingOp : quint8 { OpNone = 0, OpAdd = 1, OpUpdate = 2 };

    explicit CKYVConvertState(QObject* parent = nullptr);

    [[nodiscard]] QString name() const;
    void setName(const QString& name);

    [[nodiscard]] ConvertState convertState() const;
    void setConvertState(ConvertState state);

    QString uid;            ///< guid of the model; a fresh one for a new conversion
    bool isKyvModel = true; ///< came from a model archive
    QString bimGuid;        ///< the building project
    QString oldUid;         ///< during an update: the model being replaced
    QString oldName;        ///< during an update: its name
    quint8 pendingOp = OpNone;
    bool isLevelModel =
        false; ///< converted with level-by-level loading; whoever changes it emits isLevelModelChanged

signals:
    void uidChanged();
    void nameChanged();
    void convertStateChanged();
    void isLevelModelChanged();

private:
    QString m_name;
    ConvertState m_convertState = Waiting;
};

} // namespace KYVConvertCommon
