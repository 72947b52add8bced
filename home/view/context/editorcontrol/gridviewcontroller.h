// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"
#include "view/context/editorcontrol/gridviewdata.h"

#include <memory>

#include <QObject>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

class CGridViewListModel;

/// Makes cards from what the store knows and keeps them. The only writer of the list; CEditorControl tells it
/// when. Published as "gridViewCtrl", its list as "gridViewModel". A guid without a card is no error. GUI
/// thread.
class CGridViewController : public QObject, public IMgrObj
{
    Q_OBJECT

public:
    explicit CGridViewController(QObject* parent = nullptr);
    ~CGridViewController() override;

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    /// Appends a card of a local project, else of the server's record; a guid that neither knows makes none.
    void AddCard(const QString& guid);
    /// Appends a card of a project whose data must be upgraded first.
    void AddNeedUpgradeCard(const QString& guid, const QString& name);
    /// Reads one card anew; removes it when its project has gone from the store.
    void UpdateCard(const QString& guid);
    void RemoveCard(const QString& guid);
    [[nodiscard]] bool ContainsCard(const QString& guid) const;
    /// Asks for the state of every card; one that cannot be told stays.
    void RefreshStates();
    void GetCardGuids(QStringList& guids) const;
    /// Gives the cards of projects with files in the server's conversion queue their texts.
    void UpdateTipTexts();

    void SetDealState(const QString& guid, CGridViewData::DealStateEnum state);
    void SetGuid(const QString& guid, const QString& newGuid);
    void SetIsUpgrade(const QString& guid, bool isUpgrade);
    void SetName(const QString& guid, const QString& name);
    void SetStateType(const QString& guid, CGridViewData::StateTypeEnum state);

private:
    std::unique_ptr<CGridViewListModel> m_model;
};

} // namespace TorvoEditor
