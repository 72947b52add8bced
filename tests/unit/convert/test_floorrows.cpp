// SPDX-License-Identifier: MIT
#include "convert/floorrows.h"

#include <algorithm>
#include <random>

#include <QStringList>
#include <QTest>

using namespace TorvoEditor;

namespace
{

QStringList Names(const FloorRows& rows)
{
    QStringList names;
    for (int index = 0; index < rows.size(); ++index)
        names.append(rows.at(index).floorName());
    return names;
}

FloorRows Rows(int count)
{
    FloorRows rows;
    for (int index = 0; index < count; ++index)
        rows.insert(index, std::make_unique<CFloorTempData>(QString::number(index)));
    return rows;
}

} // namespace

class TestFloorRows : public QObject
{
    Q_OBJECT

private slots:
    void emptyListHoldsNoIndex();
    void rowIsPutInAtItsPlace();
    void takenRowIsTheCallers();
    void rowsAreTakenFromBottomToTop();
    void rowsOnBothSidesOfTheGapChangePlaces();
    void drawnChangesLeaveWhatAPlainListHas();
};

void TestFloorRows::emptyListHoldsNoIndex()
{
    const FloorRows rows;
    QCOMPARE(rows.size(), 0);
    QVERIFY(!rows.contains(0));
    QVERIFY(!rows.contains(-1));
}

void TestFloorRows::rowIsPutInAtItsPlace()
{
    auto rows = Rows(3);
    rows.insert(1, std::make_unique<CFloorTempData>("a"));
    rows.insert(0, std::make_unique<CFloorTempData>("b"));
    rows.insert(5, std::make_unique<CFloorTempData>("c"));
    QCOMPARE(Names(rows), QStringList({"b", "0", "a", "1", "2", "c"}));
    QVERIFY(rows.contains(5));
    QVERIFY(!rows.contains(6));
}

void TestFloorRows::takenRowIsTheCallers()
{
    auto rows = Rows(3);
    const auto taken = rows.take(1);
    QCOMPARE(taken->floorName(), QString("1"));
    QCOMPARE(Names(rows), QStringList({"0", "2"}));
}

void TestFloorRows::rowsAreTakenFromBottomToTop()
{
    auto rows = Rows(10);
    QStringList taken;
    for (const int index : {9, 6, 5, 2, 0})
        taken.append(rows.take(index)->floorName());
    QCOMPARE(taken, QStringList({"9", "6", "5", "2", "0"}));
    QCOMPARE(Names(rows), QStringList({"1", "3", "4", "7", "8"}));
}

void TestFloorRows::rowsOnBothSidesOfTheGapChangePlaces()
{
    auto rows = Rows(5);
    static_cast<void>(rows.take(2));
    rows.swap(1, 2);
    QCOMPARE(Names(rows), QStringList({"0", "3", "1", "4"}));
}

void TestFloorRows::drawnChangesLeaveWhatAPlainListHas()
{
    std::mt19937 random(7);
    const auto draw = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    auto rows = Rows(0);
    QStringList plain;
    for (int step = 0; step < 5'000; ++step) {
        const int kind = draw(5);
        if (kind < 2 || plain.size() < 2) {
            const int index = draw(plain.size() + 1);
            plain.insert(index, QString::number(step));
            rows.insert(index, std::make_unique<CFloorTempData>(QString::number(step)));
        } else if (kind < 4) {
            const int index = draw(plain.size());
            QCOMPARE(rows.take(index)->floorName(), plain.takeAt(index));
        } else {
            const int index = draw(plain.size() - 1);
            std::swap(plain[index], plain[index + 1]);
            rows.swap(index, index + 1);
        }
        QCOMPARE(rows.size(), plain.size());
    }
    QCOMPARE(Names(rows), plain);
}

QTEST_APPLESS_MAIN(TestFloorRows)
#include "test_floorrows.moc"
