// SPDX-License-Identifier: MIT
#include "folderdialog.h"
#include "startedview.h"

#include "fakes/fakecommonconfig.h"
#include "view/context/editorcontrol/projectinfo.h"

#include <QApplication>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTimer>

using namespace TorvoEditor;

namespace
{

const QString nameLabel = QStringLiteral("工程名称");
const QString guidLabel = QStringLiteral("工程Guid");
const QString typeLabel = QStringLiteral("工程类型");
const QString departmentLabel = QStringLiteral("所属项目部");
const QString templateLabel = QStringLiteral("属性模板");
const QString proj4Label = QStringLiteral("地理坐标系投影参数（PROJ4标准参数）");
const QString iotLabel = QStringLiteral("物联资产编号");

SProjectInfoRecord Record(const QString& type)
{
    SProjectInfoRecord record;
    record.guid = "g1";
    record.name = "小楼";
    record.type = type;
    record.templateName = "CompTemplate.json";
    record.templateContent = R"({"a":1})";
    record.provinceId = "1";
    record.provinceName = "省";
    record.cityId = "2";
    record.cityName = "市";
    record.regionId = "3";
    record.regionName = "区";
    record.iotCode = "iot-1";
    record.proj4 = "+proj=longlat";
    return record;
}

QString WriteFile(const QTemporaryDir& folder, const QByteArray& bytes)
{
    const QString path = folder.filePath("template.json");
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
}

} // namespace

class TestProjectInfo : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstValues();
    void newDataAreToldAsFarAsTheyChange();
    void modelsOfABuildingAreShownWhenItIsHere_data();
    void modelsOfABuildingAreShownWhenItIsHere();
    void pictureIsTheProjectsOrTheDefault_data();
    void pictureIsTheProjectsOrTheDefault();
    void samePictureIsShownAnew();
    void editChangesRowAndRecord_data();
    void editChangesRowAndRecord();
    void editWithoutARowDoesNothing_data();
    void editWithoutARowDoesNothing();
    void editIsToldOnRequest();
    void newTemplateIsReadFromItsFile();
    void templateThatCannotBeReadIsEmpty();
    void dialogsDataGoIntoTheRecord();
    void dialogsDataLeaveTheOtherFields();
    void regionGoesIntoTheRecordAlone();
    void clearLeavesTheTemplate();
    void templateContentTellsAChange();
    void exportWritesTheTemplateOverAnEarlierOne();
    void exportThatIsCancelledWritesNothing();
    void exportOfABrokenTemplateAsksNothing();
    void additionalRowsAreKeptAndNotShown();

private:
    [[nodiscard]] QStringList labels() const;
    [[nodiscard]] QJsonObject row(const QString& label) const;

    std::unique_ptr<StartedView> m_view;
    CProjectInfo* m_info = nullptr;
};

void TestProjectInfo::init()
{
    Fakes::Settings().clear();
    m_view = std::make_unique<StartedView>();
    QVERIFY(m_view->start());
    m_info = m_view->published<CProjectInfo>("proInfoModel");
    QVERIFY(m_info != nullptr);
}

void TestProjectInfo::cleanup()
{
    m_view.reset();
    Fakes::Settings().clear();
}

QStringList TestProjectInfo::labels() const
{
    QStringList labels;
    const auto rows = m_info->projInfo();
    for (const auto& row : rows)
        labels.append(row.toObject().value("key").toString());
    return labels;
}

QJsonObject TestProjectInfo::row(const QString& label) const
{
    return m_info->projInfo().at(labels().indexOf(label)).toObject();
}

void TestProjectInfo::firstValues()
{
    QVERIFY(m_info->bModify());
    QVERIFY(!m_info->bBimViewShow());
    QVERIFY(m_info->projInfo().isEmpty());
    QVERIFY(m_info->projImage().isNull());
    QVERIFY(m_info->projGuid().isEmpty());
}

