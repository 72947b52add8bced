// SPDX-License-Identifier: MIT
#include "bimsuite.h"

namespace
{

using State = KYVConvertCommon::CKYVConvertState;

// What the database and the floors are asked, in order.
const QStringList changes = {"OpenProject",  "ImportModelProj", "UpdateModelProj", "RemoveModelProj",
                             "CloseProject", "AddKyvProj",      "UpdateKyvProj",   "RemoveKyvProj"};

} // namespace

/// What the engine says of conversions, and what becomes of them.
class TestBimConversions : public QObject
{
    Q_OBJECT

private slots:
    void stateFollowsTheEngine();
    void unknownUidIsLoggedAndNothingElse();
    void unknownUidDoesNotLookAtConverting();
    void finishedModelIsTakenIntoTheProject();
    void finishedModelIsShownUnderItsNameInTheProject();
    void failedImportIsLoggedAndShownAsDone();
    void importIntoAClosedProjectFails();
    void importWithoutADatabaseFails();
    void importedModelWithoutARecordIsNotTold();
    void failedImportIsCorrectedByTheNextSync();
    void finishedUpdateSwapsTheModels();
    void failedUpdateIsLoggedAndShownAsDone();
    void failedConversionIsShownAndNotTaken();
    void failedUpdateKeepsTheOldModelInTheProject();
    void otherStatesLeaveTheConversionPending_data();
    void otherStatesLeaveTheConversionPending();
    void repeatedWordChangesNothing();
    void wordForAnEntryOfTheDatabaseIsIgnored();
    void ignoredWordStillLooksAtConverting();
    void modelOfAnotherProjectIsTakenIntoThatOne();
    void conversionOfAnotherProjectDoesNotCount();
    void convertingEndsWithTheLastConversion();
    void onlyAChangeOfConvertingIsTold();
    void updatedModelCanBeUpdatedAgain();
};

void TestBimConversions::stateFollowsTheEngine()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    bim.tell(uid, State::Converting);
    QCOMPARE(bim.shown(), QStringList("a 1"));
    bim.tell(uid, State::Waiting);
    QCOMPARE(bim.shown(), QStringList("a 0"));
}

void TestBimConversions::unknownUidIsLoggedAndNothingElse()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.tell("nobody", State::ConvertFinished);
    QCOMPARE(bim.log.take(), QStringList(R"(warning: not found state with  "nobody")"));
    QCOMPARE(bim.shown(), QStringList("model m 2"));
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestBimConversions::unknownUidDoesNotLookAtConverting()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    bim.mgr().syncProjList("bim"); // the entry leaves the list
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.log.take(), QStringList(QStringLiteral(R"(warning: not found state with  "%1")").arg(uid)));
    QCOMPARE(bim.converting(), QString("true 1"));
}

void TestBimConversions::finishedModelIsTakenIntoTheProject()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(Fakes::CallsOf(changes),
             QStringList({"OpenProject(bim,)", QStringLiteral("ImportModelProj(%1,%2)").arg(uid, bim.data()),
                          "OpenProject(bim,data)", QStringLiteral("AddKyvProj(bim,%1)").arg(uid)}));
    QCOMPARE(bim.converting(), QString("false 1"));
    QCOMPARE(bim.log.take(), QStringList());
}

void TestBimConversions::finishedModelIsShownUnderItsNameInTheProject()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.shown(), QStringList("imported 2"));
    QCOMPARE(bim.named("imported")->uid, uid);
    QCOMPARE(bim.listChanged->size(), 1);
}

void TestBimConversions::failedImportIsLoggedAndShownAsDone()
{
    BimSuite bim;
    bim.sync("bim");
    bim.store().takesIn = false;
    const auto uid = bim.add("bim");
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.log.take(),
             QStringList(QStringLiteral(R"(warning: ImportModelProj failed  "%1")").arg(uid)));
    QCOMPARE(bim.shown(), QStringList("a 2"));
    QCOMPARE(int(bim.named("a")->pendingOp), int(State::OpNone));
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(Fakes::CallsOf({"AddKyvProj"}), QStringList());
    QCOMPARE(bim.converting(), QString("false 1"));
}

void TestBimConversions::importIntoAClosedProjectFails()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    Fakes::SmartDB::instance().find("bim")->isOpen = false;
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.log.take(),
             QStringList(QStringLiteral(R"(warning: ImportModelProj failed  "%1")").arg(uid)));
}

void TestBimConversions::importWithoutADatabaseFails()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    Fakes::SmartDB::instance().hasDatabase = false;
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.log.take(),
             QStringList(QStringLiteral(R"(warning: ImportModelProj failed  "%1")").arg(uid)));
}

void TestBimConversions::importedModelWithoutARecordIsNotTold()
{
    BimSuite bim;
    bim.sync("bim");
    bim.store().losesRecords = true;
    const auto uid = bim.add("bim");
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.shown(), QStringList("a 2"));
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(Fakes::CallsOf({"AddKyvProj"}), QStringList());
    QCOMPARE(bim.log.take(), QStringList());
}

void TestBimConversions::failedImportIsCorrectedByTheNextSync()
{
    BimSuite bim;
    bim.sync("bim");
    bim.store().takesIn = false;
    bim.tell(bim.add("bim"), State::ConvertFinished);
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList());
}

