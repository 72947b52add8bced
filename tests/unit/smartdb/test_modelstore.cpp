// SPDX-License-Identifier: MIT
#include "filesizelimit.h"
#include "person.h"

#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"
#include "smartdb/data/modelfolder.h"

#include <QTest>

namespace
{

namespace fs = std::filesystem;

const std::string building = "22222222-0d52-4a67-8f10-2b9a5e4d1002";
const std::string other = "22222222-0d52-4a67-8f10-2b9a5e4d1012";
const std::string first = "33333333-0d52-4a67-8f10-2b9a5e4d1003";
const std::string second = "33333333-0d52-4a67-8f10-2b9a5e4d1004";

enum State { same = 1, changedHere = 2 };

} // namespace

/// Converted models on their way into a building project, and out of it.
class TestModelStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void importedModelIsThereAfterARestart();
    void recordTellsWhatTheModelSaysOfItself();
    void modelWithoutANameIsCalledByItsKey();
    void importOfWhatIsNoModelChangesNothing_data();
    void importOfWhatIsNoModelChangesNothing();
    void secondImportOfAModelFails();
    void anotherProjectIsNoModel();
    void modelsAreListedAsTheyWereTakenIn();
    void updatePutsTheNewModelInThePlaceOfTheOld();
    void updateOfAnUnknownModelChangesNothing();
    void updateByWhatIsNoModelKeepsTheOldOne();
    void removedModelIsGoneWithItsFolder();
    void removedModelOfAnotherProjectTooKeepsItsFolder();
    void removalOfAnUnknownModelChangesNothing();
    void everyChangeMakesTheProjectModified();
    void importedModelTravelsWithTheNextUpload();
    void replacedModelTravelsWithTheNextUpload();
    void importOnAFullDiskChangesNothing();
    void importThatDiedBeforeTheProjectKnewOfItCanBeRepeated();
    void updateThatDiedBeforeTheOldFolderWentHasHappened();

private:
    [[nodiscard]] ZRSmartDB::IZRModelStore& store() const { return storeOf(building); }
    [[nodiscard]] ZRSmartDB::IZRModelStore& storeOf(const std::string& guid) const;
    /// A converted model, as the engine leaves it.
    void convert(const std::string& guid, const std::string& description = R"({"name": "楼"})") const;
    [[nodiscard]] bool import(const std::string& guid) const;
    [[nodiscard]] bool update(const std::string& from, const std::string& to) const;
    /// The keys of the project's models after a restart of the program.
    [[nodiscard]] QStringList modelsAnew();

    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<Person> m_anna;
};

void TestModelStore::initTestCase()
{
    QVERIFY(QFile::exists(TORVO_SERVER));
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
}

void TestModelStore::init()
{
    m_anna = std::make_unique<Person>(*m_server);
    m_anna->create(building, "BIM");
}

ZRSmartDB::IZRModelStore& TestModelStore::storeOf(const std::string& guid) const
{
    auto* project = m_anna->database().OpenProject(Key(guid), m_anna->dataFolderText());
    if (project == nullptr)
        qFatal("no project");
    return *project->GetModelStore();
}

void TestModelStore::convert(const std::string& guid, const std::string& description) const
{
    fs::create_directories(m_anna->folder(guid));
    m_anna->write(guid, "model.glb", "geometry of " + guid);
    m_anna->write(guid, "model.json", description);
}

bool TestModelStore::import(const std::string& guid) const
{
    return store().ImportModelProj(Key(guid), m_anna->dataFolderText());
}

bool TestModelStore::update(const std::string& from, const std::string& to) const
{
    return store().UpdateModelProj(Key(from), Key(to), m_anna->dataFolderText());
}

QStringList TestModelStore::modelsAnew()
{
    m_anna->restart();
    std::vector<ZRSmartFormat::SZRFTGuid> keys;
    store().GetModelProjIds(keys);
    QStringList models;
    for (const auto& key : keys)
        models.append(QString::fromStdWString(ZRSmartFormat::GuidToText(key)));
    return models;
}

void TestModelStore::importedModelIsThereAfterARestart()
{
    convert(first);
    QVERIFY2(import(first), qPrintable(m_anna->lastWords()));
    QCOMPARE(modelsAnew(), QStringList(first.c_str()));
    QVERIFY(store().HasModelProj(Key(first)));
    QCOMPARE(m_anna->integrity(building), std::string("ok"));
}

