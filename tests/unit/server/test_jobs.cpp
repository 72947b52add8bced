// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include <ctime>

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string md5 = QCryptographicHash::hash("abc", QCryptographicHash::Md5).toHex().toStdString();

} // namespace

/// Jobs as those see them who order conversions, and what workers find in the queue.
class TestJobs : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void jobIsListedAsRegistered();
    void jobsOfAProjectAreListedInTheirOrder();
    void placeInTheQueueCountsAllProjects();
    void sameArchiveGivesTheSameJob();
    void otherDigestIsRefused();
    void archiveThatIsNotFinishedHasNoJob();
    void oldModelMustBeOneOfTheProject();
    void badJobsAreRefused_data();
    void badJobsAreRefused();
    void modeFollowsTypeAndOption_data();
    void modeFollowsTypeAndOption();
    void strangerSeesNoJob();
    void deletedJobTakesItsArchiveAlong();
    void archiveOfAJobStaysWhenAnotherBeginsUnderItsPath();
    void workersTakeJobsInTheirOrder();
    void oneJobOfAProjectRunsAtATime();
    void uploadedProjectIsNotConverted();
    void jobIsKeptByItsWorkerOnly();
    void lostJobGoesBackTwiceAndThenFails();
    void failedJobTellsNoOldModel();
    void failuresAreTheNewestHundred();
    void modelOfAnOldHeadIsAConflict();
    void modelsWithoutARevisionAreNotListed();

private:
    [[nodiscard]] std::string archive(const std::string& task, const std::string& project = guid);
    [[nodiscard]] QJsonObject wish(const std::string& task, const std::string& project = guid) const;
    [[nodiscard]] server::Reply add(const QJsonObject& wish);
    /// Sends an archive and registers a job for it.
    [[nodiscard]] std::string job(const std::string& task, const std::string& project = guid);
    [[nodiscard]] QJsonArray jobs(const std::string& project = guid);
    [[nodiscard]] QJsonArray failures();

    std::unique_ptr<AnsweringServer> m_server;
    std::string m_token;
};

void TestJobs::init()
{
    m_server = std::make_unique<AnsweringServer>();
    m_token = m_server->addAccount("wang");
    (void)m_server->addProject(guid, "wang");
    (void)m_server->addProject("other", "wang");
}

std::string TestJobs::archive(const std::string& task, const std::string& project)
{
    const std::vector<std::string> path = {"projects", project, "archives"};
    const auto begun =
        m_server->ask("POST", path, m_token, R"({"size":3,"path":")" + project + '/' + task + "/a.kyv\"}");
    const auto id = AnsweringServer::objectOf(begun).value("archive").toString().toStdString();
    (void)m_server->ask("PUT", {"projects", project, "archives", id, "bytes", "0"}, m_token, "abc");
    (void)m_server->ask("POST", {"projects", project, "archives", id, "finish"}, m_token,
                        R"({"md5":")" + md5 + "\"}");
    return id;
}

QJsonObject TestJobs::wish(const std::string& task, const std::string& project) const
{
    return {{"projectId", QString::fromStdString(project)},
            {"path", QString::fromStdString(project + '/' + task + "/a.kyv")},
            {"name", QString::fromStdString("model " + task)},
            {"md5", QString::fromStdString(md5)},
            {"oldModelId", ""},
            {"status", 6},
            {"origin", "1"},
            {"type", "2"}};
}

server::Reply TestJobs::add(const QJsonObject& wish)
{
    return m_server->ask("POST",
                         {"projects", wish.value("projectId").toString().toStdString(), "conversions"},
                         m_token, QJsonDocument(wish).toJson().toStdString());
}

std::string TestJobs::job(const std::string& task, const std::string& project)
{
    (void)archive(task, project);
    return AnsweringServer::objectOf(add(wish(task, project))).value("id").toString().toStdString();
}

QJsonArray TestJobs::jobs(const std::string& project)
{
    const auto reply = m_server->ask("GET", {"projects", project, "conversions"}, m_token);
    return AnsweringServer::objectOf(reply).value("jobs").toArray();
}

QJsonArray TestJobs::failures()
{
    const auto reply = m_server->ask("GET", {"projects", guid, "conversions", "failures"}, m_token);
    return AnsweringServer::objectOf(reply).value("failures").toArray();
}

