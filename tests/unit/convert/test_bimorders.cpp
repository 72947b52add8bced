// SPDX-License-Identifier: MIT
#include "bimsuite.h"

#include <QDir>
#include <QTemporaryDir>
#include <QUuid>

using TorvoEditor::CBimMgr;

/// What a screen asks of the manager of models: to add, and to replace.
class TestBimOrders : public QObject
{
    Q_OBJECT

private slots:
    void emptyFileAddsNothing();
    void addedArchiveWaitsInTheList();
    void newEntryHasAFreshUidWithoutBraces();
    void entryIsInTheListBeforeTheEngineIsAsked();
    void fileIsNamedUpToTheFirstDot();
    void fileIsHandedOnAsAnAbsolutePath_data();
    void fileIsHandedOnAsAnAbsolutePath();
    void modeComesOfTheTwoChoices_data();
    void modeComesOfTheTwoChoices();
    void withoutChoicesTheModelIsStatic();
    void levelModelIsShownAsOne();
    void addForAnotherProjectIsNotInTheCurrentList();
    void drawingIsAddedToTheCurrentProject();
    void fbxFileIsAddedToTheCurrentProject();
    void emptyDrawingOrFbxFileAddsNothing();
    void drawingWithoutACurrentProjectIsFiledUnderTheEmptyGuid();
    void updateWithoutAFileIsLogged();
    void updateInAnUnknownProjectIsLogged();
    void updateOfAnUnknownModelIsLogged();
    void refusedUpdateChangesNothing();
    void updatedEntryWaitsUnderItsNewUidAndName();
    void updatedEntryRemembersTheOldOne();
    void updateAsksTheEngineForTheNewUid();
    void updateTellsAChangedKindOfModel();
    void updateTellsNoKindThatStays();
    void updateIsTheSameObject();
    void updateLeavesTheProjectAlone();
};

void TestBimOrders::emptyFileAddsNothing()
{
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().add("bim", QUrl());
    QCOMPARE(bim.shown(), QStringList());
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(bim.converting(), QString("false 0"));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestBimOrders::addedArchiveWaitsInTheList()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim", "/m/a.kyv");
    QCOMPARE(bim.shown(), QStringList("a 0"));
    QCOMPARE(bim.listChanged->size(), 1);
    QCOMPARE(bim.converting(), QString("true 1"));
    const auto* entry = bim.named("a");
    QCOMPARE(entry->uid, uid);
    QCOMPARE(entry->bimGuid, QString("bim"));
    QCOMPARE(int(entry->pendingOp), int(BimSuite::State::OpAdd));
    QVERIFY(entry->isKyvModel);
    QVERIFY(entry->parent() == &bim.mgr());
}

void TestBimOrders::newEntryHasAFreshUidWithoutBraces()
{
    BimSuite bim;
    bim.sync("bim");
    const auto first = bim.add("bim");
    const auto second = bim.add("bim");
    QVERIFY(first != second);
    QCOMPARE(QUuid(first).toString(QUuid::WithoutBraces), first);
}

void TestBimOrders::entryIsInTheListBeforeTheEngineIsAsked()
{
    BimSuite bim;
    bim.sync("bim");
    QStringList callsThen{"not told"};
    connect(&bim.mgr(), &CBimMgr::projListChanged, this, [&] { callsThen = Fakes::CallsOf({"ConvertKyv"}); });
    static_cast<void>(bim.add("bim"));
    QCOMPARE(callsThen, QStringList());
}

void TestBimOrders::fileIsNamedUpToTheFirstDot()
{
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().add("bim", QUrl("/m/楼.v2.kyv"));
    QCOMPARE(bim.shown(), QStringList("楼 0"));
}

void TestBimOrders::fileIsHandedOnAsAnAbsolutePath_data()
{
    QTest::addColumn<QUrl>("file");
    QTest::addColumn<QString>("path");
    QTest::newRow("path") << QUrl("/m/a.kyv") << "/m/a.kyv";
    QTest::newRow("URL of a file") << QUrl::fromLocalFile("/m/a b#1.kyv") << "/m/a b#1.kyv";
    QTest::newRow("relative") << QUrl("m/a.kyv") << QDir::current().absoluteFilePath("m/a.kyv");
    QTest::newRow("Chinese") << QUrl("/模型/楼 一.kyv") << "/模型/楼 一.kyv";
    QTest::newRow("mark of a query") << QUrl("/m/a?b.kyv") << "/m/a?b.kyv";
    QTest::newRow("mark of a fragment") << QUrl("/m/a#1.kyv") << "/m/a#1.kyv";
    QTest::newRow("percent") << QUrl("/m/100%.kyv") << "/m/100%.kyv";
}

