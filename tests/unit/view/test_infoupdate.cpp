// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "fakes/fakekyvapi.h"
#include "view/context/editorcontrol/projectinfo.h"

using namespace TorvoEditor;
using Fakes::SmartDB;

/// The saving of the info card, and the names of tree items.
class TestInfoUpdate : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        m_view.reset();
        Fakes::KyvAnswers() = {};
    }

    void fieldsAreWrittenInOrder();
    void regionOfASceneIsWritten();
    void coordinatesThatAreNoNumbersAreZero_data();
    void coordinatesThatAreNoNumbersAreZero();
    void projectIsReadAnewAfterwards();
    void cardAndItemTakeTheNewName();
    void changedIotNumberClearsTheTextsOfObjects_data();
    void changedIotNumberClearsTheTextsOfObjects();
    void templateIsWrittenOncePerSubProjectThatIsHere();
    void unknownProjectIsPassedOver();
    void itemIsRenamed();
    void nameOfAServerProjectIsChangedThere_data();
    void nameOfAServerProjectIsChangedThere();
    void nameEditedInTheCardIsNoChangeForTheServer();
    void nameOfNoRowIsEmpty();

private:
    void show(const SProjectInfoRecord& record)
    {
        m_view->published<CProjectInfo>("proInfoModel")->SetProjectData(record, true);
        Fakes::ForgetCalls();
    }
    static QStringList changes()
    {
        return Fakes::CallsOf({"SetName", "SetType", "SetPosition", "SetTemplate", "SetProj4", "SetIotCode",
                               "SetAttr", "SetObjectText", "SaveAll", "CloseProject"});
    }

    std::unique_ptr<StartedView> m_view;
    SProjectInfoRecord m_record;
};

void TestInfoUpdate::init()
{
    m_view = std::make_unique<StartedView>();
    m_record = {};
    m_record.guid = "a";
    m_record.name = "new";
    m_record.type = "BIM";
    m_record.longitude = "121.5";
    m_record.latitude = "31.25";
    m_record.templateContent = "{}";
    m_record.proj4 = "+proj=longlat";
    m_record.iotCode = "iot-2";
    m_record.earthConfig = "earth";
}

void TestInfoUpdate::fieldsAreWrittenInOrder()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(changes(), QStringList({"SetName(a,new)", "SetType(a,BIM)", "SetPosition(a,121.5,31.25,0)",
                                     "SetTemplate(a,{})", "SetProj4(a,+proj=longlat)", "SetIotCode(a,iot-2)",
                                     "SetAttr(a,basemap,earth)", "SaveAll()", "CloseProject(a)"}));
}

void TestInfoUpdate::regionOfASceneIsWritten()
{
    StartedView::addLocal("a", "CIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_record.type = "CIM";
    m_record.provinceId = "31";
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    const auto written = changes();
    QCOMPARE(written.filter("Pa_BelongsRegion").size(), 1);
    QVERIFY(written.filter("Pa_BelongsRegion").constFirst().contains(R"("provinceId":"31")"));
    QCOMPARE(written.indexOf("SaveAll()"), written.indexOf(QRegExp(".*Pa_BelongsRegion.*")) + 1);
}

void TestInfoUpdate::coordinatesThatAreNoNumbersAreZero_data()
{
    QTest::addColumn<QString>("longitude");
    QTest::newRow("a word") << "east";
    QTest::newRow("no number by its name") << "nan";
    QTest::newRow("endless") << "-inf";
}

void TestInfoUpdate::coordinatesThatAreNoNumbersAreZero()
{
    QFETCH(QString, longitude);
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_record.longitude = longitude;
    m_record.latitude.clear();
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(Fakes::CallsOf({"SetPosition"}), QStringList("SetPosition(a,0,0,0)"));
}

void TestInfoUpdate::projectIsReadAnewAfterwards()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(Fakes::Calls().constLast(), QString("CloseProject(a)"));
    QVERIFY(!SmartDB::instance().find("a")->isOpen);
}

void TestInfoUpdate::cardAndItemTakeTheNewName()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(m_view->card("a").name(), QString("new"));
    QCOMPARE(m_view->itemText("a"), QString("new"));
    // The item is read twice, the card once.
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId", "NeedUpgrade"}),
             QStringList(
                 {"GetStatusByProjId(a)", "GetStatusByProjId(a)", "NeedUpgrade(a)", "GetStatusByProjId(a)"}));
}

