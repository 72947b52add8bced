// SPDX-License-Identifier: MIT
#include "person.h"
#include "rawupload.h"

#include "wire/digest.h"
#include "wire/manifestdelta.h"
#include "wire/piecestream.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

#include <QTest>

namespace
{

const std::string scene = "11111111-0d52-4a67-8f10-2b9a5e4d1001";
const std::string copyOfScene = "22222222-0d52-4a67-8f10-2b9a5e4d1002";

constexpr int same = 1;
constexpr int badRequest = 40001;
constexpr int uploadGone = 40410;
constexpr int incomplete = 40904;

const std::string bytes(4096, 'x');

std::span<const std::byte> Bytes(const std::string& text)
{
    return std::as_bytes(std::span(text));
}

std::string NameOf(const std::string& piece)
{
    const wire::Piece one{wire::DigestOf(piece), static_cast<std::uint32_t>(piece.size())};
    return wire::EncodePieces({&one, 1});
}

const std::string isWanted(1, '\1');
const std::string isHere(1, '\0');

} // namespace

/// Projects that are new to the server: their pieces travel before their files have been told.
class TestUploadAhead : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void largeProjectComesDownByteForByte();
    void pieceIsWantedUntilItHasCome();
    void pieceIsTakenForTheFilesThatAreToldLater();
    void piecesOfAnotherProjectAreNotWanted();
    void pieceThatNobodyAskedAboutIsRefused();
    void commitBeforeTheFilesAreToldIsRefused();
    void uploadHasEndedWhenItsFilesAreTold();
    void askingInAnUploadWhoseFilesAreToldIsRefused();
    void namesThatAreNoneAreRefused_data();
    void namesThatAreNoneAreRefused();
    void filesToldNowAndLaterAreRefused();
    void fileThatChangesWhileItIsReadArrivesAsItIsInTheEnd();

private:
    /// The path of an upload whose files are told later.
    [[nodiscard]] std::string ahead() const { return m_upload->pathOf(m_upload->beginAhead()); }
    [[nodiscard]] wire::Manifest database() const
    {
        return RawUpload::manifestOf(m_anna->folder(scene) / "project.db", "project.db");
    }

    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<Person> m_anna;
    std::unique_ptr<RawUpload> m_upload;
};

void TestUploadAhead::init()
{
    m_anna.reset();
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_anna = std::make_unique<Person>(*m_server);
    m_anna->create(scene, "CIM");
    m_upload = std::make_unique<RawUpload>(*m_server, scene);
}

void TestUploadAhead::largeProjectComesDownByteForByte()
{
    m_anna->write(scene, "tiles.bin", RandomBytes(20'000'000, 1));
    m_anna->write(scene, "again.bin", RandomBytes(20'000'000, 1));
    m_anna->write(scene, "text.txt", std::string(8'000'000, 't'));
    QVERIFY2(m_anna->upload(scene), qPrintable(m_anna->lastWords()));
    QCOMPARE(m_anna->state(scene), same);
    Person ben(*m_server);
    QVERIFY2(ben.download(scene), qPrintable(ben.lastWords()));
    for (const char* file : {"tiles.bin", "again.bin", "text.txt"})
        QVERIFY2(ben.read(scene, file) == m_anna->read(scene, file), file);
    QCOMPARE(ben.integrity(scene), std::string("ok"));
}

void TestUploadAhead::pieceIsWantedUntilItHasCome()
{
    const auto path = ahead();
    QCOMPARE(m_upload->send(path + "/wanted", NameOf(bytes)).body, isWanted);
    QCOMPARE(m_upload->send(path + "/wanted", NameOf(bytes)).body, isWanted);
    QCOMPARE(m_upload->send(path + "/pieces", wire::FramedPiece(Bytes(bytes))).status, 204U);
    QCOMPARE(m_upload->send(path + "/wanted", NameOf(bytes)).body, isHere);
}