void TestProjectInfo::newDataAreToldAsFarAsTheyChange()
{
    QSignalSpy modify(m_info, &CProjectInfo::bModifyChanged);
    QSignalSpy models(m_info, &CProjectInfo::bBimViewShowChanged);
    QSignalSpy rows(m_info, &CProjectInfo::projInfoChanged);
    QSignalSpy guid(m_info, &CProjectInfo::projGuidChanged);
    m_info->SetProjectData(Record("BIM"), true);
    QCOMPARE(modify.count(), 0);
    QCOMPARE(models.count(), 1);
    m_info->SetProjectData(Record("BIM"), false);
    QCOMPARE(modify.count(), 1);
    QCOMPARE(models.count(), 2);
    m_info->SetProjectData(Record("BIM"), false);
    QCOMPARE(modify.count(), 1);
    QCOMPARE(models.count(), 2);
    QCOMPARE(rows.count(), 3);
    QCOMPARE(m_info->property("projGuid").toString(), QString("g1"));
    QCOMPARE(guid.count(), 0);
}

void TestProjectInfo::modelsOfABuildingAreShownWhenItIsHere_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("isLocal");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("building here") << "BIM" << true << true;
    QTest::newRow("building on the server") << "BIM" << false << false;
    QTest::newRow("scene here") << "CIM" << true << false;
    QTest::newRow("scene on the server") << "CIM" << false << false;
}

void TestProjectInfo::modelsOfABuildingAreShownWhenItIsHere()
{
    QFETCH(QString, type);
    QFETCH(bool, isLocal);
    m_info->SetProjectData(Record(type), isLocal);
    QTEST(m_info->bBimViewShow(), "isShown");
}

void TestProjectInfo::pictureIsTheProjectsOrTheDefault_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("url");
    QTest::newRow("none") << ""
                          << "qrc:/images/card_ic_big.png";
    QTest::newRow("own") << "/data/p.jpg"
                         << "file:////data/p.jpg";
}

void TestProjectInfo::pictureIsTheProjectsOrTheDefault()
{
    QFETCH(QString, path);
    auto record = Record("BIM");
    record.imagePath = path;
    m_info->SetProjectData(record, true);
    QTEST(m_info->projImage(), "url");
}

void TestProjectInfo::samePictureIsShownAnew()
{
    QStringList shown;
    connect(m_info, &CProjectInfo::projImageChanged, this, [&] { shown.append(m_info->projImage()); });
    auto record = Record("BIM");
    record.imagePath = "p.jpg";
    m_info->SetProjectData(record, true);
    QCOMPARE(shown, QStringList("file:///p.jpg"));
    m_info->SetProjectData(record, true);
    QCOMPARE(shown, QStringList({"file:///p.jpg", "qrc:/images/card_ic_default.png", "file:///p.jpg"}));
}

void TestProjectInfo::editChangesRowAndRecord_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("field");
    QTest::newRow("name") << nameLabel << "大楼"
                          << "大楼";
    QTest::newRow("guid") << guidLabel << "g2"
                          << "g2";
    QTest::newRow("scene") << typeLabel << "场景工程"
                           << "CIM";
    QTest::newRow("building") << typeLabel << "BIM工程"
                              << "BIM";
    QTest::newRow("any type") << typeLabel << "x"
                              << "BIM";
    QTest::newRow("proj4") << proj4Label << "+proj=utm"
                           << "+proj=utm";
    QTest::newRow("iot") << iotLabel << ""
                         << "";
    QTest::newRow("department changes no field") << departmentLabel << "x"
                                                 << "设计所";
}