void TestModelStore::recordTellsWhatTheModelSaysOfItself()
{
    convert(first, R"({"name": "图纸", "type": "DWG", "attributes": {"editor_import_source_type": "x"}})");
    QVERIFY(import(first));
    static_cast<void>(modelsAnew());
    const auto* record = store().GetModelProj(Key(first));
    QVERIFY(record != nullptr);
    QVERIFY(record->GetGuid() == Key(first));
    QVERIFY(record->GetName() == L"图纸");
    QVERIFY(record->GetType() == L"DWG");
    QVERIFY(record->GetAttribute(L"editor_import_source_type") == L"x");
    QVERIFY(record->GetAttribute(L"unknown").empty());
}

void TestModelStore::modelWithoutANameIsCalledByItsKey()
{
    convert(first, "{}");
    QVERIFY(import(first));
    QCOMPARE(QString::fromStdWString(store().GetModelProj(Key(first))->GetName()), QString(first.c_str()));
}

void TestModelStore::importOfWhatIsNoModelChangesNothing_data()
{
    QTest::addColumn<QString>("description");
    QTest::newRow("no folder") << QString();
    QTest::newRow("no description") << "-";
    QTest::newRow("no object") << "[]";
    QTest::newRow("no JSON") << "{";
    QTest::newRow("unknown type") << R"({"type": "X"})";
}

void TestModelStore::importOfWhatIsNoModelChangesNothing()
{
    QFETCH(const QString, description);
    if (!description.isEmpty())
        convert(first, description.toStdString());
    if (description == "-")
        fs::remove(m_anna->folder(first) / "model.json");
    QVERIFY(!import(first));
    QVERIFY(m_anna->lastCode() != 0);
    QVERIFY(!store().HasModelProj(Key(first)));
    QCOMPARE(modelsAnew(), QStringList());
}

void TestModelStore::secondImportOfAModelFails()
{
    convert(first);
    QVERIFY(import(first));
    QVERIFY(!import(first));
    QCOMPARE(modelsAnew(), QStringList(first.c_str()));
}

void TestModelStore::anotherProjectIsNoModel()
{
    m_anna->create(other, "BIM");
    m_anna->write(other, "model.json", "{}");
    QVERIFY(!import(other));
    QCOMPARE(modelsAnew(), QStringList());
}

void TestModelStore::modelsAreListedAsTheyWereTakenIn()
{
    convert(second);
    convert(first);
    QVERIFY(import(second) && import(first));
    QCOMPARE(modelsAnew(), QStringList({second.c_str(), first.c_str()}));
}

void TestModelStore::updatePutsTheNewModelInThePlaceOfTheOld()
{
    convert(first);
    convert(second, R"({"name": "新"})");
    QVERIFY(import(first));
    QVERIFY2(update(first, second), qPrintable(m_anna->lastWords()));
    QVERIFY(!store().HasModelProj(Key(first)));
    QVERIFY(store().GetModelProj(Key(second))->GetName() == L"新");
    QVERIFY(!fs::exists(m_anna->folder(first)));
    QCOMPARE(modelsAnew(), QStringList(second.c_str()));
}

void TestModelStore::updateOfAnUnknownModelChangesNothing()
{
    convert(first);
    convert(second);
    QVERIFY(!update(first, second));
    QCOMPARE(modelsAnew(), QStringList());
}

void TestModelStore::updateByWhatIsNoModelKeepsTheOldOne()
{
    convert(first);
    QVERIFY(import(first));
    QVERIFY(!update(first, second));
    QCOMPARE(modelsAnew(), QStringList(first.c_str()));
    QVERIFY(fs::exists(m_anna->folder(first) / "model.glb"));
}

void TestModelStore::removedModelIsGoneWithItsFolder()
{
    convert(first);
    QVERIFY(import(first));
    store().RemoveModelProj(Key(first));
    QVERIFY(!store().HasModelProj(Key(first)));
    QVERIFY(!fs::exists(m_anna->folder(first)));
    QCOMPARE(modelsAnew(), QStringList());
}

