// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "concurrency/task.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"

#include <memory>

#include <QJsonObject>
#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

void Answer(const QString& query, const QString& argument, const Fakes::Reply& reply)
{
    SmartDB::instance().net.setReply(query, argument, reply);
}

} // namespace

class TestProjectServer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void typeIsTheServersText();
    void typeAfterAnErrorIsNull();
    void cancelledTypeQueryPassesToTheCaller();
    void emptyAnswerAllowsTheUpload();
    void refusalGivesItsReason();
    void refusalThatIsNoJsonLeavesTheReason();
    void cancelledPermissionIsARefusalAndLogged();
    void countryIsTheFirstOfTheList();
    void emptyListOfCountriesIsLogged_data();
    void emptyListOfCountriesIsLogged();
    void listWithoutACountryGivesAnEmptyText();
    void failedListOfCountriesIsLogged();
    void cancelledListOfCountriesPassesToTheCaller();
    void regionsAreHandedOnAsTheyAre();
    void regionsLogTheWordsOfTheCountries();
    void cancelledRegionsPassToTheCaller();
    void fileIsFetchedFromTheProjectsFolder();
    void failedFileIsLogged();
    void withoutADatabaseEveryQueryFails();

private:
    std::unique_ptr<Fakes::Surroundings> m_around;
    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<CProjectMgr> m_projects;
};

void TestProjectServer::init()
{
    m_around = std::make_unique<Fakes::Surroundings>();
    m_log = std::make_unique<Fakes::LogBook>();
    m_projects = std::make_unique<CProjectMgr>();
    m_projects->Init();
    Fakes::ForgetCalls();
}

void TestProjectServer::cleanup()
{
    m_projects.reset();
    m_log.reset();
    m_around.reset();
}

void TestProjectServer::typeIsTheServersText()
{
    Answer("GetProjType", "a", {"BIM", {}, false, {}});
    QCOMPARE(m_projects->GetProjType("a"), QString("BIM"));
    QCOMPARE(Fakes::Calls(), QStringList("GetProjType(a)"));
}

void TestProjectServer::typeAfterAnErrorIsNull()
{
    QVERIFY(m_projects->GetProjType("unreachable").isNull());
}

void TestProjectServer::cancelledTypeQueryPassesToTheCaller()
{
    Answer("GetProjType", "a", {{}, {}, true, {}});
    QVERIFY_EXCEPTION_THROWN(m_projects->GetProjType("a"), Concurrency::task_canceled);
}

void TestProjectServer::emptyAnswerAllowsTheUpload()
{
    Answer("CanAppIdUpload", "app", {});
    QString reason = "untouched";
    QVERIFY(m_projects->CanAppIdUpload("app", reason));
    QCOMPARE(reason, QString("untouched"));
}

void TestProjectServer::refusalGivesItsReason()
{
    Answer("CanAppIdUpload", "app", {{}, QString::fromUtf8("{\"msg\": \"额度已用完\"}"), false, {}});
    QString reason = "untouched";
    QVERIFY(!m_projects->CanAppIdUpload("app", reason));
    QCOMPARE(reason, QString::fromUtf8("额度已用完"));
}

void TestProjectServer::refusalThatIsNoJsonLeavesTheReason()
{
    Answer("CanAppIdUpload", "app", {{}, "<html>", false, {}});
    QString reason = "untouched";
    QVERIFY(!m_projects->CanAppIdUpload("app", reason));
    QCOMPARE(reason, QString("untouched"));
}

void TestProjectServer::cancelledPermissionIsARefusalAndLogged()
{
    Answer("CanAppIdUpload", "app", {{}, {}, false, "broken"});
    QString reason;
    QVERIFY(!m_projects->CanAppIdUpload("app", reason));
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::CanAppIdUpload GetProjStatus error:  broken"));
}

void TestProjectServer::countryIsTheFirstOfTheList()
{
    const QString reply = R"([{"id": "100000"}, {"id": "2"}])";
    Answer("GetCountryList", {}, {reply, {}, false, {}});
    QString id;
    QVERIFY(m_projects->GetCountryId(id));
    QCOMPARE(id, QString("100000"));
    QCOMPARE(m_log->take().size(), 1);
}

void TestProjectServer::emptyListOfCountriesIsLogged_data()
{
    QTest::addColumn<QString>("reply");
    QTest::newRow("nothing") << "";
    QTest::newRow("half a list") << "[{\"id\": ";
    QTest::newRow("a web page") << "<html></html>";
}

