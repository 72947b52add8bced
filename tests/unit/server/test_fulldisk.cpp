// SPDX-License-Identifier: MIT
#include "answeringserver.h"
#include "filesizelimit.h"

#include "server/accounts/password.h"

#include <QTest>

#include <sqlite3.h>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

struct Change {
    std::string method;
    std::vector<std::string> path;
    std::string body;
    unsigned status; ///< when there is room
};

const Change login{"POST", {"login"}, R"({"account":"wang","password":"secret"})", 200};
const Change ticket{"POST", {"tickets"}, "", 200};
const Change renaming{"PUT", {"projects", guid, "name"}, R"({"name":"other"})", 204};
const Change archive{
    "POST", {"projects", guid, "archives"}, R"({"size":3,"path":")" + guid + R"(/task/a.kyv"})", 200};

} // namespace

Q_DECLARE_METATYPE(Change)

/// The disk that the server's own database lies on takes no more.
class TestFullDisk : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void changeOnAFullDiskIsToldAsThat_data() { rows(); }
    void changeOnAFullDiskIsToldAsThat();
    void changeIsDoneWhenThereIsRoomAgain_data() { rows(); }
    void changeIsDoneWhenThereIsRoomAgain();
    void whatChangesNothingIsAnsweredOnAFullDisk();
    void largeRevisionOnAFullDiskIsThrownAwayWhole();
    void databaseThatIsBrokenIsNoFullDisk();

private:
    static void rows();
    [[nodiscard]] server::Reply ask(const Change& change)
    {
        return m_server->ask(change.method, change.path, m_token, change.body);
    }
    /// The database can write over what it has written, and nothing beyond.
    [[nodiscard]] FileSizeLimit fullDisk(std::uintmax_t room = 0) const
    {
        return FileSizeLimit(std::filesystem::file_size(folder() / "server.db-wal") + room);
    }
    [[nodiscard]] std::filesystem::path folder() const { return m_server->packs().parent_path(); }

    std::unique_ptr<AnsweringServer> m_server;
    std::string m_token;
};

void TestFullDisk::init()
{
    m_server = std::make_unique<AnsweringServer>();
    m_token = m_server->addAccount("wang");
    QVERIFY(m_server->store().setPassword("wang", server::HashPassword("secret")));
    m_token = AnsweringServer::objectOf(ask(login)).value("token").toString().toStdString();
    (void)m_server->addProject(guid, "wang");
}

void TestFullDisk::rows()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("login") << login;
    QTest::newRow("ticket") << ticket;
    QTest::newRow("rename") << renaming;
    QTest::newRow("archive") << archive;
}

void TestFullDisk::changeOnAFullDiskIsToldAsThat()
{
    QFETCH(Change, change);
    // No byte, and a part of a page.
    for (const std::uintmax_t room : {0U, 1000U}) {
        const auto limit = fullDisk(room);
        const auto reply = ask(change);
        QCOMPARE(reply.status, 507U);
        QCOMPARE(AnsweringServer::codeOf(reply), 50700);
    }
}

void TestFullDisk::changeIsDoneWhenThereIsRoomAgain()
{
    QFETCH(Change, change);
    {
        const auto limit = fullDisk();
        QCOMPARE(ask(change).status, 507U);
    }
    QCOMPARE(ask(change).status, change.status);
}

void TestFullDisk::whatChangesNothingIsAnsweredOnAFullDisk()
{
    const auto limit = fullDisk();
    QCOMPARE(m_server->ask("GET", {"projects"}, m_token).status, 200U);
    QCOMPARE(m_server->ask("GET", {"projects", guid, "conversions"}, m_token).status, 200U);
}

/// More than the database keeps in memory, so that it is written before the transaction ends.
void TestFullDisk::largeRevisionOnAFullDiskIsThrownAwayWhole()
{
    server::Revision revision;
    revision.root.bytes[0] = 1;
    revision.manifest = std::string(std::size_t{16} << 20U, 'x');
    {
        const auto limit = fullDisk(std::size_t{4} << 20U);
        QVERIFY_EXCEPTION_THROWN(m_server->store().commitRevision(guid, revision, {}), server::DiskFull);
    }
    QVERIFY(m_server->store().head(guid).empty());
    m_server->store().commitRevision(guid, revision, {});
    QVERIFY(!m_server->store().head(guid).empty());
}

void TestFullDisk::databaseThatIsBrokenIsNoFullDisk()
{
    sqlite3* database = nullptr;
    QCOMPARE(sqlite3_open((folder() / "server.db").c_str(), &database), SQLITE_OK);
    QCOMPARE(sqlite3_exec(database, "DROP TABLE tickets", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
    const auto reply = ask(ticket);
    QCOMPARE(reply.status, 500U);
    QCOMPARE(AnsweringServer::codeOf(reply), 50000);
}

QTEST_GUILESS_MAIN(TestFullDisk)
#include "test_fulldisk.moc"
