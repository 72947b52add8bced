// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "fakes/fakecommonconfig.h"
#include "view/context/editorcontrol/projectinfo.h"

using namespace TorvoEditor;

namespace
{

const QString nameLabel = QStringLiteral("工程名称");
const QString guidLabel = QStringLiteral("工程Guid");
const QString typeLabel = QStringLiteral("工程类型");
const QString departmentLabel = QStringLiteral("所属项目部");
const QString templateLabel = QStringLiteral("属性模板");
const QString regionLabel = QStringLiteral("所属行政区");
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

} // namespace

/// Which rows the info card has, and what stands in them.
class TestProjectInfoRows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowsFollowTheProject_data();
    void rowsFollowTheProject();
    void rowHasItsShape_data();
    void rowHasItsShape();
    void regionRowHasTheRegion();
    void typeRowHasTheTypesName_data();
    void typeRowHasTheTypesName();

private:
    [[nodiscard]] QStringList labels() const;
    [[nodiscard]] QJsonObject row(const QString& label) const;

    std::unique_ptr<StartedView> m_view;
    CProjectInfo* m_info = nullptr;
};

void TestProjectInfoRows::init()
{
    Fakes::Settings().clear();
    m_view = std::make_unique<StartedView>();
    QVERIFY(m_view->start());
    m_info = m_view->published<CProjectInfo>("proInfoModel");
    QVERIFY(m_info != nullptr);
}

void TestProjectInfoRows::cleanup()
{
    m_view.reset();
    Fakes::Settings().clear();
}

QStringList TestProjectInfoRows::labels() const
{
    QStringList labels;
    const auto rows = m_info->projInfo();
    for (const auto& row : rows)
        labels.append(row.toObject().value("key").toString());
    return labels;
}

QJsonObject TestProjectInfoRows::row(const QString& label) const
{
    return m_info->projInfo().at(labels().indexOf(label)).toObject();
}

void TestProjectInfoRows::rowsFollowTheProject_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("isLocal");
    QTest::addColumn<bool>("hasDepartment");
    QTest::addColumn<bool>("isBimSdk");
    QTest::addColumn<QString>("proj4Info");
    QTest::addColumn<QStringList>("labels");
    const QStringList scene{nameLabel, guidLabel, typeLabel};
    const QStringList building{nameLabel, typeLabel};
    const QStringList local{templateLabel, regionLabel};
    const QStringList sdk{proj4Label, iotLabel};
    const QStringList dept(departmentLabel);
    // clang-format off
    QTest::newRow("building here") << "BIM" << true << false << false << "" << building;
    QTest::newRow("building here, department") << "BIM" << true << true << false << "" << building + dept;
    QTest::newRow("building here, variant") << "BIM" << true << true << true << "" << building + dept + sdk;
    QTest::newRow("building here, setting") << "BIM" << true << false << false << "1" << building;
    QTest::newRow("building on the server") << "BIM" << false << true << false << "1" << building + dept;
    QTest::newRow("scene here") << "CIM" << true << false << false << "" << scene + local;
    QTest::newRow("scene here, department") << "CIM" << true << true << false << "" << scene + dept + local;
    QTest::newRow("scene here, variant") << "CIM" << true << false << true << "" << scene + local + sdk;
    QTest::newRow("scene here, setting") << "CIM" << true << false << false << "1" << scene + local + QStringList(proj4Label);
    QTest::newRow("scene here, setting is 0") << "CIM" << true << false << false << "0" << scene + local;
    QTest::newRow("scene on the server") << "CIM" << false << true << false << "" << scene + dept;
    QTest::newRow("scene on the server, setting") << "CIM" << false << false << false << "1" << scene + QStringList(proj4Label);
    QTest::newRow("scene on the server, variant") << "CIM" << false << false << true << "0" << scene + sdk;
    QTest::newRow("no type") << "" << true << false << false << "" << scene + local;
    // clang-format on
}

void TestProjectInfoRows::rowsFollowTheProject()
{
    QFETCH(QString, type);
    QFETCH(bool, isLocal);
    QFETCH(bool, hasDepartment);
    QFETCH(bool, isBimSdk);
    QFETCH(QString, proj4Info);
    Fakes::Settings().insert("proj4_info", proj4Info);
    StartedView::control().setIsBimSdk(isBimSdk);
    auto record = Record(type);
    if (hasDepartment)
        record.extAttrs.insert("deptName", "设计所");
    m_info->SetProjectData(record, isLocal);
    QTEST(labels(), "labels");
}

void TestProjectInfoRows::rowHasItsShape_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<int>("type");
    QTest::newRow("name") << nameLabel << "小楼" << false << 0;
    QTest::newRow("guid") << guidLabel << "g1" << true << 0;
    QTest::newRow("type") << typeLabel << "场景工程" << true << 0;
    QTest::newRow("department") << departmentLabel << "设计所" << true << 0;
    QTest::newRow("template") << templateLabel << "CompTemplate.json" << true << 2;
    QTest::newRow("proj4") << proj4Label << "+proj=longlat" << false << 0;
    QTest::newRow("iot") << iotLabel << "iot-1" << false << 0;
}

void TestProjectInfoRows::rowHasItsShape()
{
    QFETCH(QString, label);
    QFETCH(QString, value);
    QFETCH(bool, isReadOnly);
    QFETCH(int, type);
    StartedView::control().setIsBimSdk(true);
    auto record = Record("CIM");
    record.extAttrs.insert("deptName", "设计所");
    m_info->SetProjectData(record, true);
    QCOMPARE(
        row(label),
        (QJsonObject{
            {"key", label}, {"value", value}, {"visible", true}, {"readOnly", isReadOnly}, {"type", type}}));
}

void TestProjectInfoRows::regionRowHasTheRegion()
{
    m_info->SetProjectData(Record("CIM"), true);
    const QJsonObject region{{"pId", "1"},    {"pName", "省"}, {"cId", "2"},
                             {"cName", "市"}, {"rId", "3"},    {"rName", "区"}};
    QCOMPARE(
        row(regionLabel),
        (QJsonObject{
            {"key", regionLabel}, {"value", region}, {"visible", true}, {"readOnly", false}, {"type", 3}}));
}

void TestProjectInfoRows::typeRowHasTheTypesName_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("name");
    QTest::newRow("scene") << "CIM"
                           << "场景工程";
    QTest::newRow("building") << "BIM"
                              << "BIM工程";
    QTest::newRow("anything else") << ""
                                   << "BIM工程";
}

void TestProjectInfoRows::typeRowHasTheTypesName()
{
    QFETCH(QString, type);
    m_info->SetProjectData(Record(type), true);
    QTEST(row(typeLabel).value("value").toString(), "name");
}

QTEST_MAIN(TestProjectInfoRows)
#include "test_projectinforows.moc"
