// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/gridviewdata.h"

namespace TorvoEditor
{

CGridViewData::CGridViewData(QObject* parent)
    : QObject(parent)
{
}

void CGridViewData::setGuid(const QString& guid)
{
    if (m_guid == guid)
        return;
    m_guid = guid;
    emit guidChanged();
}

void CGridViewData::setName(const QString& name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit nameChanged();
}

void CGridViewData::setProjType(const QString& projType)
{
    if (m_projType == projType)
        return;
    m_projType = projType;
    emit projTypeChanged();
}

void CGridViewData::setImag(const QString& imag)
{
    if (m_imag == imag) {
        m_imag = QStringLiteral("qrc:/images/card_ic_default.png");
        emit imagChanged();
    }
    m_imag = imag;
    emit imagChanged();
}

void CGridViewData::setTypeImag(const QString& typeImag)
{
    if (m_typeImag == typeImag)
        return;
    m_typeImag = typeImag;
    emit typeImagChanged();
}

void CGridViewData::setNeedUpgrade(bool needUpgrade)
{
    if (m_needUpgrade == needUpgrade)
        return;
    m_needUpgrade = needUpgrade;
    emit needUpgradeChanged();
}

void CGridViewData::setIsUpgrade(bool isUpgrade)
{
    if (m_isUpgrade == isUpgrade)
        return;
    m_isUpgrade = isUpgrade;
    emit isUpgradeChanged();
}

void CGridViewData::setStateType(StateTypeEnum stateType)
{
    if (m_stateType == stateType)
        return;
    m_stateType = stateType;
    emit stateTypeChanged();
}

void CGridViewData::setDealState(DealStateEnum dealState)
{
    if (m_dealState == dealState)
        return;
    m_dealState = dealState;
    emit dealStateChanged();
}

void CGridViewData::setTipText(const QString& tipText)
{
    if (m_tipText == tipText)
        return;
    m_tipText = tipText;
    emit tipTextChanged();
}

} // namespace TorvoEditor
