// SPDX-License-Identifier: MIT
#include <QTest>

#ifndef Q_MOC_RUN // it cannot read <algorithm>
#include "wire/bytes.h"
#include "wire/manifestdelta.h"
#include "wire/message.h"

#include <random>
#endif

using namespace wire;

namespace
{

FileEntry File(const std::string& path, const std::string& content)
{
    return {path,
            content.size(),
            0644,
            DigestOf(content),
            Cutting::contentDefined,
            {{DigestOf(content), static_cast<std::uint32_t>(content.size())}}};
}

const Manifest base{{File("a", "first"), File("b", "second")}};

bool IsRefused(const std::string& bytes)
{
    return std::holds_alternative<Refusal>(DecodeManifestDelta(base, bytes));
}

} // namespace

/// Deltas, bits and messages from a client that may be anybody.
class TestManifestDelta : public QObject
{
    Q_OBJECT

private slots:
    void smallChangeOfManyFilesIsShort();
    void deltaCutAnywhereIsRefusedOrShorter();
    void noiseIsRefused();
    void deltaToAnotherBaseIsRefused();
    void pathIsRefused_data();
    void pathIsRefused();
    void deltaThatUnfoldsWithoutEndIsRefused();
    void indexBeyondTheBaseIsRefused_data();
    void indexBeyondTheBaseIsRefused();
    void piecesSurviveTheirWay();
    void piecesCutAnywhereAreRefused();
    void pieceOfAnImpossibleSizeIsRefused();
    void bitsSurviveTheirWay();
    void bitsOfTheWrongNumberAreRefused();
    void messageWithALengthBeyondItsEndIsNone();
};

void TestManifestDelta::smallChangeOfManyFilesIsShort()
{
    Manifest many;
    for (int i = 10000; i < 12000; ++i)
        many.files.push_back(File("file" + std::to_string(i), std::to_string(i)));
    auto changed = many;
    changed.files[700] = File("file10700", "changed");
    QVERIFY(EncodeManifestDelta(many, changed).size() < 300);
    QVERIFY(EncodeManifest(changed).size() > 100000);
}

void TestManifestDelta::deltaCutAnywhereIsRefusedOrShorter()
{
    const auto bytes = EncodeManifestDelta(base, {{File("a", "first"), File("c", "third")}});
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto decoded = DecodeManifestDelta(base, bytes.substr(0, length));
        // Cut between two entries it is a delta to fewer files.
        const auto* manifest = std::get_if<Manifest>(&decoded);
        QVERIFY(manifest == nullptr || manifest->files.size() < 2);
    }
}

void TestManifestDelta::noiseIsRefused()
{
    std::mt19937 random(1);
    const auto front = EncodeManifestDelta(base, {});
    for (int i = 0; i < 20000; ++i) {
        auto bytes = front;
        for (int left = 1 + static_cast<int>(random() % 60); left > 0; --left)
            bytes += static_cast<char>(random());
        const auto decoded = DecodeManifestDelta(base, bytes);
        if (const auto* manifest = std::get_if<Manifest>(&decoded))
            QVERIFY(ManifestRefusal(*manifest).empty());
    }
}

void TestManifestDelta::deltaToAnotherBaseIsRefused()
{
    const Manifest other{{File("x", "x")}};
    QVERIFY(IsRefused(EncodeManifestDelta(other, other)));
}

void TestManifestDelta::pathIsRefused_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("climbs") << QByteArray("../x");
    QTest::newRow("climbs inside") << QByteArray("a/../../x");
    QTest::newRow("absolute") << QByteArray("/etc/passwd");
    QTest::newRow("drive") << QByteArray("C:/x");
    QTest::newRow("device") << QByteArray("a\0b", 3);
    QTest::newRow("backslash") << QByteArray("..\\x");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("name of 256 bytes") << QByteArray(256, 'n');
}

void TestManifestDelta::pathIsRefused()
{
    QFETCH(QByteArray, path);
    QVERIFY(IsRefused(EncodeManifestDelta(base, {{File(path.toStdString(), "x")}})));
}