void TestUploadAhead::pieceIsTakenForTheFilesThatAreToldLater()
{
    const auto manifest = database();
    std::ifstream stream(m_anna->folder(scene) / "project.db", std::ios::binary);
    const std::string file((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    const auto path = ahead();
    std::string frames;
    auto rest = Bytes(file);
    for (const auto& piece : manifest.files.front().pieces) {
        wire::AppendFrame(frames, rest.first(piece.size));
        rest = rest.subspan(piece.size);
    }
    QVERIFY(m_upload->send(path + "/wanted", wire::EncodePieces(manifest.files.front().pieces)).status ==
            200);
    QCOMPARE(m_upload->send(path + "/pieces", frames).status, 204U);
    const auto told = m_upload->begin(manifest);
    QCOMPARE(RawUpload::bitsOf(told).find_first_not_of('\0'), std::string::npos);
    QCOMPARE(m_upload->send(m_upload->pathOf(told) + "/commit", {}).status, 200U);
}

void TestUploadAhead::piecesOfAnotherProjectAreNotWanted()
{
    m_anna->create(copyOfScene, "CIM");
    m_anna->write(copyOfScene, "tiles.bin", bytes);
    QVERIFY(m_anna->upload(copyOfScene));
    QCOMPARE(m_upload->send(ahead() + "/wanted", NameOf(bytes)).body, isHere);
}

void TestUploadAhead::pieceThatNobodyAskedAboutIsRefused()
{
    QCOMPARE(m_upload->send(ahead() + "/pieces", wire::FramedPiece(Bytes(bytes))).fault.code, badRequest);
}

void TestUploadAhead::commitBeforeTheFilesAreToldIsRefused()
{
    QCOMPARE(m_upload->send(ahead() + "/commit", {}).fault.code, incomplete);
}

void TestUploadAhead::uploadHasEndedWhenItsFilesAreTold()
{
    const auto path = ahead();
    QCOMPARE(m_upload->begin(database()).status, 200U);
    QCOMPARE(m_upload->send(path + "/wanted", NameOf(bytes)).fault.code, uploadGone);
    QCOMPARE(m_upload->send(path + "/pieces", wire::FramedPiece(Bytes(bytes))).fault.code, uploadGone);
}

void TestUploadAhead::askingInAnUploadWhoseFilesAreToldIsRefused()
{
    const auto path = m_upload->pathOf(m_upload->begin(database()));
    QCOMPARE(m_upload->send(path + "/wanted", NameOf(bytes)).fault.code, badRequest);
}

void TestUploadAhead::namesThatAreNoneAreRefused_data()
{
    QTest::addColumn<QByteArray>("names");
    const auto name = QByteArray::fromStdString(NameOf(bytes));
    QTest::newRow("cut short") << name.left(35);
    QTest::newRow("longer than a name") << name + name.left(1);
    QTest::newRow("a piece of no bytes") << name.left(32) + QByteArray(4, '\0');
    QTest::newRow("a piece larger than there can be") << name.left(32) + QByteArray(4, '\xff');
}

void TestUploadAhead::namesThatAreNoneAreRefused()
{
    QFETCH(QByteArray, names);
    QCOMPARE(m_upload->send(ahead() + "/wanted", names.toStdString()).fault.code, badRequest);
}

void TestUploadAhead::filesToldNowAndLaterAreRefused()
{
    QCOMPARE(m_upload->beginAhead(wire::EncodeManifestDelta({}, database())).fault.code, badRequest);
}

void TestUploadAhead::fileThatChangesWhileItIsReadArrivesAsItIsInTheEnd()
{
    // Written by turns until the upload has ended: whatever was sent ahead, the last one counts.
    m_anna->write(scene, "large.bin", RandomBytes(40'000'000, 1));
    m_anna->write(scene, "busy.bin", std::string(5'000'000, 'a'));
    std::atomic<bool> isUploaded = false;
    std::thread writer([&] {
        for (char letter = 'a'; !isUploaded; letter = letter == 'a' ? 'b' : 'a') {
            m_anna->write(scene, "busy.bin", std::string(5'000'000, letter));
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        }
    });
    const bool isGood = m_anna->upload(scene);
    isUploaded = true;
    writer.join();
    QVERIFY2(isGood || m_anna->upload(scene), qPrintable(m_anna->lastWords()));
    Person ben(*m_server);
    QVERIFY2(ben.download(scene), qPrintable(ben.lastWords()));
    QVERIFY(ben.read(scene, "large.bin") == m_anna->read(scene, "large.bin"));
    QVERIFY(m_anna->upload(scene));
    QVERIFY2(ben.update(scene), qPrintable(ben.lastWords()));
    QVERIFY(ben.read(scene, "busy.bin") == m_anna->read(scene, "busy.bin"));
}

QTEST_GUILESS_MAIN(TestUploadAhead)
#include "test_uploadahead.moc"
