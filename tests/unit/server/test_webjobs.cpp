// SPDX-License-Identifier: MIT
#include "pageserver.h"

#include "server/web/joblist.h"

#include <ctime>
#include <fstream>

#include <QJsonArray>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

} // namespace

/// The conversions on the console.
class TestWebJobs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_server.reset(); }

    void jobsAreListedWithWhatTheyAreAt();
    void runningJobsStandInFrontAndEndedOnesLast();
    void strangerSeesNoJobs();
    void jobsOfADemonstrationAreSeenAndLeftAlone();
    void withoutALoginThereIsNoList();
    void cancelledJobGoesWithItsArchive();
    void cancelledRunningJobIsItsWorkersNoMore();
    void failedJobIsRetriedAtTheEndOfTheQueue();
    void retriedJobMayFailAsOftenAsANewOne();
    void retriedJobTakesTheOldModelsPlace();
    void retriedJobForgetsAnOldModelThatHasGone();
    void archiveOfAFailedJobStaysUntilItIsRemoved();
    void onlyFailedJobsAreRetried_data();
    void onlyFailedJobsAreRetried();
    void retryWithoutTheArchiveIsRefused();
    void strangerChangesNothing_data();
    void strangerChangesNothing();
    void actionsWantTheGuardOfTheBrowser_data();
    void actionsWantTheGuardOfTheBrowser();
    void actionsAreNoAddressesToOpen();
    void unknownJobsAndActionsAreNotFound();
    void consoleCarriesTheGuardOfItsBrowser();

private:
    /// A job whose archive is there, in the queue.
    void addJob(const std::string& id, const std::string& oldModel = {});
    void fail(const std::string& id, const std::string& reason = "r");
    [[nodiscard]] QJsonArray listed(const std::string& token);
    [[nodiscard]] QJsonObject entry(const std::string& id);
    [[nodiscard]] server::Reply act(const std::string& id, const std::string& action,
                                    const std::string& token);
    [[nodiscard]] bool hasFile(const std::string& id) const
    {
        return std::filesystem::exists(m_server->archives() / ("archive-" + id + ".kyv"));
    }

    std::unique_ptr<PageServer> m_server;
    std::string m_owner;
    std::string m_stranger;
};

void TestWebJobs::init()
{
    m_server = std::make_unique<PageServer>();
    m_owner = m_server->addAccount("owner");
    m_stranger = m_server->addAccount("stranger");
    (void)m_server->addProject(guid, "owner", "塔楼");
}

void TestWebJobs::addJob(const std::string& id, const std::string& oldModel)
{
    server::Archive archive;
    archive.id = "archive-" + id;
    archive.account = m_server->accountId("owner");
    archive.guid = guid;
    archive.path = guid + '/' + id;
    archive.size = 3;
    std::vector<std::string> replaced;
    (void)m_server->store().beginArchive(archive, std::time(nullptr), replaced);
    m_server->store().setFinished(archive.id, "digest", std::time(nullptr));
    std::ofstream(m_server->archives() / (archive.id + ".kyv")) << "abc";
    server::Job job;
    job.id = id;
    job.guid = guid;
    job.account = archive.account;
    job.path = archive.path;
    job.name = "模型 " + id;
    job.oldModel = oldModel;
    QCOMPARE(static_cast<int>(m_server->store().addJob(job, "digest")),
             static_cast<int>(server::Store::AddAnswer::added));
}

void TestWebJobs::fail(const std::string& id, const std::string& reason)
{
    const auto job = m_server->store().takeJob("w", std::time(nullptr) + 60);
    QVERIFY(job && job->id == id);
    m_server->store().failJob(id, "w", reason, std::time(nullptr));
}

QJsonArray TestWebJobs::listed(const std::string& token)
{
    return PageServer::objectOf(m_server->see({"jobs"}, token)).value("jobs").toArray();
}

QJsonObject TestWebJobs::entry(const std::string& id)
{
    for (const auto& job : listed(m_owner))
        if (job.toObject().value("id").toString().toStdString() == id)
            return job.toObject();
    return {};
}

server::Reply TestWebJobs::act(const std::string& id, const std::string& action, const std::string& token)
{
    server::Request request;
    request.method = "POST";
    request.path = {"jobs", id, action};
    request.isForPage = true;
    request.cookie = m_server->browserOf(token);
    request.guard = server::JobList::guardOf(request.cookie.substr(request.cookie.find('=') + 1));
    return m_server->api().answer(request);
}

void TestWebJobs::jobsAreListedWithWhatTheyAreAt()
{
    addJob("a");
    addJob("b");
    QVERIFY(m_server->store().takeJob("w", std::time(nullptr) + 60).has_value());
    QVERIFY(m_server->store().keepJob("a", "w", 42.5, std::time(nullptr) + 60));
    const auto running = entry("a");
    QCOMPARE(running.value("state").toString(), QStringLiteral("running"));
    QCOMPARE(running.value("percent").toDouble(), 42.5);
    QCOMPARE(running.value("name").toString(), QStringLiteral("模型 a"));
    QCOMPARE(running.value("project").toString().toStdString(), guid);
    QCOMPARE(running.value("projectName").toString(), QStringLiteral("塔楼"));
    QCOMPARE(running.value("mayChange").toBool(), true);
    QCOMPARE(entry("b").value("state").toString(), QStringLiteral("waiting"));
    QCOMPARE(entry("b").value("place").toInt(), 1);

    const auto now = std::time(nullptr);
    m_server->store().failJob("a", "w", "文件损坏", now);
    QCOMPARE(entry("a").value("state").toString(), QStringLiteral("failed"));
    QCOMPARE(entry("a").value("reason").toString(), QStringLiteral("文件损坏"));
    QCOMPARE(entry("a").value("ended").toDouble(), static_cast<double>(now));
}

