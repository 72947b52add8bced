// SPDX-License-Identifier: MIT
#include "KYVConvertCommon/kyvconvertstate.h"

namespace KYVConvertCommon
{

CKYVConvertState::CKYVConvertState(QObject* parent)
    : QObject(parent)
{
}

QString CKYVConvertState::name() const
{
    return m_name;
}

void CKYVConvertState::setName(const QString& name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit nameChanged();
}

CKYVConvertState::ConvertState CKYVConvertState::convertState() const
{
    return m_convertState;
}

void CKYVConvertState::setConvertState(ConvertState state)
{
    if (m_convertState == state)
        return;
    m_convertState = state;
    emit convertStateChanged();
}

} // namespace KYVConvertCommon
