// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/gridviewdata.h"

#include <QMetaEnum>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

using TorvoEditor::CGridViewData;

class TestGridViewData : public QObject
{
    Q_OBJECT

private slots:
    void newCardHasTheFirstValues();
    void everyPropertyTellsOnlyAChange_data();
    void everyPropertyTellsOnlyAChange();
    void pictureOfTheSamePathIsShownAnew();
    void tipTextIsForReadingOnly();
    void statesHaveTheirNumbers_data();
    void statesHaveTheirNumbers();
};

void TestGridViewData::newCardHasTheFirstValues()
{
    const CGridViewData card;
    QCOMPARE(card.property("guid").toString(), QString());
    QCOMPARE(card.property("name").toString(), QString());
    QCOMPARE(card.property("projType").toString(), QString());
    QCOMPARE(card.property("imag").toString(), QString());
    QVERIFY(card.property("typeImag").toString().isNull());
    QCOMPARE(card.property("needUpgrade").toBool(), false);
    QCOMPARE(card.property("isUpgrade").toBool(), false);
    QCOMPARE(card.property("stateType").toInt(), 1);
    QCOMPARE(card.property("dealState").toInt(), 0);
    QVERIFY(card.property("tipText").toString().isNull());
    QCOMPARE(card.parent(), nullptr);
}

void TestGridViewData::everyPropertyTellsOnlyAChange_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("guid") << QByteArray("guid") << QVariant("a");
    QTest::newRow("name") << QByteArray("name") << QVariant("n");
    QTest::newRow("projType") << QByteArray("projType") << QVariant("BIM");
    QTest::newRow("typeImag") << QByteArray("typeImag") << QVariant("qrc:/images/bar_ic_bim.png");
    QTest::newRow("needUpgrade") << QByteArray("needUpgrade") << QVariant(true);
    QTest::newRow("isUpgrade") << QByteArray("isUpgrade") << QVariant(true);
    QTest::newRow("stateType") << QByteArray("stateType") << QVariant(4);
    QTest::newRow("dealState") << QByteArray("dealState") << QVariant(2);
}

void TestGridViewData::everyPropertyTellsOnlyAChange()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    CGridViewData card;
    const auto* metaObject = card.metaObject();
    const auto metaProperty = metaObject->property(metaObject->indexOfProperty(property));
    QCOMPARE(metaProperty.notifySignal().name(), property + "Changed");
    QSignalSpy changed(&card, metaProperty.notifySignal());
    QVERIFY(card.setProperty(property, value));
    QVERIFY(card.setProperty(property, value));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(card.property(property).toString(), value.toString());
}

void TestGridViewData::pictureOfTheSamePathIsShownAnew()
{
    CGridViewData card;
    QStringList shown;
    connect(&card, &CGridViewData::imagChanged, &card, [&] { shown.append(card.imag()); });
    card.setImag("file:///a.jpg");
    QCOMPARE(shown, QStringList("file:///a.jpg"));
    shown.clear();
    card.setImag("file:///a.jpg");
    QCOMPARE(shown, QStringList({"qrc:/images/card_ic_default.png", "file:///a.jpg"}));
}

void TestGridViewData::tipTextIsForReadingOnly()
{
    CGridViewData card;
    QVERIFY(!card.setProperty("tipText", "t"));
}

void TestGridViewData::statesHaveTheirNumbers_data()
{
    QTest::addColumn<QByteArray>("enumeration");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("value");
    const auto row = [](const char* enumeration, const char* name, int value) {
        QTest::newRow(name) << QByteArray(enumeration) << QByteArray(name) << value;
    };
    row("StateTypeEnum", "ST_LocalState", 0);
    row("StateTypeEnum", "ST_SynchroState", 1);
    row("StateTypeEnum", "ST_ModifyState", 2);
    row("StateTypeEnum", "ST_UpdateState", 3);
    row("StateTypeEnum", "ST_ConflictState", 4);
    row("StateTypeEnum", "ST_UpLoadFailedState", 5);
    row("DealStateEnum", "DS_NonState", 0);
    row("DealStateEnum", "DS_UploadState", 1);
    row("DealStateEnum", "DS_DownloadState", 2);
    row("DealStateEnum", "DS_UpDateState", 3);
}

void TestGridViewData::statesHaveTheirNumbers()
{
    QFETCH(QByteArray, enumeration);
    QFETCH(QByteArray, name);
    const auto& metaObject = CGridViewData::staticMetaObject;
    const auto found = metaObject.enumerator(metaObject.indexOfEnumerator(enumeration));
    bool isThere = false;
    QTEST(found.keyToValue(name, &isThere), "value");
    QVERIFY(isThere);
}

QTEST_GUILESS_MAIN(TestGridViewData)
#include "test_gridviewdata.moc"
