// SPDX-License-Identifier: MIT
#include "tabs/frames.h"

#include <rapidcheck.h>

#include <optional>
#include <string>
#include <vector>

#include <QTest>

using TorvoEditor::CutFrames;
using TorvoEditor::MakeFrame;

namespace
{

using Bytes = std::vector<std::uint8_t>;

QByteArray ToQt(const Bytes& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())};
}

/// The first frame of `bytes`, written as the sentence that describes it: more than four bytes are there, the
/// first four tell a length that is not zero, and that many bytes follow.
std::optional<Bytes> FirstFrame(const Bytes& bytes)
{
    if (bytes.size() <= 4)
        return std::nullopt;
    std::uint64_t length = 0;
    for (std::size_t i = 0; i < 4; ++i)
        length = length * 256 + bytes[i];
    if (length == 0 || bytes.size() - 4 < length)
        return std::nullopt;
    return Bytes(bytes.begin() + 4, bytes.begin() + 4 + static_cast<std::ptrdiff_t>(length));
}

/// All frames of `bytes`, by taking away the first one over and over.
std::vector<Bytes> ExpectedFrames(Bytes bytes)
{
    std::vector<Bytes> frames;
    while (const auto frame = FirstFrame(bytes)) {
        frames.push_back(*frame);
        bytes.erase(bytes.begin(), bytes.begin() + 4 + static_cast<std::ptrdiff_t>(frame->size()));
    }
    return frames;
}

bool CutsAsExpected(const Bytes& bytes)
{
    const auto expected = ExpectedFrames(bytes);
    const auto frames = CutFrames(ToQt(bytes));
    if (frames.size() != static_cast<int>(expected.size()))
        return false;
    for (int i = 0; i < frames.size(); ++i) {
        if (frames[i] != ToQt(expected[static_cast<std::size_t>(i)]))
            return false;
    }
    return true;
}

/// Pieces of which a stream may consist, whole frames and damaged ones.
rc::Gen<Bytes> AnyPiece()
{
    const auto payload = rc::gen::container<Bytes>(rc::gen::arbitrary<std::uint8_t>());
    const auto frame = rc::gen::map(rc::gen::nonEmpty(payload), [](const Bytes& bytes) {
        const QByteArray whole = MakeFrame(ToQt(bytes));
        return Bytes(whole.begin(), whole.end());
    });
    const auto damaged =
        rc::gen::element(Bytes{0, 0, 0, 0}, Bytes{0xFF, 0xFF, 0xFF, 0xFF}, Bytes{0xFF, 0xFF, 0xFF, 0xFC},
                         Bytes{0, 0, 0, 9, 1}, Bytes{0, 0, 0}, Bytes{0x80, 0, 0, 0});
    return rc::gen::weightedOneOf<Bytes>({{6, frame}, {2, payload}, {1, damaged}});
}

Bytes Joined(const std::vector<Bytes>& pieces)
{
    Bytes bytes;
    for (const auto& piece : pieces)
        bytes.insert(bytes.end(), piece.begin(), piece.end());
    return bytes;
}

} // namespace

class TestFrames : public QObject
{
    Q_OBJECT

private slots:
    void lengthStandsInFourBytesBigEndianWithoutItself();
    void twoFramesInOneReadComeInOrder();
    void fourBytesAreNoFrame_data();
    void fourBytesAreNoFrame();
    void lengthZeroEndsTheReadAndDropsTheRest();
    void frameLongerThanTheReadIsDropped_data();
    void frameLongerThanTheReadIsDropped();
    void threeBytesBehindAWholeFrameAreDropped();
    void frameOfOneByteBehindAnotherIsTaken();
    void frameCutAtEveryByteGivesNothing();
    void anyBytesGiveTheFramesThatTheyBeginWith();
    void anyPayloadsComeBackFromTheirFrames();
};

