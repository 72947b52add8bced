// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

std::string Md5(const std::string& bytes)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Md5)
        .toHex()
        .toStdString();
}

} // namespace

/// Archives that arrive in portions.
class TestArchives : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void archiveArrivesInPortions();
    void archiveIsFoundAgain();
    void finishedArchiveIsFoundAgain();
    void otherSizeBeginsAnew();
    void otherAccountHasAnArchiveOfItsOwn();
    void bytesThatDoNotStartAtTheEndAreNotTaken();
    void bytesBeyondTheSizeAreNotTaken();
    void noBytesAreRefused();
    void offsetThatIsNoNumberIsRefused();
    void archiveThatLacksBytesIsNotFinished();
    void archiveWithAnotherDigestIsThrownAway();
    void finishedArchiveIsFinishedAgain();
    void finishedArchiveStaysWhenAnotherDigestIsTold();
    void finishedArchiveTakesNoBytes();
    void unknownArchiveIsTold();
    void archiveOfAnotherProjectIsNotFound();
    void badBeginningsAreRefused_data();
    void badBeginningsAreRefused();
    void archiveBeyondTheLimitIsRefused();
    void strangerIsTurnedAway();
    void projectThatIsNoBuildingHasNoArchives();
    void archiveThatNobodyTouchesIsThrownAway();

private:
    [[nodiscard]] server::Reply begin(const std::string& path, std::uint64_t size);
    [[nodiscard]] std::string begun(std::uint64_t size, const char* task = "task");
    [[nodiscard]] server::Reply put(const std::string& archive, const std::string& offset,
                                    const std::string& bytes);
    [[nodiscard]] server::Reply finish(const std::string& archive, const std::string& md5);
    [[nodiscard]] int received(const server::Reply& reply) const
    {
        return AnsweringServer::objectOf(reply).value("received").toInt(-1);
    }
    [[nodiscard]] QString file(const std::string& archive) const
    {
        return QString::fromStdString((m_server->archives() / (archive + ".kyv")).string());
    }

    std::unique_ptr<AnsweringServer> m_server;
    std::string m_token;
};

void TestArchives::init()
{
    m_server = std::make_unique<AnsweringServer>();
    m_token = m_server->addAccount("wang");
    (void)m_server->addProject(guid, "wang");
}

server::Reply TestArchives::begin(const std::string& path, std::uint64_t size)
{
    return m_server->ask("POST", {"projects", guid, "archives"}, m_token,
                         R"({"path":")" + path + R"(","size":)" + std::to_string(size) + "}");
}

std::string TestArchives::begun(std::uint64_t size, const char* task)
{
    const auto reply = begin(guid + '/' + task + "/房子.kyv", size);
    return AnsweringServer::objectOf(reply).value("archive").toString().toStdString();
}

server::Reply TestArchives::put(const std::string& archive, const std::string& offset,
                                const std::string& bytes)
{
    return m_server->ask("PUT", {"projects", guid, "archives", archive, "bytes", offset}, m_token, bytes);
}

server::Reply TestArchives::finish(const std::string& archive, const std::string& md5)
{
    return m_server->ask("POST", {"projects", guid, "archives", archive, "finish"}, m_token,
                         R"({"md5":")" + md5 + "\"}");
}

void TestArchives::archiveArrivesInPortions()
{
    const auto archive = begun(6);
    QCOMPARE(archive.size(), std::size_t(32));
    QCOMPARE(received(put(archive, "0", "abc")), 3);
    QCOMPARE(received(put(archive, "3", "de")), 5);
    QCOMPARE(received(put(archive, "5", "f")), 6);
    const auto done = finish(archive, Md5("abcdef"));
    QCOMPARE(done.status, 200U);
    QCOMPARE(AnsweringServer::objectOf(done).value("path").toString(),
             QString::fromStdString(guid) + QStringLiteral("/task/房子.kyv"));
    QFile bytes(file(archive));
    QVERIFY(bytes.open(QIODevice::ReadOnly));
    QCOMPARE(bytes.readAll(), QByteArray("abcdef"));
}

void TestArchives::archiveIsFoundAgain()
{
    const auto archive = begun(6);
    (void)put(archive, "0", "abc");
    const auto again = begin(guid + "/task/房子.kyv", 6);
    QCOMPARE(AnsweringServer::objectOf(again).value("archive").toString().toStdString(), archive);
    QCOMPARE(received(again), 3);
}