void TestBimOrders::fileIsHandedOnAsAnAbsolutePath()
{
    QFETCH(const QUrl, file);
    QFETCH(const QString, path);
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().addFBXProj(file);
    const auto uid = qobject_cast<BimSuite::State*>(bim.mgr().projList().first())->uid;
    QCOMPARE(Fakes::CallsOf({"ConvertFBX"}), QStringList(QStringLiteral("ConvertFBX(%1,%2)").arg(uid, path)));
}

void TestBimOrders::modeComesOfTheTwoChoices_data()
{
    QTest::addColumn<bool>("isLevelModel");
    QTest::addColumn<bool>("isPerformanceFirst");
    QTest::addColumn<int>("mode");
    QTest::newRow("效果") << false << false << 0;
    QTest::newRow("效果, either") << false << true << 0;
    QTest::newRow("平衡") << true << false << 1;
    QTest::newRow("极速") << true << true << 3;
}

void TestBimOrders::modeComesOfTheTwoChoices()
{
    QFETCH(const bool, isLevelModel);
    QFETCH(const bool, isPerformanceFirst);
    QFETCH(const int, mode);
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().add("bim", QUrl("/m/a.kyv"), isLevelModel, isPerformanceFirst);
    bim.mgr().update("bim", QUrl("/m/a.kyv"), "m", isLevelModel, isPerformanceFirst);
    const auto calls = Fakes::CallsOf({"ConvertKyv"});
    QCOMPARE(calls.size(), 2);
    for (const auto& call : calls)
        QVERIFY2(call.endsWith(QStringLiteral(",/m/a.kyv,%1)").arg(mode)), qPrintable(call));
}

void TestBimOrders::withoutChoicesTheModelIsStatic()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().add("bim", QUrl("/m/a.kyv"));
    bim.mgr().update("bim", QUrl("/m/a.kyv"), "m");
    const auto calls = Fakes::CallsOf({"ConvertKyv"});
    QVERIFY(calls.at(0).endsWith(",0)") && calls.at(1).endsWith(",0)"));
    // Level loading alone means performance first.
    bim.mgr().add("bim", QUrl("/m/a.kyv"), true);
    QVERIFY(Fakes::CallsOf({"ConvertKyv"}).last().endsWith(",3)"));
}

void TestBimOrders::levelModelIsShownAsOne()
{
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().add("bim", QUrl("/m/a.kyv"), true, false);
    bim.mgr().add("bim", QUrl("/m/b.kyv"), false, false);
    QVERIFY(bim.named("a")->isLevelModel);
    QVERIFY(!bim.named("b")->isLevelModel);
}

void TestBimOrders::addForAnotherProjectIsNotInTheCurrentList()
{
    BimSuite bim;
    bim.sync("bim");
    static_cast<void>(bim.add("other"));
    QCOMPARE(bim.shown(), QStringList());
    QCOMPARE(bim.listChanged->size(), 1);
    QCOMPARE(bim.converting(), QString("false 0"));
}

void TestBimOrders::drawingIsAddedToTheCurrentProject()
{
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().addDwgProj(QUrl("/m/a.dwg"));
    QCOMPARE(bim.shown(), QStringList("a 0"));
    QCOMPARE(bim.listChanged->size(), 1);
    QCOMPARE(bim.converting(), QString("true 1"));
    const auto* entry = bim.named("a");
    QCOMPARE(entry->bimGuid, QString("bim"));
    QVERIFY(!entry->isKyvModel);
    QVERIFY(!entry->isLevelModel);
    QCOMPARE(Fakes::Calls(), QStringList(QStringLiteral("ConvertDwg(%1,/m/a.dwg)").arg(entry->uid)));
}