void TestBimConversions::finishedUpdateSwapsTheModels()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    const auto uid = bim.named("b")->uid;
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(
        Fakes::CallsOf(changes),
        QStringList({"OpenProject(bim,)", QStringLiteral("UpdateModelProj(m,%1,%2)").arg(uid, bim.data()),
                     QStringLiteral("UpdateKyvProj(bim,m,%1)").arg(uid)}));
    QCOMPARE(bim.shown(), QStringList("b 2"));
    QCOMPARE(int(bim.named("b")->pendingOp), int(State::OpNone));
    QCOMPARE(bim.converting(), QString("false 1"));
    QCOMPARE(bim.listChanged->size(), 0);
}

void TestBimConversions::failedUpdateIsLoggedAndShownAsDone()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.store().takesIn = false;
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    const auto uid = bim.named("b")->uid;
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QCOMPARE(bim.log.take(),
             QStringList(QStringLiteral(R"(warning: UpdateModelProj failed  "m" "%1")").arg(uid)));
    QCOMPARE(bim.shown(), QStringList("b 2"));
    QCOMPARE(int(bim.named("b")->pendingOp), int(State::OpNone));
    QCOMPARE(Fakes::CallsOf({"UpdateKyvProj"}), QStringList());
}

void TestBimConversions::failedConversionIsShownAndNotTaken()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    bim.forget();
    bim.tell(uid, State::ConvertFailed);
    QCOMPARE(bim.shown(), QStringList("a 3"));
    QCOMPARE(int(bim.named("a")->pendingOp), int(State::OpNone));
    QCOMPARE(Fakes::Calls(), QStringList());
    QCOMPARE(bim.converting(), QString("false 1"));
}

void TestBimConversions::failedUpdateKeepsTheOldModelInTheProject()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    bim.tell(bim.named("b")->uid, State::ConvertFailed);
    QCOMPARE(bim.shown(), QStringList("b 3"));
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList("model m 2"));
}

void TestBimConversions::otherStatesLeaveTheConversionPending_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("waiting") << int(State::Waiting);
    QTest::newRow("converting") << int(State::Converting);
    QTest::newRow("one that nobody knows") << 7;
}

void TestBimConversions::otherStatesLeaveTheConversionPending()
{
    QFETCH(const int, state);
    BimSuite bim;
    bim.sync("bim");
    bim.tell(bim.add("bim"), state);
    QCOMPARE(int(bim.named("a")->pendingOp), int(State::OpAdd));
    QCOMPARE(bim.shown(), QStringList(QStringLiteral("a %1").arg(state)));
    QCOMPARE(bim.converting(), QString("true 1"));
}

void TestBimConversions::repeatedWordChangesNothing()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    bim.tell(uid, State::ConvertFinished);
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    bim.tell(uid, State::ConvertFailed);
    bim.tell(uid, State::Converting);
    QCOMPARE(bim.shown(), QStringList("imported 2"));
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(Fakes::Calls(), QStringList());
    QCOMPARE(bim.log.take(), QStringList());
}

void TestBimConversions::wordForAnEntryOfTheDatabaseIsIgnored()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.tell("m", State::ConvertFailed);
    QCOMPARE(bim.shown(), QStringList("model m 2"));
}

void TestBimConversions::ignoredWordStillLooksAtConverting()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    static_cast<void>(bim.add("bim"));
    bim.mgr().syncProjList("bim"); // what is converted leaves the list, and nobody has looked yet
    QCOMPARE(bim.converting(), QString("true 1"));
    bim.tell("m", State::Converting);
    QCOMPARE(bim.converting(), QString("false 2"));
}

void TestBimConversions::modelOfAnotherProjectIsTakenIntoThatOne()
{
    BimSuite bim;
    bim.sync("other");
    bim.sync("bim");
    const auto uid = bim.add("other");
    bim.forget();
    bim.tell(uid, State::ConvertFinished);
    QVERIFY(Fakes::Calls().contains("OpenProject(other,)"));
    QVERIFY(bim.store("other").HasModelProj(ZRSmartFormat::GuidFromText(uid.toStdWString())));
    QCOMPARE(bim.shown(), QStringList());
    QVERIFY(Fakes::Calls().contains(QStringLiteral("AddKyvProj(other,%1)").arg(uid)));
}

void TestBimConversions::conversionOfAnotherProjectDoesNotCount()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("other");
    bim.tell(uid, State::Converting);
    QCOMPARE(bim.converting(), QString("false 0"));
}

void TestBimConversions::convertingEndsWithTheLastConversion()
{
    BimSuite bim;
    bim.sync("bim");
    const auto first = bim.add("bim");
    const auto second = bim.add("bim");
    bim.tell(first, State::ConvertFinished);
    QCOMPARE(bim.converting(), QString("true 1"));
    bim.tell(second, State::ConvertFailed);
    QCOMPARE(bim.converting(), QString("false 2"));
}

void TestBimConversions::onlyAChangeOfConvertingIsTold()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    static_cast<void>(bim.add("bim"));
    bim.tell(uid, State::Converting);
    QCOMPARE(bim.convertingChanged->size(), 1);
    QCOMPARE(bim.convertingChanged->at(0).at(0).toBool(), true);
}

void TestBimConversions::updatedModelCanBeUpdatedAgain()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().update("bim", QUrl("/m/b.kyv"), "m");
    const auto second = bim.named("b")->uid;
    bim.tell(second, State::ConvertFinished);
    bim.mgr().update("bim", QUrl("/m/c.kyv"), second);
    const auto third = bim.named("c")->uid;
    bim.forget();
    bim.tell(third, State::ConvertFinished);
    QVERIFY(Fakes::Calls().contains(QStringLiteral("UpdateKyvProj(bim,%1,%2)").arg(second, third)));
}

QTEST_MAIN(TestBimConversions)
#include "test_bimconversions.moc"
