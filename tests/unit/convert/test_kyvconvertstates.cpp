// SPDX-License-Identifier: MIT
#include "convert/kyvconvertdata.h"
#include "convert/kyvconvertstates.h"

#include "fakes/logbook.h"

#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

class TestKyvConvertStates : public QObject
{
    Q_OBJECT

private slots:
    void everyStateHasItsPictureAndText_data();
    void everyStateHasItsPictureAndText();
    void rowShowsItsStateWhole();
    void statusOfTheServerIsAState_data();
    void statusOfTheServerIsAState();
    void freshRowIsInNoQueue();
    void changesAreTold_data();
    void changesAreTold();
};

void TestKyvConvertStates::everyStateHasItsPictureAndText_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("text");
    QTest::newRow("converted") << 0 << "qrc:/images/pop_bt_ic_prosperity.png"
                               << "kyv转换成功";
    QTest::newRow("waits to be unpacked") << 1 << "qrc:/images/pop_bt_ic_translation.png"
                                          << "kyv解包排队中,";
    QTest::newRow("unpacked") << 2 << "qrc:/images/pop_bt_ic_translation.png"
                              << "kyv解包中";
    QTest::newRow("waits to be sent") << 3 << "qrc:/images/pop_bt_ic_translation.png"
                                      << "kyv上传排队中,";
    QTest::newRow("sent") << 4 << "qrc:/images/pop_bt_ic_update.png"
                          << "kyv上传中";
    QTest::newRow("waits there") << 5 << "qrc:/images/pop_bt_ic_translation.png"
                                 << "kyv服务器转换排队中,";
    QTest::newRow("converted there") << 6 << "qrc:/images/card_ic_transition.png"
                                     << "kyv服务器转换中";
    QTest::newRow("not unpacked") << 7 << "qrc:/images/pop_bt_ic_defeat.png"
                                  << "kyv本地解包失败";
    QTest::newRow("not sent") << 8 << "qrc:/images/pop_bt_ic_defeat.png"
                              << "kyv上传失败";
    QTest::newRow("not converted") << 9 << "qrc:/images/pop_bt_ic_defeat.png"
                                   << "kyv转换失败";
    QTest::newRow("beyond") << 10 << "qrc:/images/pop_bt_ic_prosperity.png"
                            << "";
    QTest::newRow("below") << -1 << "qrc:/images/pop_bt_ic_prosperity.png"
                           << "";
}

void TestKyvConvertStates::everyStateHasItsPictureAndText()
{
    QFETCH(int, state);
    QTEST(KyvStateLook(state).image, "image");
    QTEST(KyvStateLook(state).pointText, "text");
}

void TestKyvConvertStates::rowShowsItsStateWhole()
{
    CKyvConvertData row;
    row.showState(4);
    QCOMPARE(row.state(), 4);
    QCOMPARE(row.image(), QString("qrc:/images/pop_bt_ic_update.png"));
    QCOMPARE(row.pointText(), QString("kyv上传中"));
}

void TestKyvConvertStates::statusOfTheServerIsAState_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("2") << "2" << 0 << true;
    QTest::newRow("3") << "3" << 6 << true;
    QTest::newRow("4") << "4" << 9 << true;
    QTest::newRow("6") << "6" << 5 << true;
    QTest::newRow("1") << "1" << 5 << false;
    QTest::newRow("5") << "5" << 5 << false;
    QTest::newRow("empty") << "" << 5 << false;
    QTest::newRow("words") << "running" << 5 << false;
    QTest::newRow("blank before") << " 2" << 5 << false;
}

void TestKyvConvertStates::statusOfTheServerIsAState()
{
    QFETCH(QString, status);
    QFETCH(bool, isKnown);
    Fakes::LogBook log;
    QTEST(convertServiceStateToLocal(status), "state");
    const auto line = QString("debug: convertServiceStateToLocal faild status:  \"%1\"").arg(status);
    QCOMPARE(log.take(), isKnown ? QStringList() : QStringList(line));
}

void TestKyvConvertStates::freshRowIsInNoQueue()
{
    const CKyvConvertData row;
    QCOMPARE(row.property("state"), QVariant(0));
    QCOMPARE(row.property("sort"), QVariant(-1));
    QCOMPARE(row.property("process"), QVariant(0.0));
    QCOMPARE(row.property("guid"), QVariant(QString()));
}

void TestKyvConvertStates::changesAreTold_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char* name : {"guid", "name", "image", "pointText", "state", "sort", "process"})
        QTest::newRow(name) << QByteArray(name);
}

void TestKyvConvertStates::changesAreTold()
{
    QFETCH(QByteArray, name);
    CKyvConvertData row;
    QSignalSpy told(&row, QByteArray("2" + name + "Changed()").constData());
    const auto setAll = [&row] {
        row.setGuid("g");
        row.setName("n");
        row.setImage("i");
        row.setPointText("p");
        row.setState(3);
        row.setSort(2);
        row.setProcess(0.5);
    };
    setAll();
    QCOMPARE(told.count(), 1);
    setAll();
    QCOMPARE(told.count(), 1);
}

QTEST_GUILESS_MAIN(TestKyvConvertStates)
#include "test_kyvconvertstates.moc"