void TestManifestDelta::deltaThatUnfoldsWithoutEndIsRefused()
{
    // A file of many pieces, and a delta that names it again and again in a few bytes each.
    Manifest large{{File("a", "x")}};
    large.files[0].pieces.assign(100000, large.files[0].pieces[0]);
    large.files[0].size = 100000;
    ByteWriter writer;
    writer.raw(EncodeManifestDelta(large, {}));
    for (int i = 0; i < 1000; ++i) {
        const auto path = "file" + std::to_string(10000 + i);
        writer.u8(2);
        writer.u16(static_cast<std::uint16_t>(path.size()));
        writer.raw(path);
        writer.u32(0644);
        writer.u32(0);
    }
    QVERIFY(std::holds_alternative<Refusal>(DecodeManifestDelta(large, writer.bytes())));
}

void TestManifestDelta::indexBeyondTheBaseIsRefused_data()
{
    QTest::addColumn<quint32>("first");
    QTest::addColumn<quint32>("count");
    QTest::newRow("first beyond") << 2U << 1U;
    QTest::newRow("count beyond") << 1U << 2U;
    QTest::newRow("count wraps") << 1U << UINT32_MAX;
}

void TestManifestDelta::indexBeyondTheBaseIsRefused()
{
    QFETCH(quint32, first);
    QFETCH(quint32, count);
    ByteWriter writer;
    writer.raw(EncodeManifestDelta(base, {}));
    writer.u8(1);
    writer.u32(first);
    writer.u32(count);
    QVERIFY(IsRefused(writer.take()));
}

void TestManifestDelta::piecesSurviveTheirWay()
{
    const std::vector<Piece> pieces{{DigestOf("a"), 1}, {DigestOf("b"), maximumPieceSize}};
    const auto decoded = DecodePieces(EncodePieces(pieces));
    QVERIFY(std::get<std::vector<Piece>>(decoded) == pieces);
    QVERIFY(std::get<std::vector<Piece>>(DecodePieces({})).empty());
}

void TestManifestDelta::piecesCutAnywhereAreRefused()
{
    const std::vector<Piece> pieces{{DigestOf("a"), 1}};
    const auto bytes = EncodePieces(pieces);
    for (std::size_t length = 1; length < bytes.size(); ++length)
        QVERIFY(std::holds_alternative<Refusal>(DecodePieces(std::string_view(bytes).substr(0, length))));
}

void TestManifestDelta::pieceOfAnImpossibleSizeIsRefused()
{
    for (const auto size : {0U, maximumPieceSize + 1}) {
        const std::vector<Piece> pieces{{DigestOf("a"), size}};
        QVERIFY(std::holds_alternative<Refusal>(DecodePieces(EncodePieces(pieces))));
    }
}

void TestManifestDelta::bitsSurviveTheirWay()
{
    std::mt19937 random(2);
    for (std::size_t count = 0; count < 40; ++count) {
        std::vector<bool> bits(count);
        for (std::size_t i = 0; i < count; ++i)
            bits[i] = random() % 2 == 0;
        const auto decoded = DecodeBits(EncodeBits(bits), count);
        QVERIFY(std::get<std::vector<bool>>(decoded) == bits);
    }
}

void TestManifestDelta::bitsOfTheWrongNumberAreRefused()
{
    QVERIFY(std::holds_alternative<Refusal>(DecodeBits("ab", 8)));
    QVERIFY(std::holds_alternative<Refusal>(DecodeBits("", 1)));
}

void TestManifestDelta::messageWithALengthBeyondItsEndIsNone()
{
    const auto message = WriteMessage("head", "body");
    QVERIFY(ReadMessage(message)->head == "head" && ReadMessage(message)->body == "body");
    for (std::size_t length = 0; length < 8; ++length)
        QVERIFY(!ReadMessage(std::string_view(message).substr(0, length)));
}

QTEST_GUILESS_MAIN(TestManifestDelta)
#include "test_manifestdelta.moc"
