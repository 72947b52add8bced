// SPDX-License-Identifier: MIT
#include "editortab/document/document.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "filesizelimit.h"
#include "projects.h"

#include <QSignalSpy>
#include <QTest>

using editortab::Document;

/// The opened project over the real project database, without a server.
class TestDocument : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QDir(DataFolder()).removeRecursively(); }

    void openedProjectSaysWhatItIs();
    void unknownProjectIsToldInWords();
    void addressThatIsNoneIsToldInWords();
    void buildingShowsItsModels();
    void sceneShowsTheBuildingsThatItPlaces();
    void subProjectThatIsMissingIsLeftOut();
    void sceneWithoutBuildingsHasNothingToShow();

    void changedNameIsWrittenWhenItIsSaved();
    void nameLosesTheSpacesAroundIt();
    void emptyNameIsNone();
    void sameNameIsNoChange();
    void changedNoteIsWrittenWhenItIsSaved();
    void noteMayBeEmptied();
    void sameNoteIsNoChange();
    void changeIsToldOnceUntilItIsSaved();
    void unsavedChangeIsGoneWithTheDocument();
    void savingWithoutAChangeWritesAndSaysNothing();
    void saveThatFailsIsToldAndCanBeTriedAgain();
    void nothingCanBeChangedBeforeItIsOpen();

    void importedModelIsThereAfterReloading();
    void modelThatWasTakenAwayIsGoneAfterReloading();
    void reloadingTellsWhenNothingHasChanged();
    void reloadingWaitsForUnsavedChanges();
    void nothingIsReloadedBeforeItIsOpen();
};

/// A scene in Shanghai with two buildings, one with two models.
void TestDocument::init()
{
    QVERIFY(QDir(DataFolder()).removeRecursively());
    Create(scene, "外滩", "CIM", 121.5, 31.25, 4);
    Create(house, "房子", "BIM", 121.501, 31.251, 14);
    Create(tower, "塔", "BIM", 121.5, 31.25, 4);
    Create(walls, "墙", "MODEL", 0, 0, 0);
    Create(roof, "屋顶", "MODEL", 0, 0, 0);
    ZRSmartDB::ProjectChange change;
    change.putModels = {{walls, "墙", "MODEL", {}}, {roof, "屋顶", "MODEL", {}}};
    ProjectFile(FolderOf(house)).write(change);
}

void TestDocument::openedProjectSaysWhatItIs()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    QCOMPARE(document.guid(), QString::fromStdString(scene));
    QCOMPARE(document.name(), QStringLiteral("外滩"));
    QCOMPARE(document.type(), QStringLiteral("CIM"));
    QCOMPARE(document.note(), QString());
    QCOMPARE(document.position(), QStringLiteral("121.500000, 31.250000"));
    QVERIFY(!document.isModified());
}

void TestDocument::unknownProjectIsToldInWords()
{
    Document document(Start("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0aff"));
    const auto words = document.open();
    QVERIFY2(words.startsWith("工程无法打开：") && words.size() > 8, qPrintable(words));
    QCOMPARE(document.name(), QString());
    QCOMPARE(document.type(), QString());
    QCOMPARE(document.position(), QString());
}

void TestDocument::addressThatIsNoneIsToldInWords()
{
    auto start = Start(scene);
    start.serverAddr = "ftp://nowhere";
    Document document(start);
    QCOMPARE(document.open(), QStringLiteral("工程服务器地址无效：ftp://nowhere"));
}

void TestDocument::buildingShowsItsModels()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    QCOMPARE(document.buildings().size(), std::size_t(1));
    QCOMPARE(document.buildings().at(0).place, QVector3D(0, 0, 0));
    QCOMPARE(document.models().size(), std::size_t(2));
    QCOMPARE(document.models().at(0).name, QStringLiteral("墙"));
    QCOMPARE(document.models().at(0).building, 0);
    QCOMPARE(document.models().at(1).name, QStringLiteral("屋顶"));
    QCOMPARE(document.models().at(1).file,
             DataFolder() + "/proj_" + QString::fromStdString(roof) + "/model.glb");
}