void TestJobs::jobIsListedAsRegistered()
{
    const auto id = job("a");
    QVERIFY(!id.empty() && id.size() <= 64);
    const QJsonObject expected{{"projectId", QString::fromStdString(guid)},
                               {"name", "model a"},
                               {"id", QString::fromStdString(id)},
                               {"oldModelId", ""},
                               {"sort", 1},
                               {"status", "6"}};
    QCOMPARE(jobs(), QJsonArray{expected});
}

void TestJobs::jobsOfAProjectAreListedInTheirOrder()
{
    for (const char* task : {"b", "a", "c"})
        (void)job(task);
    QStringList names;
    for (const auto& each : jobs())
        names += each.toObject().value("name").toString();
    QCOMPARE(names, QStringList({"model b", "model a", "model c"}));
}

void TestJobs::placeInTheQueueCountsAllProjects()
{
    (void)job("a", "other");
    (void)job("b");
    (void)job("c", "other");
    QCOMPARE(jobs().first().toObject().value("sort").toInt(), 2);
    QCOMPARE(jobs("other").last().toObject().value("sort").toInt(), 3);
}

void TestJobs::sameArchiveGivesTheSameJob()
{
    const auto id = job("a");
    auto again = wish("a");
    again["name"] = "another name";
    QCOMPARE(AnsweringServer::objectOf(add(again)).value("id").toString().toStdString(), id);
    QCOMPARE(jobs().size(), 1);
    QCOMPARE(jobs().first().toObject().value("name").toString(), QStringLiteral("model a"));
}

void TestJobs::otherDigestIsRefused()
{
    (void)archive("a");
    auto other = wish("a");
    other["md5"] = QString(32, '0');
    const auto reply = add(other);
    QCOMPARE(reply.status, 409U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40912);
}

void TestJobs::archiveThatIsNotFinishedHasNoJob()
{
    (void)m_server->ask("POST", {"projects", guid, "archives"}, m_token,
                        R"({"size":3,"path":")" + guid + "/a/a.kyv\"}");
    for (const char* task : {"a", "never"}) {
        const auto reply = add(wish(task));
        QCOMPARE(reply.status, 404U);
        QCOMPARE(AnsweringServer::codeOf(reply), 40411);
    }
}

void TestJobs::oldModelMustBeOneOfTheProject()
{
    (void)archive("a");
    auto replacing = wish("a");
    for (const char* model : {"unknown", "other"}) {
        replacing["oldModelId"] = model;
        const auto reply = add(replacing);
        QCOMPARE(reply.status, 404U);
        QCOMPARE(AnsweringServer::codeOf(reply), 40413);
    }
}

void TestJobs::badJobsAreRefused_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    const auto row = [](const char* name, const char* key, const QJsonValue& value) {
        QTest::newRow(name) << QString(key) << value;
    };
    for (const char* key : {"projectId", "path", "name", "md5", "oldModelId", "status", "origin", "type"})
        row((std::string("no ") + key).c_str(), key, QJsonValue::Undefined);
    row("a number for a name", "name", 7);
    row("no letters for a name", "name", "");
    row("a name that is too long", "name", QString(201, 'a'));
    row("a path elsewhere", "path", "other/a/a.kyv");
    row("a digest in capitals", "md5", QString(32, 'A'));
    row("another status", "status", 3);
    row("a status as text", "status", "6");
    row("another origin", "origin", "2");
    row("another type", "type", "3");
    row("an option of a static model", "option", "1");
}

void TestJobs::badJobsAreRefused()
{
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    (void)archive("a");
    auto bad = wish("a");
    if (value.isUndefined())
        bad.remove(key);
    else
        bad[key] = value;
    const auto reply = m_server->ask("POST", {"projects", guid, "conversions"}, m_token,
                                     QJsonDocument(bad).toJson().toStdString());
    QCOMPARE(reply.status, 400U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40001);
}

void TestJobs::modeFollowsTypeAndOption_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("mode"); // -1 for a refusal
    QTest::newRow("static model") << "2" << QString() << 0;
    QTest::newRow("quality first") << "1"
                                   << "1" << 1;
    QTest::newRow("performance first") << "1"
                                       << "3" << 3;
    QTest::newRow("levels without an option") << "1" << QString() << -1;
    QTest::newRow("levels with another option") << "1"
                                                << "2" << -1;
}