void TestProjectServer::emptyListOfCountriesIsLogged()
{
    QFETCH(QString, reply);
    Answer("GetCountryList", {}, {reply, {}, false, {}});
    QString id = "untouched";
    QVERIFY(!m_projects->GetCountryId(id));
    QCOMPARE(id, QString("untouched"));
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::GetCountryList has no data!"));
}

void TestProjectServer::listWithoutACountryGivesAnEmptyText()
{
    Answer("GetCountryList", {}, {"[]", {}, false, {}});
    QString id = "untouched";
    QVERIFY(m_projects->GetCountryId(id));
    QCOMPARE(id, QString());
}

void TestProjectServer::failedListOfCountriesIsLogged()
{
    Answer("GetCountryList", {}, {{}, "no server", false, {}});
    QString id;
    QVERIFY(!m_projects->GetCountryId(id));
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::GetCountryList error :  \"no server\""));
}

void TestProjectServer::cancelledListOfCountriesPassesToTheCaller()
{
    Answer("GetCountryList", {}, {{}, {}, true, {}});
    QString id;
    QVERIFY_EXCEPTION_THROWN(static_cast<void>(m_projects->GetCountryId(id)), Concurrency::task_canceled);
}

void TestProjectServer::regionsAreHandedOnAsTheyAre()
{
    Answer("GetAdministrativeRegion", "310000", {R"([{"id": "310100", "name": "n"}, 7])", {}, false, {}});
    QJsonArray regions;
    QVERIFY(m_projects->GetAdministrativeRegion("310000", regions));
    QCOMPARE(regions, (QJsonArray{QJsonObject{{"id", "310100"}, {"name", "n"}}, 7}));
}

void TestProjectServer::regionsLogTheWordsOfTheCountries()
{
    QJsonArray regions = {1};
    Answer("GetAdministrativeRegion", "1", {{}, "no server", false, {}});
    QVERIFY(!m_projects->GetAdministrativeRegion("1", regions));
    Answer("GetAdministrativeRegion", "1", {});
    QVERIFY(!m_projects->GetAdministrativeRegion("1", regions));
    QCOMPARE(regions, QJsonArray({1}));
    QCOMPARE(m_log->take(), QStringList({"debug: CProjectMgr::GetCountryList error :  \"no server\"",
                                         "debug: CProjectMgr::GetCountryList has no data!"}));
}

void TestProjectServer::cancelledRegionsPassToTheCaller()
{
    Answer("GetAdministrativeRegion", "1", {{}, {}, true, {}});
    QJsonArray regions;
    QVERIFY_EXCEPTION_THROWN(static_cast<void>(m_projects->GetAdministrativeRegion("1", regions)),
                             Concurrency::task_canceled);
}

void TestProjectServer::fileIsFetchedFromTheProjectsFolder()
{
    Answer("DownloadFileAry", "/proj_a/projimage.jpg", {});
    QVERIFY(m_projects->DownloadProjFile("a", "projimage.jpg", "/there/a.jpg"));
    QCOMPARE(Fakes::Calls(),
             QStringList({"DownloadFileAry to /there/a.jpg", "DownloadFileAry(/proj_a/projimage.jpg)"}));
}

void TestProjectServer::failedFileIsLogged()
{
    QVERIFY(!m_projects->DownloadProjFile("a", "f", "/there/f"));
    QCOMPARE(m_log->take(),
             QStringList("debug: downLoadProjRes: \"/proj_a/f\"  falid, error: \"unreachable\""));
}

void TestProjectServer::withoutADatabaseEveryQueryFails()
{
    const auto projects = std::make_unique<CProjectMgr>();
    QString text;
    QJsonArray regions;
    QVERIFY(projects->GetProjType("a").isNull());
    QVERIFY(!projects->CanAppIdUpload("a", text));
    QVERIFY(!projects->GetCountryId(text));
    QVERIFY(!projects->GetAdministrativeRegion("1", regions));
    QVERIFY(!projects->DownloadProjFile("a", "f", "l"));
    QVERIFY(projects->GetLastError().isEmpty());
    QCOMPARE(Fakes::Calls(), QStringList());
}

QTEST_GUILESS_MAIN(TestProjectServer)
#include "test_projectserver.moc"
