// SPDX-License-Identifier: MIT
#include "kyvconvert/converterwords.h"

#include <QObject>
#include <QTest>

using kyvconvert::ConverterWords;

class TestConverterWords : public QObject
{
    Q_OBJECT

private slots:
    void lastPercentageCounts();
    void lineMayComeInPieces();
    void reasonOfAFailureIsKept();
    void unfinishedLineSaysNothing();
    void whatIsNoLineOfTheConvertersIsDropped();
    void lineWithoutAnEndIsNotKeptForEver();
};

void TestConverterWords::lastPercentageCounts()
{
    ConverterWords words;
    words.take("{\"percent\": 10}\n{\"percent\": 40.5}\n");
    QCOMPARE(words.percent(), 40.5);
    QVERIFY(words.reason().empty());
}

void TestConverterWords::lineMayComeInPieces()
{
    ConverterWords words;
    words.take("{\"perc");
    words.take("ent\": 7");
    words.take("}\n");
    QCOMPARE(words.percent(), 7.0);
}

void TestConverterWords::reasonOfAFailureIsKept()
{
    ConverterWords words;
    words.take("{\"error\": \"no surfaces\", \"code\": 3}\n");
    QCOMPARE(words.reason(), std::string("no surfaces"));
}

void TestConverterWords::unfinishedLineSaysNothing()
{
    ConverterWords words;
    words.take("{\"percent\": 7}");
    QCOMPARE(words.percent(), 0.0);
}

void TestConverterWords::whatIsNoLineOfTheConvertersIsDropped()
{
    ConverterWords words;
    words.take("hello\n[1]\n{\"percent\": \"all\"}\n{\"error\": 4}\n\n{\"percent\": 3}\n");
    QCOMPARE(words.percent(), 3.0);
    QVERIFY(words.reason().empty());
}

void TestConverterWords::lineWithoutAnEndIsNotKeptForEver()
{
    ConverterWords words;
    words.take("{\"percent\": 5, \"more\": \"" + std::string(100000, 'x'));
    words.take("\"}\n{\"percent\": 6}\n");
    QCOMPARE(words.percent(), 6.0);
}

QTEST_GUILESS_MAIN(TestConverterWords)
#include "test_converterwords.moc"
