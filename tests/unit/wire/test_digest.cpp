// SPDX-License-Identifier: MIT
// moc cannot read the standard headers behind these.
#ifndef Q_MOC_RUN
#include "wire/digest.h"
#endif

#include <QTest>

using namespace wire;

class TestDigest : public QObject
{
    Q_OBJECT

private slots:
    void digestIsSha256();
    void digestOfPiecesIsThatOfTheWhole();
    void hexTextSurvives();
    void otherTextIsNoDigest_data();
    void otherTextIsNoDigest();
};

void TestDigest::digestIsSha256()
{
    // The examples of FIPS 180-4.
    QCOMPARE(ToHex(DigestOf("abc")),
             std::string("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    QCOMPARE(ToHex(DigestOf("")),
             std::string("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"));
}

void TestDigest::digestOfPiecesIsThatOfTheWhole()
{
    Digester digester;
    digester.add("a");
    digester.add("");
    digester.add("bc");
    QVERIFY(digester.finish() == DigestOf("abc"));
    // It starts anew.
    QVERIFY(digester.finish() == DigestOf(""));
}

void TestDigest::hexTextSurvives()
{
    const auto digest = DigestOf("x");
    QVERIFY(DigestFromHex(ToHex(digest)) == digest);
}

void TestDigest::otherTextIsNoDigest_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray good(64, 'a');
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("short") << good.left(63);
    QTest::newRow("long") << good + "a";
    QTest::newRow("upper case") << QByteArray(64, 'A');
    QTest::newRow("another letter") << good.left(63) + "g";
    QTest::newRow("a path") << QByteArray("../../") + good.left(58);
}

void TestDigest::otherTextIsNoDigest()
{
    QFETCH(QByteArray, text);
    QVERIFY(!DigestFromHex(text.toStdString()));
}

QTEST_APPLESS_MAIN(TestDigest)
#include "test_digest.moc"