void TestFrames::lengthStandsInFourBytesBigEndianWithoutItself()
{
    QCOMPARE(MakeFrame("abc"), QByteArray("\0\0\0\3abc", 7));
    QCOMPARE(MakeFrame(QByteArray(0x010203, 'x')).left(5), QByteArray("\0\1\2\3x", 5));
    QCOMPARE(MakeFrame(QByteArray()), QByteArray("\0\0\0\0", 4));
}

void TestFrames::twoFramesInOneReadComeInOrder()
{
    const QList<QByteArray> both{"first", "second"};
    QCOMPARE(CutFrames(MakeFrame("first") + MakeFrame("second")), both);
}

void TestFrames::fourBytesAreNoFrame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("length zero") << QByteArray("\0\0\0\0", 4);
    QTest::newRow("length one") << QByteArray("\0\0\0\1", 4);
    QTest::newRow("three bytes") << QByteArray("\0\0\0", 3);
}

void TestFrames::fourBytesAreNoFrame()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(CutFrames(bytes), QList<QByteArray>());
}

void TestFrames::lengthZeroEndsTheReadAndDropsTheRest()
{
    const auto bytes = MakeFrame("seen") + QByteArray("\0\0\0\0", 4) + MakeFrame("lost");
    QCOMPARE(CutFrames(bytes), QList<QByteArray>{"seen"});
}

void TestFrames::frameLongerThanTheReadIsDropped_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("one byte short") << QByteArray("\0\0\0\x8", 4);
    QTest::newRow("2 GiB") << QByteArray("\x80\0\0\0", 4);
    QTest::newRow("wraps to 0 with its header") << QByteArray("\xFF\xFF\xFF\xFC", 4);
    QTest::newRow("4 GiB less one") << QByteArray("\xFF\xFF\xFF\xFF", 4);
}

void TestFrames::frameLongerThanTheReadIsDropped()
{
    QFETCH(QByteArray, header);
    QCOMPARE(CutFrames(MakeFrame("seen") + header + "1234567"), QList<QByteArray>{"seen"});
}

void TestFrames::threeBytesBehindAWholeFrameAreDropped()
{
    QCOMPARE(CutFrames(MakeFrame("whole") + QByteArray("\0\0\0", 3)), QList<QByteArray>{"whole"});
}

void TestFrames::frameOfOneByteBehindAnotherIsTaken()
{
    const QList<QByteArray> both{"whole", "1"};
    QCOMPARE(CutFrames(MakeFrame("whole") + MakeFrame("1")), both);
}

void TestFrames::frameCutAtEveryByteGivesNothing()
{
    const QByteArray frame = MakeFrame("{\"processName\":\"a\"}");
    for (int size = 0; size < frame.size(); ++size)
        QCOMPARE(CutFrames(frame.left(size)), QList<QByteArray>());
    QCOMPARE(CutFrames(frame).size(), 1);
}

void TestFrames::anyBytesGiveTheFramesThatTheyBeginWith()
{
    const bool holds = rc::check("cutting any bytes", [] {
        const auto pieces = *rc::gen::container<std::vector<Bytes>>(AnyPiece());
        RC_ASSERT(CutsAsExpected(Joined(pieces)));
    });
    QVERIFY(holds);
}

void TestFrames::anyPayloadsComeBackFromTheirFrames()
{
    const bool holds = rc::check("cutting what was framed", [] {
        const auto payloads = *rc::gen::container<std::vector<std::string>>(
            rc::gen::nonEmpty(rc::gen::arbitrary<std::string>()));
        QByteArray stream;
        QList<QByteArray> expected;
        for (const auto& payload : payloads) {
            expected.append(QByteArray::fromStdString(payload));
            stream += MakeFrame(expected.back());
        }
        RC_ASSERT(CutFrames(stream) == expected);
    });
    QVERIFY(holds);
}

QTEST_APPLESS_MAIN(TestFrames)
#include "test_frames.moc"
