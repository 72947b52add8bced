// SPDX-License-Identifier: MIT
#include "BizCommon/floorinfo.h"
#include "person.h"

#include <memory>

#include <QTest>

namespace
{

const std::string building = "22222222-0d52-4a67-8f10-2b9a5e4d1002";

enum State { onlyHere = 0, same = 1, changedHere = 2, changedThere = 3, conflict = 4 };

BIZCOMMON::FLOORINFO::CFloorInfo FloorsOf(const Person& person)
{
    return {QString::fromStdString(building), QString::fromStdWString(person.dataFolderText())};
}

QStringList NamesOf(const Person& person)
{
    QStringList names;
    for (const auto& floor : FloorsOf(person).GetFloors())
        names.append(floor.floorName);
    return names;
}

} // namespace

/// The floors of a building project go with it from one person to the other.
class TestFloorTravel : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void storedFloorsMakeTheProjectModified();
    void floorsComeWithADownload();
    void floorsComeWithAnUpdate();
    void floorsChangedOnBothSidesAreAConflict();
    void damagedFileThatWasKeptAsideStaysHere();

private:
    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<Person> m_anna;
    std::unique_ptr<Person> m_ben;
};

void TestFloorTravel::init()
{
    m_anna.reset();
    m_ben.reset();
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_anna = std::make_unique<Person>(*m_server);
    m_ben = std::make_unique<Person>(*m_server);
    m_anna->create(building, "BIM");
    QVERIFY(m_anna->upload(building));
    QCOMPARE(m_anna->state(building), int(same));
}

void TestFloorTravel::storedFloorsMakeTheProjectModified()
{
    FloorsOf(*m_anna).SaveFloors({{"一层", {{"m", {"1F"}}}}});
    QCOMPARE(m_anna->state(building), int(changedHere));
    QVERIFY2(m_anna->upload(building), qPrintable(m_anna->lastWords()));
    QCOMPARE(m_anna->state(building), int(same));
    FloorsOf(*m_anna).SaveFloors({{"二层", {{"m", {"1F"}}}}});
    QCOMPARE(m_anna->state(building), int(changedHere));
}

void TestFloorTravel::floorsComeWithADownload()
{
    FloorsOf(*m_anna).SaveFloors({{"一层", {{"m", {"1F"}}}}});
    QVERIFY(m_anna->upload(building));
    QVERIFY2(m_ben->download(building), qPrintable(m_ben->lastWords()));
    const auto floors = FloorsOf(*m_ben).GetFloors();
    QCOMPARE(floors.size(), 1);
    QCOMPARE(floors.first().floorName, QString("一层"));
    QCOMPARE(floors.first().mapping, (QMap<QString, QStringList>{{"m", {"1F"}}}));
    QCOMPARE(m_ben->state(building), int(same));
}

void TestFloorTravel::floorsComeWithAnUpdate()
{
    QVERIFY(m_ben->download(building));
    auto floors = FloorsOf(*m_ben);
    floors.LoadFloors({QString::fromStdString(building)});
    FloorsOf(*m_anna).SaveFloors({{"一层", {}}});
    QVERIFY(m_anna->upload(building));
    QCOMPARE(m_ben->state(building), int(changedThere));
    QVERIFY2(m_ben->update(building), qPrintable(m_ben->lastWords()));
    QCOMPARE(NamesOf(*m_ben), QStringList("一层"));
    QCOMPARE(floors.GetFloors().size(), 1);
}

void TestFloorTravel::floorsChangedOnBothSidesAreAConflict()
{
    QVERIFY(m_ben->download(building));
    FloorsOf(*m_anna).SaveFloors({{"一层", {}}});
    FloorsOf(*m_ben).SaveFloors({{"二层", {}}});
    QVERIFY(m_anna->upload(building));
    QCOMPARE(m_ben->state(building), int(conflict));
    QVERIFY(!m_ben->upload(building));
    QCOMPARE(NamesOf(*m_ben), QStringList("二层"));
}

void TestFloorTravel::damagedFileThatWasKeptAsideStaysHere()
{
    m_anna->write(building, "floors.json", "damaged");
    FloorsOf(*m_anna).SaveFloors({{"一层", {}}});
    QCOMPARE(m_anna->read(building, "floors.json.damaged"), std::string("damaged"));
    QVERIFY2(m_anna->upload(building), qPrintable(m_anna->lastWords()));
    QCOMPARE(m_anna->state(building), int(same));
    QVERIFY(m_ben->download(building));
    QCOMPARE(NamesOf(*m_ben), QStringList("一层"));
    QVERIFY(!std::filesystem::exists(m_ben->folder(building) / "floors.json.damaged"));
}

QTEST_GUILESS_MAIN(TestFloorTravel)
#include "test_floortravel.moc"