void TestModelStore::removedModelOfAnotherProjectTooKeepsItsFolder()
{
    m_anna->create(other, "BIM");
    convert(first);
    QVERIFY(import(first));
    QVERIFY(storeOf(other).ImportModelProj(Key(first), m_anna->dataFolderText()));
    store().RemoveModelProj(Key(first));
    QVERIFY(fs::exists(m_anna->folder(first) / "model.glb"));
    storeOf(other).RemoveModelProj(Key(first));
    QVERIFY(!fs::exists(m_anna->folder(first)));
}

void TestModelStore::removalOfAnUnknownModelChangesNothing()
{
    convert(first);
    QVERIFY(import(first));
    store().RemoveModelProj(Key(second));
    QCOMPARE(modelsAnew(), QStringList(first.c_str()));
}

void TestModelStore::everyChangeMakesTheProjectModified()
{
    const auto uploaded = [&] { return m_anna->upload(building) && m_anna->state(building) == same; };
    convert(first);
    convert(second);
    QVERIFY(uploaded());
    QVERIFY(import(first));
    QCOMPARE(m_anna->state(building), int(changedHere));
    QVERIFY(uploaded());
    QVERIFY(update(first, second));
    QCOMPARE(m_anna->state(building), int(changedHere));
    QVERIFY(uploaded());
    store().RemoveModelProj(Key(second));
    QCOMPARE(m_anna->state(building), int(changedHere));
}

void TestModelStore::importedModelTravelsWithTheNextUpload()
{
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    init();
    Person ben(*m_server);
    QVERIFY(m_anna->upload(building));
    QVERIFY(ben.download(building));
    convert(first);
    QVERIFY(import(first));
    QVERIFY2(m_anna->upload(building), qPrintable(m_anna->lastWords()));
    QVERIFY2(ben.update(building), qPrintable(ben.lastWords()));
    QCOMPARE(ben.read(first, "model.glb"), "geometry of " + first);
    auto* project = ben.database().OpenProject(Key(building), ben.dataFolderText());
    QVERIFY(project != nullptr);
    QVERIFY(project->GetModelStore()->HasModelProj(Key(first)));
}

void TestModelStore::replacedModelTravelsWithTheNextUpload()
{
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    init();
    Person ben(*m_server);
    convert(first);
    convert(second);
    QVERIFY(import(first));
    QVERIFY(m_anna->upload(building));
    QVERIFY(ben.download(building));
    QVERIFY(update(first, second));
    QVERIFY2(m_anna->upload(building), qPrintable(m_anna->lastWords()));
    QVERIFY2(ben.update(building), qPrintable(ben.lastWords()));
    auto* project = ben.database().OpenProject(Key(building), ben.dataFolderText());
    QVERIFY(project != nullptr);
    QVERIFY(project->GetModelStore()->HasModelProj(Key(second)));
    QVERIFY(!project->GetModelStore()->HasModelProj(Key(first)));
    QCOMPARE(ben.read(second, "model.glb"), "geometry of " + second);
}

void TestModelStore::importOnAFullDiskChangesNothing()
{
    convert(first);
    static_cast<void>(store());
    {
        const FileSizeLimit full(1000);
        QVERIFY(!import(first));
    }
    QCOMPARE(modelsAnew(), QStringList());
    QCOMPARE(m_anna->integrity(building), std::string("ok"));
    QVERIFY2(import(first), qPrintable(m_anna->lastWords()));
}

void TestModelStore::importThatDiedBeforeTheProjectKnewOfItCanBeRepeated()
{
    convert(first);
    static_cast<void>(ZRSmartDB::AdoptModel(m_anna->dataFolder(), first));
    QCOMPARE(modelsAnew(), QStringList());
    QVERIFY2(import(first), qPrintable(m_anna->lastWords()));
    QCOMPARE(modelsAnew(), QStringList(first.c_str()));
}

void TestModelStore::updateThatDiedBeforeTheOldFolderWentHasHappened()
{
    convert(first);
    convert(second);
    QVERIFY(import(first));
    ZRSmartDB::ProjectChange change;
    change.putModels = {ZRSmartDB::AdoptModel(m_anna->dataFolder(), second)};
    change.removedModels = {first};
    ZRSmartDB::ProjectFile(m_anna->folder(building)).write(change);
    QCOMPARE(modelsAnew(), QStringList(second.c_str()));
    QVERIFY(store().HasModelProj(Key(second)));
}

QTEST_GUILESS_MAIN(TestModelStore)
#include "test_modelstore.moc"