void TestProjectInfo::editChangesRowAndRecord()
{
    QFETCH(QString, label);
    QFETCH(QString, value);
    StartedView::control().setIsBimSdk(true);
    auto record = Record("CIM");
    record.extAttrs.insert("deptName", "设计所");
    m_info->SetProjectData(record, true);
    m_info->setJsonData(label, value);
    QCOMPARE(row(label).value("value").toString(), value);
    const auto& now = m_info->record();
    const QMap<QString, QString> fields{
        {nameLabel, now.name},   {guidLabel, now.guid},   {typeLabel, now.type},
        {proj4Label, now.proj4}, {iotLabel, now.iotCode}, {departmentLabel, now.extAttrs.value("deptName")}};
    QTEST(fields.value(label), "field");
}

void TestProjectInfo::editWithoutARowDoesNothing_data()
{
    QTest::addColumn<QString>("label");
    QTest::newRow("earth configuration") << "三维地球配置";
    QTest::newRow("template editor") << "属性模板编辑";
    QTest::newRow("no row of this variant") << iotLabel;
    QTest::newRow("unknown") << "x";
}

void TestProjectInfo::editWithoutARowDoesNothing()
{
    QFETCH(QString, label);
    auto record = Record("CIM");
    record.earthConfig = "earth";
    m_info->SetProjectData(record, true);
    const auto rows = m_info->projInfo();
    QSignalSpy changed(m_info, &CProjectInfo::projInfoChanged);
    m_info->setJsonData(label, "new", true);
    QCOMPARE(m_info->projInfo(), rows);
    QCOMPARE(m_info->record().earthConfig, QString("earth"));
    QCOMPARE(m_info->record().iotCode, QString("iot-1"));
    QCOMPARE(changed.count(), 0);
}

void TestProjectInfo::editIsToldOnRequest()
{
    m_info->SetProjectData(Record("CIM"), true);
    QSignalSpy changed(m_info, &CProjectInfo::projInfoChanged);
    m_info->setJsonData(nameLabel, "a");
    QCOMPARE(changed.count(), 0);
    m_info->setJsonData(nameLabel, "b", true);
    QCOMPARE(changed.count(), 1);
}

void TestProjectInfo::newTemplateIsReadFromItsFile()
{
    const QTemporaryDir folder;
    const QString path = WriteFile(folder, R"({"b": "二"})");
    m_info->SetProjectData(Record("CIM"), true);
    m_info->setJsonData(templateLabel, path);
    QCOMPARE(m_info->templateContent(), QString(R"({"b": "二"})"));
    QCOMPARE(m_info->record().templateName, path);
    QCOMPARE(row(templateLabel).value("value").toString(), path);
}

void TestProjectInfo::templateThatCannotBeReadIsEmpty()
{
    m_info->SetProjectData(Record("CIM"), true);
    m_info->setJsonData(templateLabel, "/nowhere/template.json");
    QCOMPARE(m_info->templateContent(), QString());
    QCOMPARE(m_info->record().templateName, QString("/nowhere/template.json"));
}

void TestProjectInfo::dialogsDataGoIntoTheRecord()
{
    const QTemporaryDir folder;
    const QString path = WriteFile(folder, "{}");
    m_info->setProjInfo("新楼", "BIM", path, "d1", "设计所", "iot-2", "earth");
    const auto& record = m_info->record();
    QCOMPARE(QStringList({record.name, record.type, record.templateName, record.templateContent,
                          record.iotCode, record.earthConfig}),
             QStringList({"新楼", "BIM", path, "{}", "iot-2", "earth"}));
    QCOMPARE(record.extAttrs, (QMap<QString, QString>{{"deptId", "d1"}, {"deptName", "设计所"}}));
}

void TestProjectInfo::dialogsDataLeaveTheOtherFields()
{
    m_info->SetProjectData(Record("CIM"), true);
    const auto rows = m_info->projInfo();
    m_info->setProjInfo("新楼", "BIM", {}, {}, {}, {}, {});
    QCOMPARE(m_info->record().guid, QString("g1"));
    QCOMPARE(m_info->record().proj4, QString("+proj=longlat"));
    QCOMPARE(m_info->record().provinceId, QString("1"));
    QCOMPARE(m_info->record().templateContent, QString());
    QCOMPARE(m_info->projInfo(), rows);
}

