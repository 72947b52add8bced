// SPDX-License-Identifier: MIT
#include "road/colleague.h"
#include "road/infocard.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>

using road::ChooseRegion;
using road::Colleague;
using road::HomeScreen;
using road::house;
using road::InfoCard;
using road::scene;
using road::WaitFor;

namespace
{

constexpr xcb_keysym_t enterKey = 0xff0d;
constexpr xcb_keysym_t controlKey = 0xffe3;

/// A place in the country, as chosen from the top of each list.
struct Place {
    QString province;
    QString city;
    QString region;

    [[nodiscard]] bool isIn(const QJsonObject& facts) const
    {
        const auto region = facts.value("region").toObject();
        return !province.isEmpty() && region.value("provinceName") == province &&
               region.value("cityName") == city && region.value("regionName") == this->region &&
               !region.value("provinceId").toString().isEmpty() &&
               !region.value("cityId").toString().isEmpty() && !region.value("regionId").toString().isEmpty();
    }
};

/// The rows of the lists: the third province has cities, and no city is directly governed there.
constexpr int provinceRow = 2;
constexpr int cityRow = 1;
constexpr int regionRow = 1;

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QJsonObject ReadObject(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

} // namespace

/// What a project is: made by the form, seen and edited on the card, and brought to a colleague.
class TestCard : public road::Suite
{
    Q_OBJECT

private slots:
    void aSceneIsMadeWithProvinceCityAndDistrict()
    {
        QVERIFY(session->enter());
        QVERIFY(openForm() && typeInto("nameField", "Riverside"));
        QVERIFY(chooseDepartment());
        Place place;
        QVERIFY(choosePlace("provinceBox", "cityBox", "regionBox", place));
        const QString made = sendForm();
        QVERIFY(!made.isEmpty());
        const auto facts = here().factsOf(made);
        QCOMPARE(facts.value("name").toString(), QStringLiteral("Riverside"));
        QCOMPARE(facts.value("type").toString(), QStringLiteral("CIM"));
        QVERIFY(place.isIn(facts));
        QVERIFY(facts.value("longitude").toDouble() > 113 && facts.value("longitude").toDouble() < 120);
        QVERIFY(facts.value("latitude").toDouble() > 36 && facts.value("latitude").toDouble() < 43);
    }

    void aBuildingProjectIsMadeWhenATabAsksForOne()
    {
        QVERIFY(session->enter() && session->download(scene));
        QVERIFY(session->open(scene));
        const QRect area = HomeScreen::contentArea();
        session->desktop().click(area.center());
        session->desktop().press('n', controlKey);
        QTRY_VERIFY(HomeScreen::shows("newProjectBtn"));
        QTRY_VERIFY(session->isNoChildSeen());
        QVERIFY(!HomeScreen::shows("provinceBox"));
        QVERIFY(typeInto("nameField", "Annex") && chooseDepartment());
        const QString made = sendForm();
        QVERIFY(!made.isEmpty());
        QCOMPARE(here().factsOf(made).value("type").toString(), QStringLiteral("BIM"));
    }

    void whatTheCardEditsReachesTheProjectAndTheColleague()
    {
        const Colleague colleague(server->address());
        QVERIFY(colleague.download(scene));
        QVERIFY(session->enter() && session->download(scene));
        auto card = infoCard();
        QVERIFY(card.openFor(scene));
        QVERIFY(card.retype(road::nameRow, "Harbour") && card.retype(road::iotRow, "IOT-42"));
        Place place;
        QVERIFY(choosePlace("provinceBox", "cityBox", "regionBox", place));
        QVERIFY(card.accept());
        QTRY_COMPARE(HomeScreen::stateOf(scene), road::changedHere);
        QCOMPARE(here().factsOf(scene).value("name").toString(), QStringLiteral("Harbour"));
        QVERIFY(session->upload(scene));
        QVERIFY(colleague.update(scene));
        const auto facts = colleague.factsOf(scene);
        QCOMPARE(facts.value("name").toString(), QStringLiteral("Harbour"));
        QCOMPARE(facts.value("iotCode").toString(), QStringLiteral("IOT-42"));
        QVERIFY(place.isIn(facts));
    }

    void anEditThatIsCancelledChangesNothing()
    {
        QVERIFY(session->enter() && session->download(scene));
        const auto before = here().factsOf(scene);
        auto card = infoCard();
        QVERIFY(card.openFor(scene) && card.retype(road::nameRow, "Nowhere") && card.cancel());
        QCOMPARE(here().factsOf(scene), before);
        QCOMPARE(HomeScreen::stateOf(scene), road::upToDate);
        QVERIFY(card.openFor(scene));
        QCOMPARE(InfoCard::valueOf(road::nameRow), before.value("name").toString());
    }

    void aClickInTheTreeShowsWhatTheServerKnows()
    {
        QVERIFY(session->enter());
        auto card = infoCard();
        QVERIFY(card.openFromTree(road::engine));
        QVERIFY(!InfoCard::valueOf(road::nameRow).isEmpty());
        QVERIFY(!HomeScreen::item("deleteBtn")->isEnabled());
        QVERIFY(card.cancel());
        QVERIFY(HomeScreen::card(road::engine) == nullptr);
    }

