// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/gridviewlistmodel.h"

#include <algorithm>

#include <QQmlEngine>

namespace TorvoEditor
{

CGridViewListModel::CGridViewListModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

CGridViewListModel::~CGridViewListModel() = default;

int CGridViewListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant CGridViewListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= count() || role != viewDataRole)
        return {};
    return QVariant::fromValue(m_cards[static_cast<std::size_t>(index.row())].get());
}

QHash<int, QByteArray> CGridViewListModel::roleNames() const
{
    return {{viewDataRole, QByteArrayLiteral("viewData")}};
}

void CGridViewListModel::addProjectInfo(CGridViewData* proInfo)
{
    if (proInfo == nullptr)
        return;
    // A card that a screen asks for by an operation must not become the script engine's to delete.
    QQmlEngine::setObjectOwnership(proInfo, QQmlEngine::CppOwnership);
    connect(proInfo, &CGridViewData::guidChanged, this, [this] { m_isIndexed = false; });
    beginInsertRows({}, count(), count());
    m_cards.emplace_back(proInfo);
    if (m_isIndexed && !m_firstByGuid.contains(proInfo->guid()))
        m_firstByGuid.insert(proInfo->guid(), proInfo);
    endInsertRows();
}

void CGridViewListModel::removeProjectInfo(const QString& strGuid)
{
    if (strGuid.isEmpty())
        return;
    const auto* wanted = getDataByGuid(strGuid);
    const auto card = std::find_if(m_cards.begin(), m_cards.end(),
                                   [wanted](const auto& each) { return each.get() == wanted; });
    if (card == m_cards.end())
        return;
    const int row = static_cast<int>(std::distance(m_cards.begin(), card));
    beginRemoveRows({}, row, row);
    const auto removed = std::move(*card);
    m_cards.erase(card);
    m_isIndexed = false;
    endRemoveRows();
}

CGridViewData* CGridViewListModel::getProjectInfoData(int index) const
{
    if (index < 0 || index >= count())
        return nullptr;
    return m_cards[static_cast<std::size_t>(index)].get();
}

CGridViewData* CGridViewListModel::getDataByGuid(const QString& strGuid) const
{
    if (!m_isIndexed) {
        m_firstByGuid.clear();
        for (auto card = m_cards.rbegin(); card != m_cards.rend(); ++card)
            m_firstByGuid.insert((*card)->guid(), card->get());
        m_isIndexed = true;
    }
    return m_firstByGuid.value(strGuid);
}

bool CGridViewListModel::isContain(const QString& strGuid) const
{
    return getDataByGuid(strGuid) != nullptr;
}

int CGridViewListModel::count() const
{
    return static_cast<int>(m_cards.size());
}

void CGridViewListModel::clear()
{
    if (m_cards.empty())
        return;
    beginResetModel();
    m_cards.clear();
    m_firstByGuid.clear();
    endResetModel();
}

void CGridViewListModel::updateTipTexts(const QMap<QString, QList<int>>& positionsByGuid)
{
    for (const auto& card : m_cards)
        card->setTipText(ConversionTipText(positionsByGuid.value(card->guid())));
}

QString ConversionTipText(const QList<int>& positions)
{
    if (positions.isEmpty())
        return {};
    const QString total = QStringLiteral("共有%1个文件转化中,\n").arg(positions.size());
    const int first = *std::min_element(positions.begin(), positions.end());
    if (first == 0)
        return total + QStringLiteral("你的第一个文件转换中");
    return total + QStringLiteral("你的第一个文件排在第%1位.").arg(first);
}

} // namespace TorvoEditor