void TestDocument::sceneShowsTheBuildingsThatItPlaces()
{
    Document document(Start(scene, {QString::fromStdString(tower), QString::fromStdString(house)}));
    QCOMPARE(document.open(), QString());
    QCOMPARE(document.buildings().size(), std::size_t(2));
    QCOMPARE(document.buildings().at(0).name, QStringLiteral("塔"));
    QCOMPARE(document.buildings().at(0).place, QVector3D(0, 0, 0));
    QCOMPARE(document.buildings().at(1).name, QStringLiteral("房子"));
    // A thousandth of a degree to the east and to the north, and ten metres up.
    const auto place = document.buildings().at(1).place;
    QVERIFY(qAbs(place.x() - 95.2F) < 0.1F);
    QVERIFY(qAbs(place.y() - 10.0F) < 0.001F);
    QVERIFY(qAbs(place.z() + 111.3F) < 0.1F);
    QCOMPARE(document.models().size(), std::size_t(2));
    QCOMPARE(document.models().at(0).building, 1);
}

void TestDocument::subProjectThatIsMissingIsLeftOut()
{
    Document document(Start(scene, {"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0aff", QString::fromStdString(house)}));
    QCOMPARE(document.open(), QString());
    QCOMPARE(document.buildings().size(), std::size_t(1));
    QCOMPARE(document.models().size(), std::size_t(2));
}

void TestDocument::sceneWithoutBuildingsHasNothingToShow()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    QVERIFY(document.buildings().empty());
    QVERIFY(document.models().empty());
}

void TestDocument::changedNameIsWrittenWhenItIsSaved()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    document.setName("南京路");
    QCOMPARE(document.name(), QStringLiteral("南京路"));
    QCOMPARE(HeadOf(scene).name, std::string("外滩"));
    QVERIFY(document.save());
    QCOMPARE(HeadOf(scene).name, std::string("南京路"));
}

void TestDocument::nameLosesTheSpacesAroundIt()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    document.setName("  南京 路\n");
    QCOMPARE(document.name(), QStringLiteral("南京 路"));
}

void TestDocument::emptyNameIsNone()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    document.setName(" \t");
    QCOMPARE(document.name(), QStringLiteral("外滩"));
    QVERIFY(!document.isModified());
}

void TestDocument::sameNameIsNoChange()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    document.setName(" 外滩 ");
    QVERIFY(!document.isModified());
}

void TestDocument::changedNoteIsWrittenWhenItIsSaved()
{
    {
        Document document(Start(scene));
        QCOMPARE(document.open(), QString());
        document.setNote("第一行\n  第二行");
        QVERIFY(document.save());
    }
    Document again(Start(scene));
    QCOMPARE(again.open(), QString());
    QCOMPARE(again.note(), QStringLiteral("第一行\n  第二行"));
}

void TestDocument::noteMayBeEmptied()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    document.setNote("a");
    QVERIFY(document.save());
    document.setNote(QString());
    QVERIFY(document.isModified());
    QVERIFY(document.save());
    QCOMPARE(document.note(), QString());
}

void TestDocument::sameNoteIsNoChange()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    document.setNote(QString());
    QVERIFY(!document.isModified());
}

void TestDocument::changeIsToldOnceUntilItIsSaved()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    QSignalSpy modified(&document, &Document::modifiedChanged);
    QSignalSpy saved(&document, &Document::saved);
    document.setName("a");
    document.setNote("b");
    QCOMPARE(modified.count(), 1);
    QVERIFY(document.isModified());
    QVERIFY(document.save());
    QCOMPARE(modified.count(), 2);
    QVERIFY(!document.isModified());
    QCOMPARE(saved.count(), 1);
}

