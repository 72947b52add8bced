// SPDX-License-Identifier: MIT
// moc cannot read the standard headers behind these.
#ifndef Q_MOC_RUN
#include "wire/cutting.h"
#include "wire/manifest.h"
#include "wire/piecestream.h"
#endif

#include <string>
#include <vector>

#include <QTest>

#include <rapidcheck.h>

using namespace wire;

namespace
{

std::span<const std::byte> Bytes(const std::string& text)
{
    return std::as_bytes(std::span(text));
}

std::string Text(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

class TestPieceStream : public QObject
{
    Q_OBJECT

private slots:
    void everyStreamSurvivesEveryCutting();
    void whatCompressesIsCompressed();
    void noiseTravelsAsItIs_data();
    void noiseTravelsAsItIs();
    void whatSavesATenthIsCompressed();
    void frameIsAppendedBehindWhatWasThere();
    void streamThatEndsInAPieceIsNotComplete();
    void pieceLargerThanThereCanBeIsRefused();
    void lyingCompressedPieceIsRefused();
    void bombIsRefused();
    void noiseNeverBreaksIt();
};

void TestPieceStream::everyStreamSurvivesEveryCutting()
{
    QVERIFY(rc::check([] {
        const auto pieces = *rc::gen::container<std::vector<std::string>>(
            rc::gen::nonEmpty(rc::gen::container<std::string>(rc::gen::inRange<char>(0, 4))));
        std::string stream;
        for (const auto& piece : pieces)
            stream += FramedPiece(Bytes(piece));
        std::vector<std::string> taken;
        PieceStreamReader reader([&](std::span<const std::byte> bytes) { taken.push_back(Text(bytes)); });
        const auto step = *rc::gen::inRange<std::size_t>(1, 64);
        for (std::size_t i = 0; i < stream.size(); i += step) {
            const auto part = stream.substr(i, step);
            RC_ASSERT(reader.feed(Bytes(part)));
        }
        RC_ASSERT(reader.isComplete());
        RC_ASSERT(taken == pieces);
    }));
}

void TestPieceStream::whatCompressesIsCompressed()
{
    const std::string zeros(100000, '\0');
    QVERIFY(FramedPiece(Bytes(zeros)).size() < zeros.size() / 10);
    const std::string few = "x";
    QCOMPARE(FramedPiece(Bytes(few)).size(), few.size() + 4);
}

void TestPieceStream::noiseTravelsAsItIs_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {1, 4095, 16383, 16384, 65536})
        QTest::addRow("%d bytes", size) << size;
}

void TestPieceStream::noiseTravelsAsItIs()
{
    QFETCH(int, size);
    std::string noise;
    while (noise.size() < static_cast<std::size_t>(size)) {
        const auto digest = DigestOf(std::to_string(noise.size()));
        noise.append(reinterpret_cast<const char*>(digest.bytes.data()), digest.bytes.size());
    }
    noise.resize(static_cast<std::size_t>(size));
    const auto frame = FramedPiece(Bytes(noise));
    QCOMPARE(frame.size(), noise.size() + frameOverhead);
    QVERIFY(frame.substr(frameOverhead) == noise);
}

void TestPieceStream::whatSavesATenthIsCompressed()
{
    // Noise of seven bits in each byte: an eighth can be saved, and only by a code for single bytes.
    std::string noise;
    for (int i = 0; i < 512; ++i) {
        for (const auto byte : DigestOf(std::to_string(i)).bytes)
            noise += static_cast<char>(byte & 0x7FU);
    }
    QVERIFY(FramedPiece(Bytes(noise)).size() < noise.size() * 9 / 10);
}

void TestPieceStream::frameIsAppendedBehindWhatWasThere()
{
    auto stream = FramedPiece(Bytes("first"));
    AppendFrame(stream, Bytes(std::string(100000, 'a')));
    FrameReader reader(stream);
    QVERIFY(Text(reader.next()->bytes) == "first");
    QVERIFY(Text(reader.next()->bytes) == std::string(100000, 'a'));
    QVERIFY(!reader.next() && reader.isGood());
}

void TestPieceStream::streamThatEndsInAPieceIsNotComplete()
{
    const auto stream = FramedPiece(Bytes("some bytes"));
    for (std::size_t length = 1; length < stream.size(); ++length) {
        PieceStreamReader reader([](std::span<const std::byte>) { QFAIL("half a piece has been given"); });
        QVERIFY(reader.feed(Bytes(stream.substr(0, length))));
        QVERIFY(!reader.isComplete());
    }
}

void TestPieceStream::pieceLargerThanThereCanBeIsRefused()
{
    PieceStreamReader reader([](std::span<const std::byte>) {});
    QVERIFY(!reader.feed(Bytes(std::string("\xff\xff\xff\x7f.", 5))));
    QVERIFY(!reader.feed(Bytes(FramedPiece(Bytes("more")))));
    QVERIFY(!reader.isComplete());
}

void TestPieceStream::lyingCompressedPieceIsRefused()
{
    PieceStreamReader reader([](std::span<const std::byte>) { QFAIL("noise has been unpacked"); });
    QVERIFY(!reader.feed(Bytes(std::string("\x04\x00\x00\x80noise", 9))));
}

void TestPieceStream::bombIsRefused()
{
    // Two pieces' worth of zeros in one: compressed as one piece can be, and larger than any may become.
    const auto half = FramedPiece(Bytes(std::string(maximumPieceSize, '\0')));
    PieceStreamReader good([](std::span<const std::byte>) {});
    QVERIFY(good.feed(Bytes(half)));
    const auto whole = FramedPiece(Bytes(std::string(2 * std::size_t(maximumPieceSize), '\0')));
    PieceStreamReader reader([](std::span<const std::byte>) { QFAIL("a bomb has been unpacked"); });
    QVERIFY(!reader.feed(Bytes(whole)));
}

void TestPieceStream::noiseNeverBreaksIt()
{
    QVERIFY(rc::check([] {
        PieceStreamReader reader(
            [](std::span<const std::byte> bytes) { RC_ASSERT(bytes.size() <= maximumPieceSize); });
        const auto parts = *rc::gen::arbitrary<std::vector<std::string>>();
        for (const auto& part : parts) {
            if (!reader.feed(Bytes(part)))
                break;
        }
    }));
}

QTEST_APPLESS_MAIN(TestPieceStream)
#include "test_piecestream.moc"