void TestWebJobs::runningJobsStandInFrontAndEndedOnesLast()
{
    for (const char* id : {"failed", "running", "waiting"})
        addJob(id);
    fail("failed");
    QVERIFY(m_server->store().takeJob("w", std::time(nullptr) + 60).has_value());
    QStringList order;
    for (const auto& job : listed(m_owner))
        order += job.toObject().value("id").toString();
    QCOMPARE(order, (QStringList{"running", "waiting", "failed"}));
}

void TestWebJobs::strangerSeesNoJobs()
{
    addJob("a");
    QCOMPARE(listed(m_owner).size(), 1);
    QVERIFY(listed(m_stranger).isEmpty());
}

void TestWebJobs::jobsOfADemonstrationAreSeenAndLeftAlone()
{
    auto project = m_server->addProject(guid, "owner", "塔楼");
    project.isDemo = true;
    m_server->store().putProject(project);
    addJob("a");
    QCOMPARE(listed(m_stranger).at(0).toObject().value("mayChange").toBool(true), false);
    QCOMPARE(act("a", "cancel", m_stranger).status, 403U);
    QCOMPARE(listed(m_owner).size(), 1);
}

void TestWebJobs::withoutALoginThereIsNoList()
{
    const auto reply = m_server->open({"jobs"}, {});
    QCOMPARE(reply.status, 403U);
    QVERIFY(!BodyOf(reply).contains("\"jobs\""));
}

void TestWebJobs::cancelledJobGoesWithItsArchive()
{
    addJob("a");
    QVERIFY(hasFile("a"));
    QCOMPARE(act("a", "cancel", m_owner).status, 204U);
    QVERIFY(listed(m_owner).isEmpty());
    QVERIFY(!hasFile("a"));
    QVERIFY(!m_server->store().hasArchive("archive-a"));
}

void TestWebJobs::cancelledRunningJobIsItsWorkersNoMore()
{
    addJob("a");
    QVERIFY(m_server->store().takeJob("w", std::time(nullptr) + 60).has_value());
    QCOMPARE(act("a", "cancel", m_owner).status, 204U);
    QVERIFY(!m_server->store().keepJob("a", "w", 50, std::time(nullptr) + 60));
    const auto project = m_server->store().findProject(m_server->accountId("owner"), guid);
    QCOMPARE(static_cast<int>(project->second.status), static_cast<int>(server::ProjectStatus::normal));
}

void TestWebJobs::failedJobIsRetriedAtTheEndOfTheQueue()
{
    addJob("a");
    addJob("b");
    fail("a");
    QCOMPARE(act("a", "retry", m_owner).status, 204U);
    QCOMPARE(entry("a").value("state").toString(), QStringLiteral("waiting"));
    QCOMPARE(entry("a").value("place").toInt(), 2);
    QCOMPARE(entry("a").value("reason").toString(), QString());
    QCOMPARE(m_server->store().takeJob("w", std::time(nullptr) + 60)->id, std::string("b"));
    m_server->store().failJob("b", "w", "r", std::time(nullptr));
    QCOMPARE(m_server->store().takeJob("w", std::time(nullptr) + 60)->id, std::string("a"));
    // The place that it has taken is nobody else's.
    addJob("c");
    QCOMPARE(entry("c").value("place").toInt(), 1);
}

void TestWebJobs::retriedJobMayFailAsOftenAsANewOne()
{
    addJob("a");
    const auto lose = [&] {
        QVERIFY(m_server->store().takeJob("w", 1).has_value());
        m_server->store().reviveJobs(std::time(nullptr), 3, 0);
    };
    for (int attempt = 0; attempt < 3; ++attempt)
        lose();
    QCOMPARE(entry("a").value("state").toString(), QStringLiteral("failed"));
    QCOMPARE(act("a", "retry", m_owner).status, 204U);
    for (int attempt = 0; attempt < 2; ++attempt) {
        lose();
        QCOMPARE(entry("a").value("state").toString(), QStringLiteral("waiting"));
    }
    lose();
    QCOMPARE(entry("a").value("state").toString(), QStringLiteral("failed"));
}

void TestWebJobs::retriedJobTakesTheOldModelsPlace()
{
    auto model = m_server->addProject("old", "owner");
    model.type = "MODEL";
    model.parent = guid;
    m_server->store().putProject(model);
    m_server->publish("old", {{"a", "1"}});
    addJob("a", "old");
    fail("a");
    QCOMPARE(m_server->store().findJob("a")->oldModel, std::string());
    QCOMPARE(act("a", "retry", m_owner).status, 204U);
    QCOMPARE(m_server->store().findJob("a")->oldModel, std::string("old"));
}

