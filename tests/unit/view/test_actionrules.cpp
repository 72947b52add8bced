// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/actionrules.h"

#include <QTest>

using namespace TorvoEditor;

namespace
{

QString Utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

class TestActionRules : public QObject
{
    Q_OBJECT

private slots:
    void numbersOfTheOperations();
    void operationHasItsWords_data();
    void operationHasItsWords();
    void serverStateRefuses_data();
    void serverStateRefuses();
    void wayOfAnUpload_data();
    void wayOfAnUpload();
    void failureHasItsText_data();
    void failureHasItsText();
};

void TestActionRules::numbersOfTheOperations()
{
    QCOMPARE(int(PO_None), 0);
    QCOMPARE(int(PO_Download), 1);
    QCOMPARE(int(PO_Upload), 2);
    QCOMPARE(int(PO_Update), 3);
    QCOMPARE(int(PO_Upgrade), 4);
}

void TestActionRules::operationHasItsWords_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("text");
    QTest::newRow("download") << 1 << Utf8("工程下载中，请稍后重试");
    QTest::newRow("upload") << 2 << Utf8("工程上传中，请稍后重试");
    QTest::newRow("update") << 3 << Utf8("工程更新中，请稍后重试");
    QTest::newRow("upgrade has none") << 4 << "";
}

void TestActionRules::operationHasItsWords()
{
    QFETCH(int, operation);
    QTEST(BusyText(static_cast<ProjOperateEnum>(operation)), "text");
}

void TestActionRules::serverStateRefuses_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("download");
    QTest::addColumn<QString>("upload");
    QTest::addColumn<QString>("update");
    // clang-format off
    QTest::newRow("normal") << 0 << "" << "" << "";
    QTest::newRow("upload failed") << 1 << Utf8("服务器本工程已上传失败，请先强制上传")
                                   << "" << Utf8("服务器本工程上传失败，请先强制上传");
    QTest::newRow("uploading") << 2 << Utf8("服务器本工程正在上传中，请稍后再试")
                               << Utf8("服务器本工程正在上传中，请稍后重试")
                               << Utf8("服务器本工程正在上传中，请稍后重试");
    QTest::newRow("not there") << 3 << "" << "" << "";
    QTest::newRow("converting") << 4 << Utf8("服务器本工程正在转换中，请稍后再试")
                                << Utf8("服务器本工程正在转换中，请稍后重试") << "";
    // clang-format on
}

void TestActionRules::serverStateRefuses()
{
    QFETCH(int, state);
    QTEST(DownloadRefusal(state), "download");
    QTEST(UploadRefusal(state), "upload");
    QTEST(UpdateRefusal(state), "update");
}

void TestActionRules::wayOfAnUpload_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("hasSubToSend");
    QTest::addColumn<int>("way");
    const int none = int(UploadWay::None);
    const int asAsked = int(UploadWay::AsAsked);
    const int forced = int(UploadWay::Forced);
    QTest::newRow("only here") << 0 << false << forced;
    QTest::newRow("the same") << 1 << false << none;
    QTest::newRow("changed here") << 2 << false << asAsked;
    QTest::newRow("changed on the server") << 3 << false << none;
    QTest::newRow("changed on both sides") << 4 << false << forced;
    QTest::newRow("last upload failed") << 5 << false << none;
    QTest::newRow("only here, with a part") << 0 << true << forced;
    QTest::newRow("the same, with a part") << 1 << true << asAsked;
    QTest::newRow("changed here, with a part") << 2 << true << asAsked;
    QTest::newRow("changed on the server, with a part") << 3 << true << asAsked;
    QTest::newRow("changed on both sides, with a part") << 4 << true << forced;
    QTest::newRow("last upload failed, with a part") << 5 << true << asAsked;
}

void TestActionRules::wayOfAnUpload()
{
    QFETCH(int, state);
    QFETCH(bool, hasSubToSend);
    QTEST(int(UploadWayOf(state, hasSubToSend)), "way");
}

void TestActionRules::failureHasItsText_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("text");
    const QString expired = Utf8("坏了<br/>登录已过期,请重新登录!");
    const QString plain = Utf8("坏了");
    QTest::newRow("expired login") << R"({"code":40014})" << expired;
    QTest::newRow("expired login with words") << R"({"msg":"x","code":40014})" << expired;
    QTest::newRow("another code") << R"({"code":40015,"msg":"40014"})" << plain;
    QTest::newRow("code as text") << R"({"code":"40014"})" << plain;
    QTest::newRow("empty object") << "{}" << plain;
    QTest::newRow("array") << "[40014]" << plain;
    QTest::newRow("no JSON") << "40014" << plain;
    QTest::newRow("nothing") << "" << plain;
}

void TestActionRules::failureHasItsText()
{
    QFETCH(QString, reason);
    QTEST(FailureText(Utf8("坏了"), reason), "text");
}

QTEST_GUILESS_MAIN(TestActionRules)
#include "test_actionrules.moc"
