// SPDX-License-Identifier: MIT
#include "tabs/tabmessages.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QTest>
#include <QVariant>

using namespace TorvoEditor;

class TestTabMessages : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void operatorMessageHasNothingElse();
    void textMessageCarriesItsText();
    void resizeMessageCountsTheTitleHeightTwice();
    void startMessageHasItsThirteenKeys();
    void startMessageKeepsEmptyLists();
    void optionalKeysStandOnlyWhenTheyAreSet_data();
    void optionalKeysStandOnlyWhenTheyAreSet();
    void optionalKeyThatIsSetToNothingStands();
    void messagesGoOutInTheIndentedForm();

private:
    [[nodiscard]] static StartInfo someStart();
};

void TestTabMessages::init()
{
    auto* app = QCoreApplication::instance();
    for (const char* name : {"epId", "epName", "iotUrl", "iotToken"})
        app->setProperty(name, QVariant());
    app->setProperty("token", "t");
    app->setProperty("serverAddr", "http://server");
    app->setProperty("sdkAddr", "http://sdk");
    app->setProperty("loginName", "me");
    app->setProperty("cookies", "c=1");
}

StartInfo TestTabMessages::someStart()
{
    return {"project-1", "{server}", QRect(2, 34, 1915, 1043), {"sub-2", "sub-1"}, "CIM"};
}

void TestTabMessages::operatorMessageHasNothingElse()
{
    QCOMPARE(OperatorMessage("show"), QJsonObject({{"operator", "show"}}));
}

void TestTabMessages::textMessageCarriesItsText()
{
    QCOMPARE(TextMessage("warn", "careful"), QJsonObject({{"operator", "warn"}, {"value", "careful"}}));
}

void TestTabMessages::resizeMessageCountsTheTitleHeightTwice()
{
    // The content area's top, 134, lies below the title of height 34.5 already.
    const QJsonObject expected{
        {"operator", "resize"}, {"x", 102}, {"y", 168.5}, {"w", 1915}, {"h", 1043},
    };
    QCOMPARE(ResizeMessage(QRect(102, 134, 1915, 1043), 34.5), expected);
}

void TestTabMessages::startMessageHasItsThirteenKeys()
{
    const QJsonObject expected{
        {"tabName", "project-1"},
        {"ipcServer", "{server}"},
        {"token", "t"},
        {"serverAddr", "http://server"},
        {"sdkAddr", "http://sdk"},
        {"loginName", "me"},
        {"x", 2},
        {"y", 34},
        {"w", 1915},
        {"h", 1043},
        {"subProj", QJsonArray({"sub-2", "sub-1"})},
        {"projMode", "CIM"},
        {"cookies", "c=1"},
    };
    QCOMPARE(expected.size(), 13);
    QCOMPARE(StartMessage(someStart()), expected);
}

void TestTabMessages::startMessageKeepsEmptyLists()
{
    auto info = someStart();
    info.subProjects.clear();
    QCOMPARE(StartMessage(info).value("subProj"), QJsonValue(QJsonArray()));
}

void TestTabMessages::optionalKeysStandOnlyWhenTheyAreSet_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char* name : {"epId", "epName", "iotUrl", "iotToken"})
        QTest::newRow(name) << QByteArray(name);
}

void TestTabMessages::optionalKeysStandOnlyWhenTheyAreSet()
{
    QFETCH(QByteArray, name);
    QVERIFY(!StartMessage(someStart()).contains(QString(name)));
    QCoreApplication::instance()->setProperty(name, "value");
    const auto message = StartMessage(someStart());
    QCOMPARE(message.value(QString(name)), QJsonValue("value"));
    QCOMPARE(message.size(), 14);
}

void TestTabMessages::optionalKeyThatIsSetToNothingStands()
{
    QCoreApplication::instance()->setProperty("epId", QString());
    QCOMPARE(StartMessage(someStart()).value("epId"), QJsonValue(""));
}

void TestTabMessages::messagesGoOutInTheIndentedForm()
{
    QCOMPARE(MessageBytes(TextMessage("info", QString::fromUtf8("提示"))),
             QByteArray("{\n    \"operator\": \"info\",\n    \"value\": \"提示\"\n}\n"));
}

QTEST_GUILESS_MAIN(TestTabMessages)
#include "test_tabmessages.moc"
