// SPDX-License-Identifier: MIT
#include "shell/savedlogin.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace shell;

class TestSavedLogin : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void loginSurvives();
    void fileIsForItsOwnerAlone();
    void passwordIsNotKept();
    void expiredLoginIsNone();
    void loginOfAnotherServerIsNone();
    void damagedFileIsNone_data();
    void damagedFileIsNone();
    void forgottenTokenLeavesTheAccount();
    void fileThatCannotBeWrittenIsTold();

private:
    QTemporaryDir m_folder;
    QString m_file;
    const Login m_login{"http://a", "wang", "token", QString::fromUtf8("王工"), 2000};
};

void TestSavedLogin::init()
{
    m_file = m_folder.filePath("savedLogin.json");
    QFile::remove(m_file);
}

void TestSavedLogin::loginSurvives()
{
    QVERIFY(!ReadSavedLogin(m_file, "http://a", 1000));
    QVERIFY(SaveLogin(m_file, m_login));
    const auto read = ReadSavedLogin(m_file, "http://a", 1000);
    QVERIFY(read);
    QCOMPARE(read->account, m_login.account);
    QCOMPARE(read->token, m_login.token);
    QCOMPARE(read->loginName, m_login.loginName);
    QCOMPARE(read->expires, m_login.expires);
    QCOMPARE(ReadSavedAccount(m_file), QString("wang"));
}

void TestSavedLogin::fileIsForItsOwnerAlone()
{
    QVERIFY(SaveLogin(m_file, m_login));
    constexpr auto others =
        QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;
    QCOMPARE(QFileInfo(m_file).permissions() & others, QFileDevice::Permissions());
}

void TestSavedLogin::passwordIsNotKept()
{
    QVERIFY(SaveLogin(m_file, m_login));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!file.readAll().contains("password"));
}

void TestSavedLogin::expiredLoginIsNone()
{
    QVERIFY(SaveLogin(m_file, m_login));
    QVERIFY(ReadSavedLogin(m_file, "http://a", 1999));
    QVERIFY(!ReadSavedLogin(m_file, "http://a", 2000));
}

void TestSavedLogin::loginOfAnotherServerIsNone()
{
    QVERIFY(SaveLogin(m_file, m_login));
    QVERIFY(!ReadSavedLogin(m_file, "http://b", 1000));
}

void TestSavedLogin::damagedFileIsNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << QByteArray(R"({"server": "http://a", "token": "t)");
    QTest::newRow("a list") << QByteArray("[1]");
    QTest::newRow("values of another kind") << QByteArray(R"({"server": 1, "token": {}, "expires": "late"})");
}

void TestSavedLogin::damagedFileIsNone()
{
    QFETCH(QByteArray, bytes);
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    QVERIFY(!ReadSavedLogin(m_file, "http://a", 1000));
    QCOMPARE(ReadSavedAccount(m_file), QString());
    ForgetToken(m_file);
    QVERIFY(SaveLogin(m_file, m_login));
    QVERIFY(ReadSavedLogin(m_file, "http://a", 1000));
}

void TestSavedLogin::forgottenTokenLeavesTheAccount()
{
    QVERIFY(SaveLogin(m_file, m_login));
    ForgetToken(m_file);
    QVERIFY(!ReadSavedLogin(m_file, "http://a", 1000));
    QCOMPARE(ReadSavedAccount(m_file), QString("wang"));
}

void TestSavedLogin::fileThatCannotBeWrittenIsTold()
{
    QVERIFY(!SaveLogin(m_folder.filePath("missing/savedLogin.json"), m_login));
}

QTEST_GUILESS_MAIN(TestSavedLogin)
#include "test_savedlogin.moc"