void TestArchives::finishedArchiveIsFoundAgain()
{
    const auto archive = begun(3);
    (void)put(archive, "0", "abc");
    QCOMPARE(finish(archive, Md5("abc")).status, 200U);
    QCOMPARE(begun(3), archive);
    QCOMPARE(received(begin(guid + "/task/房子.kyv", 3)), 3);
}

void TestArchives::otherSizeBeginsAnew()
{
    const auto archive = begun(6);
    (void)put(archive, "0", "abc");
    const auto other = begun(7);
    QVERIFY(other != archive);
    QCOMPARE(put(archive, "3", "d").status, 404U);
    QVERIFY(!QFile::exists(file(archive)));
    QCOMPARE(received(put(other, "0", "x")), 1);
}

void TestArchives::otherAccountHasAnArchiveOfItsOwn()
{
    const auto organisation = m_server->store().putOrganisation("o", "{}");
    const auto li = m_server->addAccount("li", organisation);
    const auto zhang = m_server->addAccount("zhang", organisation);
    server::Project shared;
    shared.guid = "shared";
    shared.type = "BIM";
    shared.owner = m_server->accountId("li");
    shared.organisation = organisation;
    m_server->store().putProject(shared);
    const auto beginAs = [&](const std::string& token) {
        return AnsweringServer::objectOf(m_server->ask("POST", {"projects", "shared", "archives"}, token,
                                                       R"({"path":"shared/a/b.kyv","size":3})"))
            .value("archive")
            .toString();
    };
    QVERIFY(!beginAs(li).isEmpty());
    QVERIFY(beginAs(li) != beginAs(zhang));
}

void TestArchives::bytesThatDoNotStartAtTheEndAreNotTaken()
{
    const auto archive = begun(6);
    (void)put(archive, "0", "abc");
    for (const char* offset : {"0", "2", "4", "99999999999"}) {
        const auto reply = put(archive, offset, "x");
        QCOMPARE(reply.status, 409U);
        QCOMPARE(AnsweringServer::codeOf(reply), 40910);
    }
    QCOMPARE(received(begin(guid + "/task/房子.kyv", 6)), 3);
}

void TestArchives::bytesBeyondTheSizeAreNotTaken()
{
    const auto archive = begun(3);
    const auto reply = put(archive, "0", "abcd");
    QCOMPARE(reply.status, 400U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40001);
    QCOMPARE(received(begin(guid + "/task/房子.kyv", 3)), 0);
}

void TestArchives::noBytesAreRefused()
{
    QCOMPARE(put(begun(3), "0", "").status, 400U);
}

void TestArchives::offsetThatIsNoNumberIsRefused()
{
    const auto archive = begun(3);
    for (const char* offset : {"-1", "x", "0x0", "", "99999999999999999999999"})
        QCOMPARE(put(archive, offset, "a").status, 400U);
}

void TestArchives::archiveThatLacksBytesIsNotFinished()
{
    const auto archive = begun(6);
    (void)put(archive, "0", "abc");
    const auto reply = finish(archive, Md5("abc"));
    QCOMPARE(reply.status, 409U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40911);
    QCOMPARE(received(put(archive, "3", "def")), 6);
}

void TestArchives::archiveWithAnotherDigestIsThrownAway()
{
    const auto archive = begun(3);
    (void)put(archive, "0", "abc");
    const auto reply = finish(archive, Md5("abd"));
    QCOMPARE(reply.status, 409U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40912);
    QVERIFY(!QFile::exists(file(archive)));
    QCOMPARE(AnsweringServer::codeOf(finish(archive, Md5("abc"))), 40411);
    QVERIFY(begun(3) != archive);
}

void TestArchives::finishedArchiveIsFinishedAgain()
{
    const auto archive = begun(3);
    (void)put(archive, "0", "abc");
    QCOMPARE(finish(archive, Md5("abc")).status, 200U);
    QCOMPARE(finish(archive, Md5("abc")).status, 200U);
}

void TestArchives::finishedArchiveStaysWhenAnotherDigestIsTold()
{
    const auto archive = begun(3);
    (void)put(archive, "0", "abc");
    QCOMPARE(finish(archive, Md5("abc")).status, 200U);
    QCOMPARE(AnsweringServer::codeOf(finish(archive, Md5("abd"))), 40912);
    QCOMPARE(finish(archive, Md5("abc")).status, 200U);
}

void TestArchives::finishedArchiveTakesNoBytes()
{
    const auto archive = begun(3);
    (void)put(archive, "0", "abc");
    QCOMPARE(finish(archive, Md5("abc")).status, 200U);
    const auto reply = put(archive, "3", "d");
    QCOMPARE(reply.status, 409U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40913);
}

