// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include "server/accounts/token.h"

#include <ctime>

#include <QTest>
#include <sqlite3.h>

namespace
{

void Run(const std::string& file, const char* statements)
{
    sqlite3* database = nullptr;
    QCOMPARE(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    char* error = nullptr;
    sqlite3_exec(database, statements, nullptr, nullptr, &error);
    const QByteArray words = error;
    sqlite3_free(error);
    sqlite3_close(database);
    QVERIFY2(words.isEmpty(), words);
}

std::int64_t AddAccount(server::Store& store, const std::string& name)
{
    server::Account account;
    account.name = name;
    return store.addAccount(account).value();
}

void AddProject(server::Store& store, const std::string& guid, std::int64_t owner)
{
    server::Project project;
    project.guid = guid;
    project.type = "BIM";
    project.owner = owner;
    store.putProject(project);
}

} // namespace

/// Databases that other versions of the server have written.
class TestSchema : public QObject
{
    Q_OBJECT

private slots:
    void databaseOfTheFirstVersionIsUpgraded();
    void databaseOfANewerVersionIsRefusedAndLeftAlone();
};

void TestSchema::databaseOfTheFirstVersionIsUpgraded()
{
    const QTemporaryDir folder;
    const auto file = folder.filePath("server.db").toStdString();
    std::int64_t owner = 0;
    {
        server::SqliteStore store(file);
        owner = AddAccount(store, "wang");
        store.addSession(server::TokenName("token"), owner, std::time(nullptr) + 100);
        AddProject(store, "revised", owner);
        AddProject(store, "empty", owner);
        store.commitRevision("revised", {.root = wire::DigestOf("1"), .manifest = "m", .layout = "l"}, {});
    }
    // What the first version did not have.
    Run(file, "DROP TABLE conversion_failures; DROP TABLE jobs; DROP TABLE archives; DROP TABLE uploads; "
              "DROP TABLE browsers; DROP TABLE tickets; ALTER TABLE projects DROP COLUMN "
              "revised;"
              "UPDATE revisions SET made = 1700000000; PRAGMA user_version = 1;");

    server::SqliteStore store(file);
    QCOMPARE(store.findProject(owner, "revised").value().second.revised, std::int64_t{1700000000});
    QCOMPARE(store.findProject(owner, "empty").value().second.revised, std::int64_t{0});
    QVERIFY(store.jobsOf("revised").empty());
    QVERIFY(store.failuresOf("revised").empty());
    QCOMPARE(store.findSession(server::TokenName("token"), std::time(nullptr)).value().name,
             std::string("wang"));
    store.addTicket(server::TokenName("t"), server::TokenName("token"), std::time(nullptr) + 60);
    QVERIFY(store.useTicket(server::TokenName("t"), std::time(nullptr), server::TokenName("c"),
                            std::time(nullptr) + 60) == server::TicketUse::good);
}

void TestSchema::databaseOfANewerVersionIsRefusedAndLeftAlone()
{
    const QTemporaryDir folder;
    const auto file = folder.filePath("server.db").toStdString();
    {
        const server::SqliteStore store(file);
    }
    Run(file, "PRAGMA user_version = 1000;");
    QVERIFY_EXCEPTION_THROWN(server::SqliteStore{file}, std::exception);
    // Still the newer one's: it is refused the next time as well.
    QVERIFY_EXCEPTION_THROWN(server::SqliteStore{file}, std::exception);
}

QTEST_GUILESS_MAIN(TestSchema)
#include "test_schema.moc"
