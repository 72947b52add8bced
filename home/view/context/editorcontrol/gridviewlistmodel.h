// SPDX-License-Identifier: MIT
#pragma once

#include "view/context/editorcontrol/gridviewdata.h"

#include <memory>
#include <vector>

#include <QAbstractListModel>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

namespace TorvoEditor
{

/// The cards of the project grid in the order in which they came. Owns them. GUI thread.
class CGridViewListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The one role, "viewData": the row's CGridViewData.
    static constexpr int viewDataRole = Qt::UserRole;

    explicit CGridViewListModel(QObject* parent = nullptr);
    ~CGridViewListModel() override;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Appends a card and takes it over; null is ignored. A guid may stand twice.
    Q_INVOKABLE void addProjectInfo(TorvoEditor::CGridViewData* proInfo);
    /// Removes the first card of that guid.
    Q_INVOKABLE void removeProjectInfo(const QString& strGuid);
    /// The card of a row, or null.
    Q_INVOKABLE TorvoEditor::CGridViewData* getProjectInfoData(int index) const;
    /// The first card of that guid, or null.
    Q_INVOKABLE TorvoEditor::CGridViewData* getDataByGuid(const QString& strGuid) const;
    Q_INVOKABLE bool isContain(const QString& strGuid) const;
    Q_INVOKABLE int count() const;
    Q_INVOKABLE void clear();

    [[nodiscard]] const std::vector<std::unique_ptr<CGridViewData>>& cards() const { return m_cards; }

    /// Gives every card its text from the positions of its project's files in the conversion queue.
    void updateTipTexts(const QMap<QString, QList<int>>& positionsByGuid);

private:
    std::vector<std::unique_ptr<CGridViewData>> m_cards;
    // Every step of a start with thousands of projects looks for a card.
    mutable QHash<QString, CGridViewData*> m_firstByGuid;
    mutable bool m_isIndexed = true; ///< m_firstByGuid is right
};

/// The text for files at these positions of the conversion queue, 0 being converted now; empty for no files.
[[nodiscard]] QString ConversionTipText(const QList<int>& positions);

} // namespace TorvoEditor