void TestDocument::unsavedChangeIsGoneWithTheDocument()
{
    {
        Document document(Start(scene));
        QCOMPARE(document.open(), QString());
        document.setName("南京路");
    }
    QCOMPARE(HeadOf(scene).name, std::string("外滩"));
}

void TestDocument::savingWithoutAChangeWritesAndSaysNothing()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    QSignalSpy saved(&document, &Document::saved);
    const auto before = HeadOf(scene).changeCounter;
    QVERIFY(document.save());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(HeadOf(scene).changeCounter, before);
}

void TestDocument::saveThatFailsIsToldAndCanBeTriedAgain()
{
    Document document(Start(scene));
    QCOMPARE(document.open(), QString());
    QSignalSpy saved(&document, &Document::saved);
    document.setName("南京路");
    {
        const FileSizeLimit limit(16);
        QVERIFY(!document.save());
    }
    QVERIFY2(document.problem().startsWith("保存失败：") && document.problem().size() > 6,
             qPrintable(document.problem()));
    QVERIFY(document.isModified());
    QCOMPARE(saved.count(), 0);
    QVERIFY(document.save());
    QCOMPARE(HeadOf(scene).name, std::string("南京路"));
}

void TestDocument::nothingCanBeChangedBeforeItIsOpen()
{
    Document document(Start(scene));
    document.setName("a");
    document.setNote("b");
    QVERIFY(!document.isModified());
    QCOMPARE(document.name(), QString());
}

void TestDocument::importedModelIsThereAfterReloading()
{
    Document document(Start(tower));
    QCOMPARE(document.open(), QString());
    QVERIFY(document.models().empty());
    ZRSmartDB::ProjectChange change;
    change.putModels = {{walls, "墙", "MODEL", {}}};
    ProjectFile(FolderOf(tower)).write(change);
    QVERIFY(document.reload());
    QCOMPARE(document.models().size(), std::size_t(1));
    QCOMPARE(document.models().at(0).guid, QString::fromStdString(walls));
    QVERIFY(document.models().at(0).file.endsWith(QString::fromStdString("proj_" + walls + "/model.glb")));
}

void TestDocument::modelThatWasTakenAwayIsGoneAfterReloading()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    QCOMPARE(document.models().size(), std::size_t(2));
    ZRSmartDB::ProjectChange change;
    change.removedModels = {walls};
    ProjectFile(FolderOf(house)).write(change);
    QVERIFY(document.reload());
    QCOMPARE(document.models().size(), std::size_t(1));
    QCOMPARE(document.models().at(0).name, QStringLiteral("屋顶"));
}

void TestDocument::reloadingTellsWhenNothingHasChanged()
{
    Document document(Start(scene, {QString::fromStdString(house)}));
    QCOMPARE(document.open(), QString());
    QVERIFY(!document.reload());
    QCOMPARE(document.models().size(), std::size_t(2));
    document.setNote("还在");
    QVERIFY(document.save());
    QCOMPARE(QString::fromStdString(HeadOf(scene).name), QStringLiteral("外滩"));
}

void TestDocument::reloadingWaitsForUnsavedChanges()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    document.setName("别墅");
    ZRSmartDB::ProjectChange change;
    change.removedModels = {walls};
    ProjectFile(FolderOf(house)).write(change);
    QVERIFY(!document.reload());
    QCOMPARE(document.models().size(), std::size_t(2));
    QCOMPARE(document.name(), QStringLiteral("别墅"));
    QVERIFY(document.save());
    QVERIFY(document.reload());
    QCOMPARE(document.models().size(), std::size_t(1));
    QCOMPARE(document.name(), QStringLiteral("别墅"));
}

void TestDocument::nothingIsReloadedBeforeItIsOpen()
{
    Document document(Start(house));
    QVERIFY(!document.reload());
}

QTEST_GUILESS_MAIN(TestDocument)
#include "test_document.moc"