    void aTemplateIsImportedSavedAndExported()
    {
        const QTemporaryDir folder;
        const QJsonObject propertyTemplate{{"groups", QJsonArray()}, {"remark", "from a file"}};
        QVERIFY(WriteFile(folder.filePath("mine.json"), QJsonDocument(propertyTemplate).toJson()));
        QVERIFY(session->enter() && session->download(scene));
        auto card = infoCard();
        QVERIFY(card.openFor(scene) && card.clickIn(road::templateRow, "importBtn"));
        session->desktop().awaitQuiet();
        session->desktop().type(folder.filePath("mine.json"));
        session->desktop().press(enterKey);
        QTRY_COMPARE(templateShown(), QStringLiteral("mine.json"));
        QVERIFY(card.accept());
        QCOMPARE(templateIn(here().factsOf(scene)), propertyTemplate);

        QVERIFY(card.openFor(scene));
        QCOMPARE(templateShown(), QStringLiteral("CompTemplate.json"));
        // The dialog for the folder runs a loop of its own until it is answered.
        QTimer::singleShot(1500, this, [&] {
            session->desktop().type(folder.path());
            session->desktop().press(enterKey);
        });
        QVERIFY(card.clickIn(road::templateRow, "exportBtn"));
        QTRY_COMPARE(ReadObject(folder.filePath("CompTemplate.json")), propertyTemplate);
    }

    void localDataAreDeletedByTheCard()
    {
        QVERIFY(session->enter() && session->download(house));
        const QString folder = dataFolder() + "/proj_" + house;
        QVERIFY(QFileInfo::exists(folder));
        auto card = infoCard();
        QVERIFY(card.openFor(house) && card.deleteLocalData());
        QTRY_VERIFY(HomeScreen::card(house) == nullptr);
        QTRY_VERIFY(!QFileInfo::exists(folder));
        QVERIFY(HomeScreen::projectsInTree().contains(house));
        QVERIFY(session->download(house));
    }

private:
    [[nodiscard]] static QString dataFolder() { return QCoreApplication::applicationDirPath() + "/data"; }
    [[nodiscard]] Colleague here() const { return Colleague(server->address(), dataFolder()); }
    [[nodiscard]] InfoCard infoCard() { return {session->desktop(), session->home()}; }

    [[nodiscard]] static QString templateShown()
    {
        const auto* field = HomeScreen::item("templateField");
        return field != nullptr ? field->property("text").toString() : QString();
    }

    [[nodiscard]] static QJsonObject templateIn(const QJsonObject& facts)
    {
        return QJsonDocument::fromJson(facts.value("template").toString().toUtf8()).object();
    }

    [[nodiscard]] bool openForm()
    {
        return session->home().click("createBtn") &&
               WaitFor([] { return HomeScreen::shows("newProjectBtn"); });
    }

    [[nodiscard]] bool typeInto(const QString& field, const QString& text)
    {
        if (!session->home().click(field) ||
            !WaitFor([&] { return HomeScreen::item(field)->hasActiveFocus(); }))
            return false;
        session->desktop().type(text);
        return WaitFor([&] { return HomeScreen::textOf(field) == text; });
    }

    [[nodiscard]] bool choosePlace(const QString& province, const QString& city, const QString& region,
                                   Place& place)
    {
        auto& desktop = session->desktop();
        return ChooseRegion(desktop, province, provinceRow, place.province) &&
               ChooseRegion(desktop, city, cityRow, place.city) &&
               ChooseRegion(desktop, region, regionRow, place.region);
    }

    /// Takes the first project department that there is.
    [[nodiscard]] bool chooseDepartment()
    {
        if (!session->home().click("departmentBox") ||
            !WaitFor([] { return !HomeScreen::namesBehind("orgRow_").isEmpty(); }))
            return false;
        session->desktop().awaitQuiet();
        const auto rows = HomeScreen::namesBehind("orgRow_");
        return std::any_of(rows.begin(), rows.end(), [this](const QString& row) {
            session->desktop().click(HomeScreen::middleOf(*HomeScreen::item("orgRow_" + row)));
            return WaitFor(
                [] { return !HomeScreen::item("departmentBox")->property("deptID").toString().isEmpty(); },
                500);
        });
    }

    /// The guid of the project whose card comes up then; empty when none does.
    [[nodiscard]] QString sendForm()
    {
        const auto before = HomeScreen::cards();
        QString made;
        const bool happened = session->home().click("newProjectBtn") && WaitFor([&] {
                                  const auto cards = HomeScreen::cards();
                                  for (const auto& guid : cards) {
                                      if (!before.contains(guid))
                                          made = guid;
                                  }
                                  return !made.isEmpty();
                              });
        return happened ? made : QString();
    }
};

ROAD_MAIN(TestCard)
#include "test_card.moc"