void TestWebJobs::retriedJobForgetsAnOldModelThatHasGone()
{
    auto model = m_server->addProject("old", "owner");
    model.type = "MODEL";
    model.parent = guid;
    m_server->store().putProject(model);
    m_server->publish("old", {{"a", "1"}});
    addJob("a", "old");
    fail("a");
    model.parent = "another";
    m_server->store().putProject(model);
    QCOMPARE(act("a", "retry", m_owner).status, 204U);
    QCOMPARE(m_server->store().findJob("a")->oldModel, std::string());
}

void TestWebJobs::archiveOfAFailedJobStaysUntilItIsRemoved()
{
    addJob("a");
    fail("a");
    QVERIFY(m_server->store().forgetArchives(std::time(nullptr) + 1000).empty());
    QVERIFY(hasFile("a"));
    QCOMPARE(act("a", "cancel", m_owner).status, 204U);
    QVERIFY(!hasFile("a"));
    QVERIFY(listed(m_owner).isEmpty());
}

void TestWebJobs::onlyFailedJobsAreRetried_data()
{
    QTest::addColumn<bool>("isRunning");
    QTest::newRow("waiting") << false;
    QTest::newRow("running") << true;
}

void TestWebJobs::onlyFailedJobsAreRetried()
{
    QFETCH(bool, isRunning);
    addJob("a");
    if (isRunning)
        QVERIFY(m_server->store().takeJob("w", std::time(nullptr) + 60).has_value());
    const auto state = entry("a").value("state");
    QCOMPARE(act("a", "retry", m_owner).status, 409U);
    QCOMPARE(entry("a").value("state"), state);
}

void TestWebJobs::retryWithoutTheArchiveIsRefused()
{
    addJob("a");
    fail("a");
    m_server->store().removeArchive("archive-a");
    QCOMPARE(act("a", "retry", m_owner).status, 409U);
    QCOMPARE(entry("a").value("state").toString(), QStringLiteral("failed"));
}

void TestWebJobs::strangerChangesNothing_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("cancel") << "cancel";
    QTest::newRow("retry") << "retry";
}

void TestWebJobs::strangerChangesNothing()
{
    QFETCH(QString, action);
    addJob("a");
    fail("a");
    const auto reply = act("a", action.toStdString(), m_stranger);
    QCOMPARE(reply.status, 404U);
    // As for a job that is not there.
    QCOMPARE(BodyOf(reply), BodyOf(act("none", action.toStdString(), m_stranger)));
    QCOMPARE(entry("a").value("state").toString(), QStringLiteral("failed"));
}

void TestWebJobs::actionsWantTheGuardOfTheBrowser_data()
{
    QTest::addColumn<QString>("guard");
    QTest::newRow("none") << "";
    QTest::newRow("made up") << "0123";
    QTest::newRow("of another browser") << QString::fromStdString(server::JobList::guardOf("another"));
}

void TestWebJobs::actionsWantTheGuardOfTheBrowser()
{
    QFETCH(QString, guard);
    addJob("a");
    server::Request request;
    request.method = "POST";
    request.path = {"jobs", "a", "cancel"};
    request.isForPage = true;
    request.cookie = m_server->browserOf(m_owner);
    request.guard = guard.toStdString();
    QCOMPARE(m_server->api().answer(request).status, 403U);
    QCOMPARE(listed(m_owner).size(), 1);
}

void TestWebJobs::actionsAreNoAddressesToOpen()
{
    addJob("a");
    for (const char* method : {"GET", "HEAD", "PUT", "DELETE"}) {
        const auto reply = m_server->open({"jobs", "a", "cancel"}, {}, m_server->browserOf(m_owner), method);
        QCOMPARE(reply.status, 405U);
        QCOMPARE(HeaderOf(reply, "Allow"), QByteArray("POST"));
    }
    QCOMPARE(listed(m_owner).size(), 1);
}

void TestWebJobs::unknownJobsAndActionsAreNotFound()
{
    QCOMPARE(act("none", "cancel", m_owner).status, 404U);
    QCOMPARE(act("none", "retry", m_owner).status, 404U);
    QCOMPARE(m_server->see({"jobs", "a", "x"}, m_owner).status, 404U);
    QCOMPARE(m_server->see({"jobs", "a"}, m_owner).status, 404U);
}

void TestWebJobs::consoleCarriesTheGuardOfItsBrowser()
{
    const auto cookie = m_server->browserOf(m_owner);
    const auto page = BodyOf(m_server->open({"console"}, {}, cookie));
    const auto secret = cookie.substr(cookie.find('=') + 1);
    QVERIFY(page.contains("content=\"" + QByteArray::fromStdString(server::JobList::guardOf(secret)) + "\""));
    QVERIFY(!page.contains(QByteArray::fromStdString(secret)));
    QVERIFY(page.contains("<script src=\"assets/jobs.js?v="));
}

QTEST_GUILESS_MAIN(TestWebJobs)
#include "test_webjobs.moc"
