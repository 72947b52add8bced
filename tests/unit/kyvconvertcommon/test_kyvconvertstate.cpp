// SPDX-License-Identifier: MIT
#include "KYVConvertCommon/kyvconvertstate.h"

#include <QSignalSpy>
#include <QTest>

using KYVConvertCommon::CKYVConvertState;

class TestKyvConvertState : public QObject
{
    Q_OBJECT

private slots:
    void newStateWaitsWithNothingPending();
    void changedNameIsTold();
    void sameNameIsNotToldAgain();
    void changedStateIsTold();
    void sameStateIsNotToldAgain();
    void screensReadWhatTheListShows();
};

void TestKyvConvertState::newStateWaitsWithNothingPending()
{
    const CKYVConvertState state;
    QCOMPARE(state.convertState(), CKYVConvertState::Waiting);
    QCOMPARE(int(state.pendingOp), int(CKYVConvertState::OpNone));
    QVERIFY(state.isKyvModel);
    QVERIFY(!state.isLevelModel);
}

void TestKyvConvertState::changedNameIsTold()
{
    CKYVConvertState state;
    const QSignalSpy told(&state, &CKYVConvertState::nameChanged);
    state.setName("a");
    QCOMPARE(state.name(), QString("a"));
    QCOMPARE(told.size(), 1);
}

void TestKyvConvertState::sameNameIsNotToldAgain()
{
    CKYVConvertState state;
    state.setName("a");
    const QSignalSpy told(&state, &CKYVConvertState::nameChanged);
    state.setName("a");
    QCOMPARE(told.size(), 0);
}

void TestKyvConvertState::changedStateIsTold()
{
    CKYVConvertState state;
    const QSignalSpy told(&state, &CKYVConvertState::convertStateChanged);
    state.setConvertState(CKYVConvertState::Converting);
    QCOMPARE(state.convertState(), CKYVConvertState::Converting);
    QCOMPARE(told.size(), 1);
}

void TestKyvConvertState::sameStateIsNotToldAgain()
{
    CKYVConvertState state;
    const QSignalSpy told(&state, &CKYVConvertState::convertStateChanged);
    state.setConvertState(CKYVConvertState::Waiting);
    QCOMPARE(told.size(), 0);
}

void TestKyvConvertState::screensReadWhatTheListShows()
{
    CKYVConvertState state;
    state.uid = "u";
    state.setName("n");
    state.setConvertState(CKYVConvertState::ConvertFailed);
    state.isLevelModel = true;
    QCOMPARE(state.property("uid").toString(), QString("u"));
    QCOMPARE(state.property("name").toString(), QString("n"));
    QCOMPARE(state.property("convertState").toInt(), 3);
    QVERIFY(state.property("isLevelModel").toBool());
}

QTEST_GUILESS_MAIN(TestKyvConvertState)
#include "test_kyvconvertstate.moc"
