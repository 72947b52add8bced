// SPDX-License-Identifier: MIT
#include "native/uniqueid.h"

#include <array>
#include <cstring>
#include <set>
#include <thread>

#include <QTest>

using Native::UniqueId;

namespace
{

std::array<std::uint8_t, 16> BytesOf(const UniqueId& id)
{
    std::array<std::uint8_t, 16> bytes{};
    std::memcpy(bytes.data(), &id, sizeof id);
    return bytes;
}

} // namespace

class TestUniqueId : public QObject
{
    Q_OBJECT

private slots:
    void idsDiffer();
    void idsAreRandomUuids();
    void tickCountGoesOn();
};

void TestUniqueId::idsDiffer()
{
    std::set<std::array<std::uint8_t, 16>> seen;
    for (int i = 0; i < 10000; ++i) {
        UniqueId id;
        QVERIFY(Native::CreateUniqueId(id));
        QVERIFY(seen.insert(BytesOf(id)).second);
    }
}

void TestUniqueId::idsAreRandomUuids()
{
    for (int i = 0; i < 100; ++i) {
        UniqueId id;
        QVERIFY(Native::CreateUniqueId(id));
        QCOMPARE(id.data3 >> 12, 4);
        QCOMPARE(id.data4[0] >> 6, 2);
    }
}

void TestUniqueId::tickCountGoesOn()
{
    const auto before = Native::TickCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    // In the arithmetic of 32 bits, so that the wrap after 49 days does not matter.
    const std::uint32_t passed = Native::TickCount() - before;
    QVERIFY(passed >= 19 && passed < 60000);
}

QTEST_APPLESS_MAIN(TestUniqueId)
#include "test_uniqueid.moc"
