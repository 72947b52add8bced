// SPDX-License-Identifier: MIT
#include "person.h"

#include <QTest>

namespace
{

const std::string scene = "11111111-0d52-4a67-8f10-2b9a5e4d1001";
const std::string building = "22222222-0d52-4a67-8f10-2b9a5e4d1002";
const std::string model = "33333333-0d52-4a67-8f10-2b9a5e4d1003";
const std::string otherModel = "44444444-0d52-4a67-8f10-2b9a5e4d1004";

enum State { onlyHere = 0, same = 1, changedHere = 2, changedThere = 3, conflict = 4 };

} // namespace

/// What one person has uploaded comes to another who has an older revision.
class TestUpdate : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void editOfTheOtherComes();
    void editedFileComesByteForByte();
    void removedAndRenamedFilesFollow();
    void projectThatIsNewestStaysAsItIs();
    void projectOnlyHereStaysAsItIs();
    void changeHereIsNotOverwritten();
    void unsavedChangeHereIsNotOverwritten();
    void openProjectShowsTheNewRevisionAfterwards();
    void modelsThatAreNewComeAlong();
    void projectsThatASceneLinksToComeAlong();
    void projectThatIsNotHereIsRefused();

private:
    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<Person> m_anna;
    std::unique_ptr<Person> m_ben;
};

void TestUpdate::init()
{
    m_anna.reset();
    m_ben.reset();
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_anna = std::make_unique<Person>(*m_server);
    m_ben = std::make_unique<Person>(*m_server);
    m_anna->create(scene, "CIM");
    m_anna->write(scene, "tiles.bin", RandomBytes(2'000'000, 1));
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->download(scene));
}

void TestUpdate::editOfTheOtherComes()
{
    m_anna->edit(scene, "anna");
    QVERIFY(m_anna->upload(scene));
    QCOMPARE(m_ben->state(scene), int(changedThere));
    QVERIFY2(m_ben->update(scene), qPrintable(m_ben->lastWords()));
    QCOMPARE(m_ben->note(scene), std::string("anna"));
    QCOMPARE(m_ben->state(scene), int(same));
    QCOMPARE(m_ben->integrity(scene), std::string("ok"));
}

void TestUpdate::editedFileComesByteForByte()
{
    auto bytes = RandomBytes(2'000'000, 1);
    bytes.insert(1'000'000, "inserted");
    m_anna->write(scene, "tiles.bin", bytes);
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->update(scene));
    QVERIFY(m_ben->read(scene, "tiles.bin") == bytes);
}

void TestUpdate::removedAndRenamedFilesFollow()
{
    namespace fs = std::filesystem;
    fs::create_directory(m_anna->folder(scene) / "sub");
    fs::rename(m_anna->folder(scene) / "tiles.bin", m_anna->folder(scene) / "sub" / "renamed.bin");
    fs::remove(m_anna->folder(scene) / "projimage.jpg");
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->update(scene));
    QVERIFY(m_ben->read(scene, "sub/renamed.bin") == RandomBytes(2'000'000, 1));
    QVERIFY(!fs::exists(m_ben->folder(scene) / "tiles.bin"));
    QVERIFY(!fs::exists(m_ben->folder(scene) / "projimage.jpg"));
    QCOMPARE(m_ben->state(scene), int(same));
}

void TestUpdate::projectThatIsNewestStaysAsItIs()
{
    m_ben->edit(scene, "ben");
    QVERIFY(m_ben->update(scene));
    QCOMPARE(m_ben->note(scene), std::string("ben"));
    QCOMPARE(m_ben->state(scene), int(changedHere));
}

void TestUpdate::projectOnlyHereStaysAsItIs()
{
    m_ben->create(building, "BIM");
    QVERIFY(m_ben->update(building));
    QCOMPARE(m_ben->state(building), int(onlyHere));
}

void TestUpdate::changeHereIsNotOverwritten()
{
    m_anna->edit(scene, "anna");
    QVERIFY(m_anna->upload(scene));
    m_ben->edit(scene, "ben");
    QVERIFY(m_ben->update(scene));
    QCOMPARE(m_ben->note(scene), std::string("ben"));
    QCOMPARE(m_ben->state(scene), int(conflict));
}

void TestUpdate::unsavedChangeHereIsNotOverwritten()
{
    m_anna->edit(scene, "anna");
    QVERIFY(m_anna->upload(scene));
    auto* project = m_ben->database().OpenProject(Key(scene), m_ben->dataFolderText());
    QVERIFY(project != nullptr);
    project->SetName(L"unsaved");
    QVERIFY(!m_ben->update(scene));
    QVERIFY(project->GetName() == L"unsaved");
}

void TestUpdate::openProjectShowsTheNewRevisionAfterwards()
{
    auto* before = m_ben->database().OpenProject(Key(scene), m_ben->dataFolderText());
    QVERIFY(before != nullptr);
    m_anna->database().OpenProject(Key(scene), m_anna->dataFolderText())->SetName(L"renamed");
    QVERIFY(m_anna->database().SaveAll());
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->update(scene));
    // What was given out stays valid.
    QVERIFY(before->GetName() == L"工程");
    auto* after = m_ben->database().OpenProject(Key(scene), m_ben->dataFolderText());
    QVERIFY(after != nullptr && after->GetName() == L"renamed");
}

void TestUpdate::modelsThatAreNewComeAlong()
{
    m_anna->create(building, "BIM");
    m_anna->addModel(building, model, 1);
    QVERIFY(m_anna->upload(building));
    QVERIFY(m_ben->download(building));
    m_anna->addModel(building, otherModel, 2);
    QVERIFY(m_anna->upload(building));
    QVERIFY2(m_ben->update(building), qPrintable(m_ben->lastWords()));
    QVERIFY(m_ben->read(otherModel, "model.glb") == RandomBytes(2'000'000, 2));
    QCOMPARE(m_ben->state(building), int(same));
}

void TestUpdate::projectsThatASceneLinksToComeAlong()
{
    m_anna->create(building, "BIM");
    QVERIFY(m_anna->upload(building));
    const std::vector<ZRSmartDB::ObjectData> objects = {{"o1", "house", building, "", {}, 0.0}};
    ZRSmartDB::ProjectChange change;
    change.objects = &objects;
    ZRSmartDB::ProjectFile(m_anna->folder(scene)).write(change);
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->update(scene));
    QCOMPARE(m_ben->state(building), int(same));
}

void TestUpdate::projectThatIsNotHereIsRefused()
{
    QVERIFY(!m_ben->update(building));
}

QTEST_GUILESS_MAIN(TestUpdate)
#include "test_update.moc"
