// SPDX-License-Identifier: MIT
#pragma once

#include "project/projectinforecord.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// One project as the info card shows and edits it, and the form that the new-project dialog fills. Saving is
/// CEditorControl's. Published as "proInfoModel". GUI thread.
///
/// Each row of the card is an object of the array `projInfo`; see ProjectInfoRows.
class CProjectInfo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool bModify READ bModify WRITE setBModify NOTIFY bModifyChanged)
    Q_PROPERTY(bool bBimViewShow READ bBimViewShow WRITE setBBimViewShow NOTIFY bBimViewShowChanged)
    Q_PROPERTY(QString projGuid READ projGuid NOTIFY projGuidChanged)
    Q_PROPERTY(QString projImage READ projImage WRITE setProjImage NOTIFY projImageChanged)
    Q_PROPERTY(QJsonArray projInfo READ projInfo NOTIFY projInfoChanged)
    Q_PROPERTY(
        QString templateContent READ templateContent WRITE setTemplateContent NOTIFY templateContentChanged)

public:
    explicit CProjectInfo(QObject* parent = nullptr);

    /// Empties the card; the template's content stays.
    Q_INVOKABLE void clear();
    /// Enters a region in the record; the row stays as it is.
    Q_INVOKABLE void setBelongRegion(const QString& provinceId, const QString& provinceName,
                                     const QString& cityId, const QString& cityName, const QString& regionId,
                                     const QString& regionName, const QString& longitude,
                                     const QString& latitude);
    /// Enters what the new-project dialog holds in the record; `strTemp` is a file, whose text is read. The
    /// rows stay as they are, and so does what an earlier project left in the other fields.
    Q_INVOKABLE void setProjInfo(const QString& projName, const QString& projType, const QString& strTemp,
                                 const QString& deptID, const QString& deptName, const QString& projIotCode,
                                 const QString& earthConfig);
    /// Changes the row of the label `strKey` and the record's field behind it; without such a row nothing
    /// happens. With `bNty` the screen is told to read the rows anew.
    Q_INVOKABLE void setJsonData(const QString& strKey, const QString& strValue, bool bNty = false);
    /// Asks for a folder and writes the property template there.
    Q_INVOKABLE void exportConfigFile();

    /// Gives the project the name of its row on the server, and in the tree. An edit through setJsonData
    /// leaves row and record the same, and is no change here.
    Q_INVOKABLE void changeServiceProjName();

    /// Shows another project. `bModify`: it is on this machine.
    void SetProjectData(const SProjectInfoRecord& record, bool bModify);
    /// Takes the additional rows of "ProjectExpandAttr.json". The card does not show them.
    void LoadExpandAttrs(const QJsonObject& json);

    [[nodiscard]] const SProjectInfoRecord& record() const { return m_record; }
    /// The project is on this machine: it may be edited and saved.
    [[nodiscard]] bool bModify() const { return m_bModify; }
    void setBModify(bool bModify);
    /// The card lists the models of a building.
    [[nodiscard]] bool bBimViewShow() const { return m_bBimViewShow; }
    void setBBimViewShow(bool bBimViewShow);
    [[nodiscard]] QString projGuid() const { return m_record.guid; }
    /// URL of the picture. Set to the value that it has, it passes through the default picture, so that a
    /// rewritten file is shown anew.
    [[nodiscard]] QString projImage() const { return m_projImage; }
    void setProjImage(const QString& projImage);
    [[nodiscard]] QJsonArray projInfo() const { return m_projInfo; }
    [[nodiscard]] QString templateContent() const { return m_record.templateContent; }
    void setTemplateContent(const QString& templateContent);
    /// Where the additional rows are to stand, and the rows by their label.
    [[nodiscard]] int expandInsert() const { return m_expandInsert; }
    [[nodiscard]] const QHash<QString, QJsonObject>& expandRows() const { return m_expandRows; }

signals:
    void bModifyChanged();
    void bBimViewShowChanged();
    /// Declared for the screens; nothing emits it.
    void projGuidChanged();
    void projImageChanged();
    void projInfoChanged();
    void templateContentChanged();

private:
    void buildRows();
    void writeField(const QString& label, const QString& value);

    SProjectInfoRecord m_record;
    QJsonArray m_projInfo;
    QString m_projImage;
    bool m_bModify = true;
    bool m_bBimViewShow = false;
    int m_expandInsert = 0;
    QHash<QString, QJsonObject> m_expandRows;
};

} // namespace TorvoEditor