void TestArchives::unknownArchiveIsTold()
{
    QCOMPARE(AnsweringServer::codeOf(put(std::string(32, '0'), "0", "a")), 40411);
    QCOMPARE(AnsweringServer::codeOf(finish("../../server", Md5("a"))), 40411);
}

void TestArchives::archiveOfAnotherProjectIsNotFound()
{
    const auto archive = begun(3);
    (void)m_server->addProject("other", "wang");
    const auto reply =
        m_server->ask("PUT", {"projects", "other", "archives", archive, "bytes", "0"}, m_token, "a");
    QCOMPARE(AnsweringServer::codeOf(reply), 40411);
}

void TestArchives::badBeginningsAreRefused_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char* name, const std::string& path) {
        QTest::newRow(name) << QByteArray::fromStdString(R"({"size":3,"path":")" + path + "\"}");
    };
    QTest::newRow("no JSON") << QByteArray("size");
    QTest::newRow("no object") << QByteArray("[]");
    QTest::newRow("no path") << QByteArray(R"({"size":3})");
    row("another project's path", "other/task/a.kyv");
    row("no task", guid + "/a.kyv");
    row("an empty task", guid + "//a.kyv");
    row("a task with other letters", guid + "/ta_sk/a.kyv");
    row("a task that is too long", guid + '/' + std::string(65, 'a') + "/a.kyv");
    row("no file", guid + "/task/");
    row("a file above", guid + "/task/..");
    row("this folder", guid + "/task/.");
    row("a file in a folder", guid + "/task/a/b.kyv");
    row("a backslash", guid + R"(/task/a\\b.kyv)");
    row("a control character", guid + R"(/task/a\nb.kyv)");
    row("a file name that is too long", guid + "/task/" + std::string(201, 'a'));
    QTest::newRow("no UTF-8") << QByteArray::fromStdString(R"({"size":3,"path":")" + guid + "/task/\xff\"}");
    for (const char* size : {"0", "-3", "1.5", "\"3\"", "null"})
        QTest::newRow(size) << QByteArray::fromStdString(R"({"path":")" + guid + R"(/task/a.kyv","size":)" +
                                                         size + "}");
}

void TestArchives::badBeginningsAreRefused()
{
    QFETCH(QByteArray, body);
    const auto reply = m_server->ask("POST", {"projects", guid, "archives"}, m_token, body.toStdString());
    QCOMPARE(reply.status, 400U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40001);
}

void TestArchives::archiveBeyondTheLimitIsRefused()
{
    QCOMPARE(begin(guid + "/task/a.kyv", 16ULL << 30U).status, 200U);
    const auto reply = begin(guid + "/task/b.kyv", (16ULL << 30U) + 1);
    QCOMPARE(reply.status, 413U);
    QCOMPARE(AnsweringServer::codeOf(reply), 41300);
}

void TestArchives::strangerIsTurnedAway()
{
    const auto archive = begun(3);
    m_token = m_server->addAccount("stranger");
    QCOMPARE(AnsweringServer::codeOf(begin(guid + "/task/a.kyv", 3)), 40400);
    QCOMPARE(AnsweringServer::codeOf(put(archive, "0", "a")), 40400);
    QCOMPARE(AnsweringServer::codeOf(finish(archive, Md5("a"))), 40400);
}

void TestArchives::projectThatIsNoBuildingHasNoArchives()
{
    auto scene = m_server->addProject("scene", "wang");
    scene.type = "CIM";
    m_server->store().putProject(scene);
    const auto reply = m_server->ask("POST", {"projects", "scene", "archives"}, m_token,
                                     R"({"path":"scene/a/b.kyv","size":3})");
    QCOMPARE(AnsweringServer::codeOf(reply), 40400);
}

void TestArchives::archiveThatNobodyTouchesIsThrownAway()
{
    const auto archive = begun(3);
    (void)put(archive, "0", "abc");
    m_server->api().tick();
    QCOMPARE(received(begin(guid + "/task/房子.kyv", 3)), 3);
    constexpr std::int64_t day = 24 * 3600;
    m_server->store().setReceived(archive, 3, std::time(nullptr) - day - 1);
    m_server->api().tick();
    QVERIFY(!QFile::exists(file(archive)));
    QCOMPARE(AnsweringServer::codeOf(finish(archive, Md5("abc"))), 40411);
}

QTEST_GUILESS_MAIN(TestArchives)
#include "test_archives.moc"
