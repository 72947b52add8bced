// SPDX-License-Identifier: MIT
#include "convert/kyvconvertdata.h"

#include "convert/kyvconvertstates.h"

namespace TorvoEditor
{

CKyvConvertData::CKyvConvertData(QObject* parent)
    : QObject(parent)
{
}

void CKyvConvertData::setGuid(const QString& guid)
{
    change(m_guid, guid, &CKyvConvertData::guidChanged);
}

void CKyvConvertData::setName(const QString& name)
{
    change(m_name, name, &CKyvConvertData::nameChanged);
}

void CKyvConvertData::setImage(const QString& image)
{
    change(m_image, image, &CKyvConvertData::imageChanged);
}

void CKyvConvertData::setPointText(const QString& pointText)
{
    change(m_pointText, pointText, &CKyvConvertData::pointTextChanged);
}

void CKyvConvertData::setState(int state)
{
    change(m_state, state, &CKyvConvertData::stateChanged);
}

void CKyvConvertData::setSort(int sort)
{
    change(m_sort, sort, &CKyvConvertData::sortChanged);
}

void CKyvConvertData::setProcess(double process)
{
    change(m_process, process, &CKyvConvertData::processChanged);
}

void CKyvConvertData::showState(int state)
{
    const auto look = KyvStateLook(state);
    setState(state);
    setImage(look.image);
    setPointText(look.pointText);
}

} // namespace TorvoEditor
