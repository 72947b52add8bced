// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/projectinfo.h"

#include "EditorCommon/commonconfig.h"
#include "EditorCommon/kyvapi.h"
#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "view/context/editorcontrol/editorcontrol.h"
#include "view/context/editorcontrol/projectinforows.h"

#include <QFile>
#include <QFileDialog>
#include <QJsonDocument>

namespace TorvoEditor
{

namespace
{

const auto keyOfRow = QLatin1String("key");
const auto valueOfRow = QLatin1String("value");

/// The text of a file; empty when it cannot be read or none is named.
QString TextOfFile(const QString& path)
{
    QString text;
    if (!path.isEmpty())
        static_cast<void>(ReadTextFile(path, text));
    return text;
}

QString PictureUrl(const QString& path)
{
    return path.isEmpty() ? QStringLiteral("qrc:/images/card_ic_big.png") : QStringLiteral("file:///") + path;
}

/// The index of the row of this label, or -1.
int RowOf(const QJsonArray& rows, const QString& label)
{
    for (int i = 0; i < rows.size(); ++i) {
        if (rows.at(i).toObject().value(keyOfRow).toString() == label)
            return i;
    }
    return -1;
}

InfoRowsMode RowsMode(bool isLocal)
{
    InfoRowsMode mode;
    mode.isLocal = isLocal;
    mode.isBimSdk = CHomeApp::instance().GetMgr<CEditorControl>()->isBimSdk();
    mode.showsProj4 = EditorCommon::CommonConfig::getInstance().getConfigInfo(QStringLiteral("proj4_info")) ==
                      QLatin1String("1");
    return mode;
}

} // namespace

CProjectInfo::CProjectInfo(QObject* parent)
    : QObject(parent)
{
}

void CProjectInfo::clear()
{
    setBModify(true);
    setBBimViewShow(false);
    setProjImage({});
    const QString templateContent = m_record.templateContent;
    m_record = {};
    m_record.templateContent = templateContent;
    m_projInfo = {};
}

void CProjectInfo::setBelongRegion(const QString& provinceId, const QString& provinceName,
                                   const QString& cityId, const QString& cityName, const QString& regionId,
                                   const QString& regionName, const QString& longitude,
                                   const QString& latitude)
{
    m_record.provinceId = provinceId;
    m_record.provinceName = provinceName;
    m_record.cityId = cityId;
    m_record.cityName = cityName;
    m_record.regionId = regionId;
    m_record.regionName = regionName;
    m_record.longitude = longitude;
    m_record.latitude = latitude;
}

void CProjectInfo::setProjInfo(const QString& projName, const QString& projType, const QString& strTemp,
                               const QString& deptID, const QString& deptName, const QString& projIotCode,
                               const QString& earthConfig)
{
    m_record.name = projName;
    m_record.type = projType;
    m_record.templateName = strTemp;
    m_record.templateContent = TextOfFile(strTemp);
    m_record.extAttrs.insert(QStringLiteral("deptId"), deptID);
    m_record.extAttrs.insert(QStringLiteral("deptName"), deptName);
    m_record.iotCode = projIotCode;
    m_record.earthConfig = earthConfig;
}

void CProjectInfo::setJsonData(const QString& strKey, const QString& strValue, bool bNty)
{
    const int index = RowOf(m_projInfo, strKey);
    if (index < 0)
        return;
    if (strKey == InfoLabel::templateFile())
        m_record.templateContent = TextOfFile(strValue);
    auto row = m_projInfo.at(index).toObject();
    row.insert(valueOfRow, strValue);
    m_projInfo.replace(index, row);
    writeField(strKey, strValue);
    if (bNty)
        emit projInfoChanged();
}

void CProjectInfo::writeField(const QString& label, const QString& value)
{
    if (label == InfoLabel::guid())
        m_record.guid = value;
    else if (label == InfoLabel::name())
        m_record.name = value;
    else if (label == InfoLabel::type())
        m_record.type = value == QStringLiteral("场景工程") ? QStringLiteral("CIM") : QStringLiteral("BIM");
    else if (label == InfoLabel::templateFile())
        m_record.templateName = value;
    else if (label == InfoLabel::proj4())
        m_record.proj4 = value;
    else if (label == InfoLabel::iotCode())
        m_record.iotCode = value;
    else if (label == InfoLabel::earthConfig())
        m_record.earthConfig = value;
}

void CProjectInfo::exportConfigFile()
{
    const auto document = QJsonDocument::fromJson(m_record.templateContent.toUtf8());
    if (document.isNull())
        return;
    const QString folder = QFileDialog::getExistingDirectory(nullptr, QStringLiteral("选择导出的文件夹"),
                                                             QString(), QFileDialog::ShowDirsOnly);
    if (folder.isEmpty())
        return;
    QFile file(folder + QStringLiteral("/CompTemplate.json"));
    if (file.open(QIODevice::WriteOnly))
        file.write(document.toJson());
}

void CProjectInfo::changeServiceProjName()
{
    const int row = RowOf(m_projInfo, InfoLabel::name());
    const QString name = m_projInfo.at(row).toObject().value(valueOfRow).toString();
    if (name == m_record.name)
        return;
    if (EditorCommon::KYVApi::SetProjNameToService(m_record.guid, name))
        CHomeApp::instance().GetMgr<CEditorControl>()->updateProjName(m_record.guid, name);
    emit projInfoChanged();
}

void CProjectInfo::SetProjectData(const SProjectInfoRecord& record, bool bModify)
{
    m_record = record;
    setBModify(bModify);
    setBBimViewShow(bModify && record.type == QLatin1String("BIM"));
    setProjImage(PictureUrl(record.imagePath));
    buildRows();
}

void CProjectInfo::buildRows()
{
    m_projInfo = ProjectInfoRows(m_record, RowsMode(m_bModify));
    emit projInfoChanged();
}

void CProjectInfo::LoadExpandAttrs(const QJsonObject& json)
{
    m_expandInsert = json.value(QLatin1String("insert")).toInt();
    m_expandRows.clear();
    const auto rows = json.value(QLatin1String("expands")).toArray();
    for (const auto& row : rows)
        m_expandRows.insert(row.toObject().value(keyOfRow).toString(), row.toObject());
}

void CProjectInfo::setBModify(bool bModify)
{
    if (m_bModify == bModify)
        return;
    m_bModify = bModify;
    emit bModifyChanged();
}

void CProjectInfo::setBBimViewShow(bool bBimViewShow)
{
    if (m_bBimViewShow == bBimViewShow)
        return;
    m_bBimViewShow = bBimViewShow;
    emit bBimViewShowChanged();
}

void CProjectInfo::setProjImage(const QString& projImage)
{
    if (m_projImage == projImage) {
        m_projImage = QStringLiteral("qrc:/images/card_ic_default.png");
        emit projImageChanged();
    }
    m_projImage = projImage;
    emit projImageChanged();
}

void CProjectInfo::setTemplateContent(const QString& templateContent)
{
    if (m_record.templateContent == templateContent)
        return;
    m_record.templateContent = templateContent;
    emit templateContentChanged();
}

} // namespace TorvoEditor