void TestJobs::modeFollowsTypeAndOption()
{
    QFETCH(QString, type);
    QFETCH(QString, option);
    QFETCH(int, mode);
    (void)archive("a");
    auto order = wish("a");
    order["type"] = type;
    if (!option.isNull())
        order["option"] = option;
    QCOMPARE(add(order).status, mode < 0 ? 400U : 200U);
    const auto taken = m_server->store().takeJob("w", std::time(nullptr) + 60);
    QCOMPARE(taken ? taken->mode : -1, mode);
}

void TestJobs::strangerSeesNoJob()
{
    const auto id = job("a");
    m_token = m_server->addAccount("stranger");
    for (const auto& path : {std::vector<std::string>{"projects", guid, "conversions"},
                             {"projects", guid, "conversions", "failures"},
                             {"projects", guid, "models"}})
        QCOMPARE(AnsweringServer::codeOf(m_server->ask("GET", path, m_token)), 40400);
    QCOMPARE(AnsweringServer::codeOf(m_server->ask("GET", {"conversions", id, "progress"}, m_token)), 40412);
    QCOMPARE(AnsweringServer::codeOf(m_server->ask("DELETE", {"conversions", id}, m_token)), 40412);
}

void TestJobs::deletedJobTakesItsArchiveAlong()
{
    const auto file = m_server->archives() / (archive("a") + ".kyv");
    const auto id = job("a");
    QVERIFY(std::filesystem::exists(file));
    QCOMPARE(m_server->ask("DELETE", {"conversions", id}, m_token).status, 204U);
    QVERIFY(!std::filesystem::exists(file));
    QVERIFY(jobs().isEmpty());
    QCOMPARE(AnsweringServer::codeOf(add(wish("a"))), 40411);
    QVERIFY(failures().isEmpty());
}

void TestJobs::archiveOfAJobStaysWhenAnotherBeginsUnderItsPath()
{
    const auto file = m_server->archives() / (archive("a") + ".kyv");
    const auto id = job("a");
    const auto begun = m_server->ask("POST", {"projects", guid, "archives"}, m_token,
                                     R"({"size":4,"path":")" + guid + "/a/a.kyv\"}");
    QCOMPARE(AnsweringServer::objectOf(begun).value("received").toInt(), 0);
    QVERIFY(std::filesystem::exists(file));
    QCOMPARE(jobs().first().toObject().value("id").toString().toStdString(), id);
}

void TestJobs::workersTakeJobsInTheirOrder()
{
    const auto first = job("a");
    const auto second = job("b", "other");
    auto& store = m_server->store();
    QCOMPARE(store.takeJob("w", std::time(nullptr) + 60)->id, first);
    QCOMPARE(store.takeJob("v", std::time(nullptr) + 60)->id, second);
    QVERIFY(!store.takeJob("u", std::time(nullptr) + 60));
}

void TestJobs::oneJobOfAProjectRunsAtATime()
{
    (void)job("a");
    (void)job("b");
    const auto other = job("c", "other");
    auto& store = m_server->store();
    QVERIFY(store.takeJob("w", std::time(nullptr) + 60).has_value());
    QCOMPARE(store.takeJob("v", std::time(nullptr) + 60)->id, other);
    QVERIFY(!store.takeJob("u", std::time(nullptr) + 60));
}

void TestJobs::uploadedProjectIsNotConverted()
{
    (void)job("a");
    auto& store = m_server->store();
    store.setStatus(guid, server::ProjectStatus::uploading);
    QVERIFY(!store.takeJob("w", std::time(nullptr) + 60));
    store.setStatus(guid, server::ProjectStatus::normal);
    QVERIFY(store.takeJob("w", std::time(nullptr) + 60).has_value());
}

void TestJobs::jobIsKeptByItsWorkerOnly()
{
    const auto id = job("a");
    auto& store = m_server->store();
    const auto later = std::time(nullptr) + 60;
    QVERIFY(!store.keepJob(id, "w", 50, later));
    QVERIFY(store.takeJob("w", later).has_value());
    QVERIFY(!store.keepJob(id, "v", 50, later));
    QVERIFY(store.keepJob(id, "w", 50, later));
    const auto progress = m_server->ask("GET", {"conversions", id, "progress"}, m_token);
    QCOMPARE(AnsweringServer::objectOf(progress).value("percent").toDouble(), 50.0);
    store.failJob(id, "v", "not mine", later);
    QVERIFY(failures().isEmpty());
}