void TestInfoUpdate::changedIotNumberClearsTheTextsOfObjects_data()
{
    QTest::addColumn<bool>("isBimSdk");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QStringList>("cleared");
    const QStringList none;
    QTest::newRow("changed") << true << "iot-1" << QStringList("SetObjectText(o1,)");
    QTest::newRow("the same") << true << "iot-2" << none;
    QTest::newRow("none before") << true << "" << none;
    QTest::newRow("changed in the other variant") << false << "iot-1" << none;
}

void TestInfoUpdate::changedIotNumberClearsTheTextsOfObjects()
{
    QFETCH(bool, isBimSdk);
    QFETCH(QString, before);
    auto& project = *StartedView::addLocal("a", "BIM").project;
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    project.SetIotCode(before.toStdWString());
    project.addObject(key(L"o1"), key(L"none")).SetObjectText(L"text");
    project.addObject(key(L"o2"), key(L"none"));
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    StartedView::control().setIsBimSdk(isBimSdk);
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QTEST(Fakes::CallsOf({"SetObjectText"}), "cleared");
}

void TestInfoUpdate::templateIsWrittenOncePerSubProjectThatIsHere()
{
    auto& project = *StartedView::addLocal("a", "CIM").project;
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    for (const wchar_t* part : {L"x", L"y", L"gone"})
        project.addObject(key(part), key(part));
    StartedView::addLocal("x", "BIM");
    StartedView::addLocal("y", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(Fakes::CallsOf({"SetTemplate"}),
             QStringList({"SetTemplate(a,{})", "SetTemplate(a,{})", "SetTemplate(a,{})"}));
}

void TestInfoUpdate::unknownProjectIsPassedOver()
{
    QVERIFY(m_view->start());
    m_record.guid = "unknown";
    show(m_record);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(changes(), QStringList());
}

void TestInfoUpdate::itemIsRenamed()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    StartedView::control().updateProjName("a", "new");
    StartedView::control().updateProjName("unknown", "new");
    QCOMPARE(m_view->itemText("a"), QString("new"));
}

void TestInfoUpdate::nameOfAServerProjectIsChangedThere_data()
{
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<QString>("itemText");
    QTest::newRow("accepted") << true << "new";
    QTest::newRow("refused") << false << "a";
}

void TestInfoUpdate::nameOfAServerProjectIsChangedThere()
{
    QFETCH(bool, isAccepted);
    Fakes::KyvAnswers().acceptsNames = isAccepted;
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    show(m_record);
    auto& info = *m_view->published<CProjectInfo>("proInfoModel");
    // The row says "new", the record something else.
    info.setProjInfo("former", "BIM", {}, {}, {}, {}, {});
    QSignalSpy changed(&info, &CProjectInfo::projInfoChanged);
    info.changeServiceProjName();
    QCOMPARE(Fakes::Calls(), QStringList("SetProjNameToService(a,new)"));
    QTEST(m_view->itemText("a"), "itemText");
    QCOMPARE(changed.count(), 1);
}

void TestInfoUpdate::nameEditedInTheCardIsNoChangeForTheServer()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    show(m_record);
    auto& info = *m_view->published<CProjectInfo>("proInfoModel");
    info.setJsonData("工程名称", "edited");
    QSignalSpy changed(&info, &CProjectInfo::projInfoChanged);
    info.changeServiceProjName();
    QCOMPARE(Fakes::Calls(), QStringList());
    QCOMPARE(changed.count(), 0);
}

void TestInfoUpdate::nameOfNoRowIsEmpty()
{
    QVERIFY(m_view->start());
    auto& info = *m_view->published<CProjectInfo>("proInfoModel");
    info.changeServiceProjName();
    QCOMPARE(Fakes::Calls(), QStringList());
    info.setProjInfo("former", "BIM", {}, {}, {}, {}, {});
    info.changeServiceProjName();
    QCOMPARE(Fakes::Calls(), QStringList("SetProjNameToService(,)"));
}

QTEST_MAIN(TestInfoUpdate)
#include "test_infoupdate.moc"