void TestProjectInfo::regionGoesIntoTheRecordAlone()
{
    m_info->SetProjectData(Record("CIM"), true);
    const auto rows = m_info->projInfo();
    QSignalSpy changed(m_info, &CProjectInfo::projInfoChanged);
    m_info->setBelongRegion("11", "a", "22", "b", "33", "c", "121.5", "31.5");
    const auto& record = m_info->record();
    QCOMPARE(QStringList({record.provinceId, record.provinceName, record.cityId, record.cityName,
                          record.regionId, record.regionName, record.longitude, record.latitude}),
             QStringList({"11", "a", "22", "b", "33", "c", "121.5", "31.5"}));
    QCOMPARE(m_info->projInfo(), rows);
    QCOMPARE(changed.count(), 0);
}

void TestProjectInfo::clearLeavesTheTemplate()
{
    auto record = Record("BIM");
    record.extAttrs.insert("deptName", "设计所");
    m_info->SetProjectData(record, false);
    m_info->clear();
    QVERIFY(m_info->bModify());
    QVERIFY(!m_info->bBimViewShow());
    QVERIFY(m_info->projImage().isNull());
    QVERIFY(m_info->projInfo().isEmpty());
    QVERIFY(m_info->record().guid.isEmpty() && m_info->record().name.isEmpty());
    QVERIFY(m_info->record().extAttrs.isEmpty());
    QCOMPARE(m_info->templateContent(), QString(R"({"a":1})"));
}

void TestProjectInfo::templateContentTellsAChange()
{
    QSignalSpy changed(m_info, &CProjectInfo::templateContentChanged);
    m_info->setTemplateContent("{}");
    m_info->setTemplateContent("{}");
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_info->record().templateContent, QString("{}"));
}

void TestProjectInfo::exportWritesTheTemplateOverAnEarlierOne()
{
    const QTemporaryDir folder;
    m_info->SetProjectData(Record("CIM"), true);
    for (const char* content : {R"({"a":1})", "{}"}) {
        m_info->setTemplateContent(content);
        bool wasAsked = false;
        AnswerFolderDialog(folder.path(), wasAsked);
        m_info->exportConfigFile();
        QVERIFY(wasAsked);
        QFile file(folder.filePath("CompTemplate.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString(file.readAll()), QString(QJsonDocument::fromJson(content).toJson()));
    }
}

void TestProjectInfo::exportThatIsCancelledWritesNothing()
{
    m_info->SetProjectData(Record("CIM"), true);
    bool wasAsked = false;
    AnswerFolderDialog({}, wasAsked);
    m_info->exportConfigFile();
    QVERIFY(wasAsked);
    QVERIFY(!QFile::exists("/CompTemplate.json"));
}

void TestProjectInfo::exportOfABrokenTemplateAsksNothing()
{
    m_info->setTemplateContent("{");
    bool wasAsked = false;
    QTimer::singleShot(0, this, [&] { wasAsked = QApplication::activeModalWidget() != nullptr; });
    m_info->exportConfigFile();
    QCoreApplication::processEvents();
    QVERIFY(!wasAsked);
}

void TestProjectInfo::additionalRowsAreKeptAndNotShown()
{
    const QJsonObject earlier{{"key", "层数"}, {"value", "1"}};
    const QJsonObject later{{"key", "层数"}, {"value", "2"}};
    m_info->LoadExpandAttrs({{"insert", 3}, {"expands", QJsonArray{earlier, later}}});
    QCOMPARE(m_info->expandInsert(), 3);
    QCOMPARE(m_info->expandRows().size(), 1);
    QCOMPARE(m_info->expandRows().value("层数"), later);
    m_info->SetProjectData(Record("CIM"), true);
    QVERIFY(!labels().contains("层数"));
}

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    TestProjectInfo test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_projectinfo.moc"
