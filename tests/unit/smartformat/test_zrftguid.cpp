// SPDX-License-Identifier: MIT
#include "ZRSmartFormat/zrftguid.h"

#include <algorithm>
#include <cwctype>
#include <unordered_set>

#include <QTest>

#include <rapidcheck.h>

using ZRSmartFormat::GuidFromText;
using ZRSmartFormat::GuidToText;
using ZRSmartFormat::SZRFTGuid;

namespace
{

/// Any true guid.
rc::Gen<SZRFTGuid> AnyGuid()
{
    return rc::gen::map(rc::gen::container<std::vector<std::uint8_t>>(16, rc::gen::arbitrary<std::uint8_t>()),
                        [](const std::vector<std::uint8_t>& bytes) {
                            SZRFTGuid guid;
                            guid.Data1 = static_cast<std::uint32_t>(bytes[0]) << 24U | bytes[1] << 16U |
                                         bytes[2] << 8U | bytes[3];
                            guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8U | bytes[5]);
                            guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8U | bytes[7]);
                            std::copy(bytes.begin() + 8, bytes.end(), std::begin(guid.Data4));
                            return guid;
                        });
}

/// Any text, of signs of many scripts.
rc::Gen<std::wstring> AnyText()
{
    return rc::gen::container<std::wstring>(
        rc::gen::map(rc::gen::inRange(1, 0xd7ff), [](int sign) { return static_cast<wchar_t>(sign); }));
}

} // namespace

class TestZrftGuid : public QObject
{
    Q_OBJECT

private slots:
    void trueGuidIsReadIntoItsFields();
    void caseDoesNotMatter();
    void signsBetweenThePiecesAreNotLookedAt();
    void otherTextBecomesAnAlias_data();
    void otherTextBecomesAnAlias();
    void emptyTextBecomesTheAliasNone();
    void trueGuidPrintsInLowerCase();
    void aliasNonePrintsAsTheEmptyText();
    void aliasPrintsAsItStands();
    void everyGuidSurvivesItsText();
    void everyTextSurvivesItsKey();
    void equalKeysHaveEqualHashes();
};

void TestZrftGuid::trueGuidIsReadIntoItsFields()
{
    const auto guid = GuidFromText(L"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");
    QCOMPARE(guid.Data1, 0x5b0f6a52U);
    QCOMPARE(guid.Data2, quint16(0x6c1e));
    QCOMPARE(guid.Data3, quint16(0x4d0b));
    const std::uint8_t last[8] = {0x9a, 0x35, 0x1f, 0x1d, 0x6b, 0x7c, 0x0a, 0x01};
    QVERIFY(std::equal(std::begin(last), std::end(last), std::begin(guid.Data4)));
    QVERIFY(guid.alias.empty());
}

void TestZrftGuid::caseDoesNotMatter()
{
    QVERIFY(GuidFromText(L"5B0F6A52-6C1E-4D0B-9A35-1F1D6B7C0A01") ==
            GuidFromText(L"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01"));
}

void TestZrftGuid::signsBetweenThePiecesAreNotLookedAt()
{
    QVERIFY(GuidFromText(L"5b0f6a52_6c1e 4d0b中9a35x1f1d6b7c0a01") ==
            GuidFromText(L"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01"));
}

void TestZrftGuid::otherTextBecomesAnAlias_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("35 signs") << "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a0";
    QTest::newRow("37 signs") << "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a011";
    QTest::newRow("no number in the first piece") << "5b0f6a5g-6c1e-4d0b-9a35-1f1d6b7c0a01";
    QTest::newRow("no number in the second piece") << "5b0f6a52-6cxe-4d0b-9a35-1f1d6b7c0a01";
    QTest::newRow("no number in the third piece") << "5b0f6a52-6c1e-4d.b-9a35-1f1d6b7c0a01";
    QTest::newRow("no number in the last pieces") << "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a0z";
    QTest::newRow("a sign in a number") << "-b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
    QTest::newRow("a blank in a number") << " b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
    QTest::newRow("a word") << "3DTILES";
    QTest::newRow("a text of another script") << QStringLiteral("工程");
}

void TestZrftGuid::otherTextBecomesAnAlias()
{
    QFETCH(QString, text);
    SZRFTGuid expected;
    expected.alias = text.toStdWString();
    QVERIFY(GuidFromText(text.toStdWString()) == expected);
}

void TestZrftGuid::emptyTextBecomesTheAliasNone()
{
    SZRFTGuid expected;
    expected.alias = L"none";
    QVERIFY(GuidFromText(L"") == expected);
}

void TestZrftGuid::trueGuidPrintsInLowerCase()
{
    QCOMPARE(QString::fromStdWString(GuidToText(GuidFromText(L"5B0F6A52-6C1E-4D0B-9A35-1F1D6B7C0A01"))),
             QString("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01"));
    QCOMPARE(QString::fromStdWString(GuidToText(SZRFTGuid())),
             QString("00000000-0000-0000-0000-000000000000"));
}

void TestZrftGuid::aliasNonePrintsAsTheEmptyText()
{
    QVERIFY(GuidToText(GuidFromText(L"none")).empty());
}

void TestZrftGuid::aliasPrintsAsItStands()
{
    QCOMPARE(QString::fromStdWString(GuidToText(GuidFromText(L"3DTiles 工程"))),
             QString::fromUtf8("3DTiles 工程"));
}

void TestZrftGuid::everyGuidSurvivesItsText()
{
    QVERIFY(rc::check([] {
        const auto guid = *AnyGuid();
        auto text = GuidToText(guid);
        RC_ASSERT(text.size() == 36U);
        RC_ASSERT(GuidFromText(text) == guid);
        std::transform(text.begin(), text.end(), text.begin(),
                       [](wchar_t sign) { return std::towupper(sign); });
        RC_ASSERT(GuidFromText(text) == guid);
    }));
}

void TestZrftGuid::everyTextSurvivesItsKey()
{
    QVERIFY(rc::check([] {
        const auto text = *AnyText();
        RC_PRE(text.size() != 36U && text != L"none");
        RC_ASSERT(GuidToText(GuidFromText(text)) == text);
    }));
}

void TestZrftGuid::equalKeysHaveEqualHashes()
{
    QVERIFY(rc::check([] {
        const auto guid = *AnyGuid();
        const std::hash<SZRFTGuid> hash;
        RC_ASSERT(hash(guid) == hash(GuidFromText(GuidToText(guid))));
    }));
    const std::unordered_set<SZRFTGuid> keys = {GuidFromText(L"a"), GuidFromText(L"b"), GuidFromText(L"a")};
    QCOMPARE(keys.size(), std::size_t(2));
}

QTEST_APPLESS_MAIN(TestZrftGuid)
#include "test_zrftguid.moc"
