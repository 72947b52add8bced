// SPDX-License-Identifier: MIT
// moc cannot read the standard headers behind this.
#ifndef Q_MOC_RUN
#include "wire/cutting.h"
#endif

#include <algorithm>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <QTemporaryDir>
#include <QTest>

using namespace wire;

namespace
{

std::string Noise(std::size_t size, unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

} // namespace

class TestCutting : public QObject
{
    Q_OBJECT

private slots:
    void piecesAreTheFileAgain_data();
    void piecesAreTheFileAgain();
    void contentPiecesKeepTheirSizes();
    void insertionChangesOnlyThePiecesAroundIt();
    void sqliteFileIsCutIntoItsPages();
    void sqlitePageSizeIsOneOrNone_data();
    void sqlitePageSizeIsOneOrNone();
    void missingFileIsRefused();

private:
    FileEntry cut(const std::string& bytes, std::string* together = nullptr);

    QTemporaryDir m_folder;
};

FileEntry TestCutting::cut(const std::string& bytes, std::string* together)
{
    const std::filesystem::path file = m_folder.filePath("file").toStdString();
    std::ofstream(file, std::ios::binary) << bytes;
    auto result = CutFile(file, "file", [&](const Piece& piece, std::span<const std::byte> content) {
        QVERIFY(piece.size == content.size() && piece.name == DigestOf(content));
        if (together != nullptr)
            together->append(reinterpret_cast<const char*>(content.data()), content.size());
    });
    return std::get<FileEntry>(std::move(result));
}

void TestCutting::piecesAreTheFileAgain_data()
{
    QTest::addColumn<quint64>("size");
    for (const quint64 size : {0, 1, 4095, 4096, 65536, 65537, 1048576, 1048577, 5000000})
        QTest::addRow("%llu bytes", size) << size;
}

void TestCutting::piecesAreTheFileAgain()
{
    QFETCH(quint64, size);
    const auto bytes = Noise(size, 1);
    std::string together;
    const auto entry = cut(bytes, &together);
    QVERIFY(together == bytes);
    QCOMPARE(entry.size, std::uint64_t(size));
    QVERIFY(entry.content == ContentOf(entry));
    QVERIFY(!std::holds_alternative<Refusal>(DecodeManifest(EncodeManifest({{entry}}))));
}

void TestCutting::contentPiecesKeepTheirSizes()
{
    const auto entry = cut(Noise(4000000, 2));
    for (std::size_t i = 0; i + 1 < entry.pieces.size(); ++i) {
        QVERIFY(entry.pieces[i].size >= smallestContentPiece);
        QVERIFY(entry.pieces[i].size <= largestContentPiece);
    }
    const auto average = 4000000 / entry.pieces.size();
    QVERIFY(average > averageContentPiece / 2 && average < averageContentPiece * 2);
}

void TestCutting::insertionChangesOnlyThePiecesAroundIt()
{
    const auto bytes = Noise(2000000, 3);
    const auto before = cut(bytes);
    const auto after = cut(bytes.substr(0, 1000000) + "inserted" + bytes.substr(1000000));
    std::set<Digest> known;
    for (const auto& piece : before.pieces)
        known.insert(piece.name);
    const auto isNew = [&](const Piece& piece) { return known.count(piece.name) == 0; };
    QVERIFY(std::count_if(after.pieces.begin(), after.pieces.end(), isNew) <= 4);
}

void TestCutting::sqliteFileIsCutIntoItsPages()
{
    std::string database("SQLite format 3\0\x10\x00", 18);
    database += Noise(4096 * 10 - database.size(), 4);
    const auto entry = cut(database);
    QCOMPARE(entry.cutting, Cutting::pages);
    QCOMPARE(entry.pieces.size(), std::size_t(10));
    QCOMPARE(entry.pieces.front().size, std::uint32_t(4096));
}

void TestCutting::sqlitePageSizeIsOneOrNone_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<quint64>("fileSize");
    QTest::addColumn<quint64>("pageSize");
    const QByteArray magic("SQLite format 3\0", 16);
    QTest::newRow("512") << magic + QByteArray("\x02\x00", 2) << quint64(1024) << quint64(512);
    QTest::newRow("65536") << magic + QByteArray("\x00\x01", 2) << quint64(65536) << quint64(65536);
    QTest::newRow("no power of two") << magic + QByteArray("\x03\x00", 2) << quint64(768 * 4) << quint64(0);
    QTest::newRow("too small") << magic + QByteArray("\x01\x00", 2) << quint64(1024) << quint64(0);
    QTest::newRow("nothing") << magic + QByteArray("\x00\x00", 2) << quint64(1024) << quint64(0);
    QTest::newRow("half a page at the end")
        << magic + QByteArray("\x10\x00", 2) << quint64(5000) << quint64(0);
    QTest::newRow("a short head") << magic << quint64(4096) << quint64(0);
    QTest::newRow("another file") << QByteArray(18, 'x') << quint64(4096) << quint64(0);
}

void TestCutting::sqlitePageSizeIsOneOrNone()
{
    QFETCH(QByteArray, head);
    QFETCH(quint64, fileSize);
    QFETCH(quint64, pageSize);
    const auto bytes = std::as_bytes(std::span(head.constData(), static_cast<std::size_t>(head.size())));
    QCOMPARE(quint64(SqlitePageSize(bytes, fileSize)), pageSize);
}

void TestCutting::missingFileIsRefused()
{
    const std::filesystem::path file = m_folder.filePath("missing").toStdString();
    const auto result = CutFile(file, "missing", [](const Piece&, std::span<const std::byte>) {});
    QVERIFY(std::holds_alternative<Refusal>(result));
}

QTEST_APPLESS_MAIN(TestCutting)
#include "test_cutting.moc"