void TestBimOrders::fbxFileIsAddedToTheCurrentProject()
{
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().addFBXProj(QUrl("/m/a.b.fbx"));
    QCOMPARE(bim.shown(), QStringList("a 0"));
    QCOMPARE(bim.listChanged->size(), 1);
    QCOMPARE(bim.converting(), QString("true 1"));
    const auto* entry = bim.named("a");
    QCOMPARE(entry->bimGuid, QString("bim"));
    QVERIFY(!entry->isKyvModel);
    QVERIFY(!entry->isLevelModel);
    QCOMPARE(Fakes::Calls(), QStringList(QStringLiteral("ConvertFBX(%1,/m/a.b.fbx)").arg(entry->uid)));
}

void TestBimOrders::emptyDrawingOrFbxFileAddsNothing()
{
    BimSuite bim;
    bim.sync("bim");
    bim.mgr().addDwgProj(QUrl());
    bim.mgr().addFBXProj(QUrl());
    QCOMPARE(bim.shown(), QStringList());
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestBimOrders::drawingWithoutACurrentProjectIsFiledUnderTheEmptyGuid()
{
    BimSuite bim;
    bim.mgr().addDwgProj(QUrl("/m/a.dwg"));
    QCOMPARE(bim.mgr().currentBimGuid(), QString());
    QCOMPARE(bim.shown(), QStringList("a 0"));
    QCOMPARE(bim.converting(), QString("true 1"));
}

void TestBimOrders::updateWithoutAFileIsLogged()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl(), "m");
    QCOMPARE(bim.log.take(), QStringList(R"(info: file not exist  "")"));
}

void TestBimOrders::updateInAnUnknownProjectIsLogged()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("other", QUrl("/m/a.kyv"), "m");
    QCOMPARE(bim.log.take(), QStringList(R"(info: bim proj not exist "other")"));
}

void TestBimOrders::updateOfAnUnknownModelIsLogged()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/a.kyv"), "n");
    QCOMPARE(bim.log.take(), QStringList(R"(info: kyv proj not exist "n")"));
}

void TestBimOrders::refusedUpdateChangesNothing()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl(), "m");
    bim.mgr().update("other", QUrl("/m/a.kyv"), "m");
    bim.mgr().update("bim", QUrl("/m/a.kyv"), "n");
    QCOMPARE(bim.shown(), QStringList("model m 2"));
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(bim.converting(), QString("false 0"));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestBimOrders::updatedEntryWaitsUnderItsNewUidAndName()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.v2.kyv"), "m");
    QCOMPARE(bim.shown(), QStringList("b 0"));
    QVERIFY(bim.named("b")->uid != "m");
    QCOMPARE(bim.listChanged->size(), 1);
    QCOMPARE(bim.converting(), QString("true 1"));
    // The old uid is gone from the list.
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    QCOMPARE(bim.log.take(), QStringList(R"(info: kyv proj not exist "m")"));
}

void TestBimOrders::updatedEntryRemembersTheOldOne()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    const auto* entry = bim.named("b");
    QCOMPARE(entry->oldUid, QString("m"));
    QCOMPARE(entry->oldName, QString("model m"));
    QCOMPARE(int(entry->pendingOp), int(BimSuite::State::OpUpdate));
}

void TestBimOrders::updateAsksTheEngineForTheNewUid()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m", true, false);
    QCOMPARE(Fakes::Calls(),
             QStringList(QStringLiteral("ConvertKyv(%1,/m/b.kyv,1)").arg(bim.named("b")->uid)));
}

void TestBimOrders::updateTellsAChangedKindOfModel()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    auto* entry = bim.named("model m");
    const QSignalSpy told(entry, &BimSuite::State::isLevelModelChanged);
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m", true, false);
    QVERIFY(entry->isLevelModel);
    QCOMPARE(told.size(), 1);
}

void TestBimOrders::updateTellsNoKindThatStays()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    auto* entry = bim.named("model m");
    const QSignalSpy told(entry, &BimSuite::State::isLevelModelChanged);
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m", false, false);
    QCOMPARE(told.size(), 0);
}

void TestBimOrders::updateIsTheSameObject()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    const auto* entry = bim.named("model m");
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    QCOMPARE(bim.named("b"), entry);
}

void TestBimOrders::updateLeavesTheProjectAlone()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    QVERIFY(bim.store().HasModelProj(ZRSmartFormat::GuidFromText(L"m")));
    QCOMPARE(Fakes::CallsOf({"UpdateModelProj", "RemoveModelProj", "UpdateKyvProj"}), QStringList());
}

QTEST_MAIN(TestBimOrders)
#include "test_bimorders.moc"
