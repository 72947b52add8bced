// SPDX-License-Identifier: MIT
#include "road/colleague.h"
#include "road/conversions.h"
#include "road/halting.h"
#include "road/infocard.h"
#include "road/samplecontent.h"
#include "road/submodels.h"
#include "road/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using road::Colleague;
using road::house;
using road::InfoCard;
using road::SubModels;

namespace
{

QStringList ModelFoldersIn(const QString& dataFolder)
{
    QStringList folders;
    const auto all = QDir(dataFolder).entryList({"proj_*"}, QDir::Dirs);
    for (const auto& folder : all) {
        if (QFile::exists(dataFolder + '/' + folder + "/model.glb"))
            folders.append(folder);
    }
    return folders;
}

} // namespace

/// Models that are brought into a building on this machine, and its floors.
class TestSubModels : public road::Suite
{
    Q_OBJECT

private slots:
    void modelOfEachKindIsAddedAndShownInTheTab()
    {
        QVERIFY(openCard());
        const auto before = SubModels::names();
        QCOMPARE(before.size(), 1);
        auto models = list();
        const auto fbx = road::CopyFbx(m_files.path());
        const auto drawing = road::MakeDrawing(m_files.path());
        QVERIFY(!fbx.isEmpty() && !drawing.isEmpty());
        QVERIFY(models.addFbx(fbx) && SubModels::awaitModel("spider"));
        QVERIFY(models.addDrawing(drawing) && SubModels::awaitModel("plan"));
        QVERIFY(models.addArchive(archive("annex")) && SubModels::awaitModel("annex"));
        QCOMPARE(ModelFoldersIn(dataFolder()).size(), 4);
        QVERIFY(card().accept());
        QTRY_COMPARE(road::HomeScreen::stateOf(house), road::changedHere);
        QVERIFY(session->open(house));
        QVERIFY(session->closeCurrentTab());
        QVERIFY(card().openFor(house));
        QTRY_COMPARE(SubModels::names().size(), 4);
    }

    void archiveTakesThePlaceOfAModel()
    {
        QVERIFY(openCard());
        auto models = list();
        QVERIFY(models.addArchive(archive("annex")) && SubModels::awaitModel("annex"));
        const auto before = ModelFoldersIn(dataFolder());
        QVERIFY(models.replace("annex", archive("annex2")) && SubModels::awaitModel("annex2"));
        QCOMPARE(SubModels::stateOf("annex"), road::noModel);
        QTRY_COMPARE(ModelFoldersIn(dataFolder()).size(), before.size());
        QVERIFY(ModelFoldersIn(dataFolder()) != before);
    }

    void deletedModelIsGoneFromTheProject()
    {
        QVERIFY(openCard());
        auto models = list();
        QVERIFY(models.addArchive(archive("annex")) && SubModels::awaitModel("annex"));
        QVERIFY(models.remove("annex"));
        QVERIFY(card().accept() && card().openFor(house));
        QTRY_COMPARE(SubModels::names().size(), 1);
        QTRY_COMPARE(ModelFoldersIn(dataFolder()).size(), 1);
    }

    void fileThatIsNoModelIsShownAsFailedUntilTheListIsReadAgain()
    {
        QVERIFY(openCard());
        const auto before = ModelFoldersIn(dataFolder());
        QFile noise(m_files.filePath("noise.kyv"));
        QVERIFY(noise.open(QIODevice::WriteOnly) && noise.write(QByteArray(5000, 'x')) == 5000);
        noise.close();
        auto models = list();
        QVERIFY(models.addArchive(noise.fileName()));
        QTRY_COMPARE_WITH_TIMEOUT(SubModels::stateOf("noise"), road::modelFailed, 60000);
        QVERIFY(card().accept() && card().openFor(house));
        QTRY_COMPARE(SubModels::names().size(), 1);
        QCOMPARE(ModelFoldersIn(dataFolder()), before);
    }

    void cardThatIsDismissedEndsTheConversionAndLeavesNothing()
    {
        QVERIFY(openCard());
        const auto before = QDir(dataFolder()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
        const auto annex = archive("annex");
        auto models = list();
        const road::Trap trap(QStringLiteral("kyv-convert"));
        QVERIFY(models.addArchive(annex));
        QTRY_VERIFY(trap.isShut());
        QVERIFY(card().cancel());
        QTRY_COMPARE(road::ProcessesOf(QStringLiteral("kyv-convert")), QList<pid_t>());
        QVERIFY(card().openFor(house));
        QTRY_COMPARE(SubModels::names().size(), 1);
        QTRY_COMPARE(QDir(dataFolder()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot), before);
    }

    void matchedFloorIsFoundAfterARestartAndByAColleague()
    {
        QVERIFY(openCard());
        auto models = list();
        QVERIFY(models.addFbx(road::CopyFbx(m_files.path())) && SubModels::awaitModel("spider"));
        QVERIFY(models.openFloors());
        auto floors = road::FloorDialog(session->desktop(), session->home());
        QTRY_VERIFY(!road::FloorDialog::ofModel().isEmpty());
        const auto ground = road::FloorDialog::ofModel().first();
        QVERIFY(floors.add("Basement") && floors.choose("Basement"));
        QVERIFY(floors.toggle(ground) && floors.toggle(ground));
        QTRY_COMPARE(road::FloorDialog::matched().size(), 1);
        QVERIFY(floors.accept());
        QVERIFY(card().accept());
        QTRY_COMPARE(road::HomeScreen::stateOf(house), road::changedHere);

        session->leave();
        session = std::make_unique<road::Session>();
        // The login has been saved.
        session->startHost();
        QTRY_VERIFY(road::HomeScreen::card(house) != nullptr);
        QVERIFY(card().openFor(house));
        QVERIFY(list().openFloors());
        auto again = road::FloorDialog(session->desktop(), session->home());
        QVERIFY(again.choose("Basement"));
        QTRY_COMPARE(road::FloorDialog::matched().size(), 1);
        QVERIFY(road::FloorDialog::matched().first().startsWith(ground));
        QVERIFY(again.cancel() && card().cancel());

        QVERIFY(session->upload(house));
        const QTemporaryDir elsewhere;
        const Colleague colleague(server->address(), elsewhere.path());
        QVERIFY(colleague.download(house));
        QCOMPARE(ModelFoldersIn(elsewhere.path()).size(), 2);
        QFile stored(elsewhere.filePath("proj_" + house + "/floors.json"));
        QVERIFY(stored.open(QIODevice::ReadOnly));
        QVERIFY(stored.readAll().contains("Basement"));
    }

private:
    [[nodiscard]] static QString dataFolder() { return QCoreApplication::applicationDirPath() + "/data"; }

    [[nodiscard]] InfoCard card() { return {session->desktop(), session->home()}; }
    [[nodiscard]] SubModels list() { return {session->desktop(), session->home()}; }

    [[nodiscard]] bool openCard()
    {
        return session->enter() && session->download(house) && card().openFor(house) &&
               road::WaitFor([] { return !SubModels::names().isEmpty(); });
    }

    /// The building's own model, packed anew under a name. Empty when that failed.
    [[nodiscard]] QString archive(const QString& name)
    {
        const auto models = road::ModelsHere();
        const auto file = m_files.filePath(name + ".kyv");
        return !models.isEmpty() && road::PackModel(models.first(), file) ? file : QString();
    }

    QTemporaryDir m_files;
};

ROAD_MAIN(TestSubModels)

#include "test_submodels.moc"