void TestJobs::lostJobGoesBackTwiceAndThenFails()
{
    const auto id = job("a");
    auto& store = m_server->store();
    store.setStatus(guid, server::ProjectStatus::uploadFailed);
    const auto status = [&] { return jobs().first().toObject().value("status").toString(); };
    const auto projects = [&] { return store.findProject(m_server->accountId("wang"), guid)->second.status; };
    for (int attempt = 0; attempt < 3; ++attempt) {
        QCOMPARE(status(), QStringLiteral("6"));
        QVERIFY(store.takeJob("w", std::time(nullptr) - 1).has_value());
        QCOMPARE(status(), QStringLiteral("3"));
        QVERIFY(projects() == server::ProjectStatus::converting);
        m_server->api().tick();
        QVERIFY(projects() == server::ProjectStatus::uploadFailed);
    }
    QCOMPARE(status(), QStringLiteral("4"));
    QCOMPARE(failures().size(), 1);
    QCOMPARE(failures().first().toObject().value("id").toString().toStdString(), id);
}

void TestJobs::failedJobTellsNoOldModel()
{
    server::Project model;
    model.guid = "old";
    model.type = "MODEL";
    model.owner = m_server->accountId("wang");
    model.parent = guid;
    m_server->store().putProject(model);
    m_server->store().commitRevision("old", {}, {});
    (void)archive("a");
    auto replacing = wish("a");
    replacing["oldModelId"] = "old";
    const auto id = AnsweringServer::objectOf(add(replacing)).value("id").toString().toStdString();
    QCOMPARE(jobs().first().toObject().value("oldModelId").toString(), QStringLiteral("old"));
    QVERIFY(m_server->store().takeJob("w", std::time(nullptr) + 60).has_value());
    m_server->store().failJob(id, "w", "r", std::time(nullptr));
    QCOMPARE(jobs().first().toObject().value("oldModelId").toString(), QString());
    QCOMPARE(jobs().first().toObject().value("status").toString(), QStringLiteral("4"));
}

void TestJobs::failuresAreTheNewestHundred()
{
    for (int number = 0; number < 103; ++number) {
        const auto id = job(std::to_string(number));
        QVERIFY(m_server->store().takeJob("w", std::time(nullptr) + 60).has_value());
        m_server->store().failJob(id, "w", "r", std::time(nullptr));
    }
    for (const auto& failed : jobs()) {
        const auto id = failed.toObject().value("id").toString().toStdString();
        QVERIFY(m_server->store().removeJob(id).has_value());
    }
    QCOMPARE(failures().size(), 100);
    QCOMPARE(failures().first().toObject().value("name").toString(), QStringLiteral("model 102"));
    QCOMPARE(failures().last().toObject().value("name").toString(), QStringLiteral("model 3"));
}

void TestJobs::modelOfAnOldHeadIsAConflict()
{
    (void)job("a");
    auto& store = m_server->store();
    const auto taken = store.takeJob("w", std::time(nullptr) + 60);
    server::Publication publication;
    publication.model.guid = "new";
    publication.model.parent = guid;
    publication.buildingBase = "another";
    QVERIFY(store.publishModel(*taken, "w", publication, 0) == server::PublishAnswer::conflict);
    QVERIFY(store.publishModel(*taken, "v", publication, 0) == server::PublishAnswer::gone);
    QVERIFY(!store.findProject(m_server->accountId("wang"), "new"));
    publication.buildingBase.clear();
    QVERIFY(store.publishModel(*taken, "w", publication, 0) == server::PublishAnswer::published);
    QVERIFY(store.findProject(m_server->accountId("wang"), "new").has_value());
}

void TestJobs::modelsWithoutARevisionAreNotListed()
{
    server::Project model;
    model.guid = "model";
    model.type = "MODEL";
    model.name = "m";
    model.owner = m_server->accountId("wang");
    model.parent = guid;
    m_server->store().putProject(model);
    const auto models = [&] {
        return AnsweringServer::objectOf(m_server->ask("GET", {"projects", guid, "models"}, m_token))
            .value("models")
            .toArray();
    };
    QVERIFY(models().isEmpty());
    m_server->store().commitRevision("model", {}, {});
    QCOMPARE(models(), (QJsonArray{QJsonObject{{"id", "model"}, {"name", "m"}}}));
}

QTEST_GUILESS_MAIN(TestJobs)
#include "test_jobs.moc"
