// SPDX-License-Identifier: MIT
#include "startedview.h"

#include <QDir>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

const QString defaultPicture = "qrc:/images/card_ic_default.png";
const QString sceneIcon = "qrc:/images/bar_ic_scene.png";
const QString bimIcon = "qrc:/images/bar_ic_bim.png";

} // namespace

class TestGridViewController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void publishesTheListAndItself();
    void cardOfALocalProject_data();
    void cardOfALocalProject();
    void cardOfALocalProjectShowsItsPicture();
    void cardOfALocalProjectHasItsState();
    void cardOfAServerProject_data();
    void cardOfAServerProject();
    void unknownProjectGetsNoCard();
    void cardOfAProjectThatNeedsAnUpgrade();
    void pictureFromTheServerIsTheFileThatIsThere();
    void addTwiceGivesTwoCards();
    void updateReadsALocalProjectAnew();
    void updateKeepsTypeAndIconOfAServerCard();
    void updateRemovesTheCardOfAProjectThatIsGone();
    void updateWithoutACardDoesNothing();
    void updateOfAModifiedSubProjectMakesTheCardModified();
    void updateTakesNoOtherStateFromASubProject();
    void updateOfAnOldProjectShowsTheServersRecord();
    void refreshSetsTheStatesThatCanBeTold();
    void guidsComeInOrder();
    void settersReachTheCard();
    void settersWithoutACardDoNothing();

private:
    std::unique_ptr<StartedView> m_view;
};

void TestGridViewController::init()
{
    m_view = std::make_unique<StartedView>();
}

void TestGridViewController::cleanup()
{
    m_view.reset();
    QDir(QCoreApplication::applicationDirPath() + "/data").removeRecursively();
}

void TestGridViewController::publishesTheListAndItself()
{
    QVERIFY(m_view->start());
    QVERIFY(m_view->published<CGridViewListModel>("gridViewModel") != nullptr);
    QCOMPARE(m_view->published<CGridViewController>("gridViewCtrl"), &StartedView::grid());
}

void TestGridViewController::cardOfALocalProject_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("icon");
    QTest::newRow("a scene") << "CIM" << sceneIcon;
    QTest::newRow("a building") << "BIM" << bimIcon;
    QTest::newRow("anything else") << "X" << bimIcon;
}

void TestGridViewController::cardOfALocalProject()
{
    QFETCH(QString, type);
    QFETCH(QString, icon);
    QVERIFY(m_view->start());
    StartedView::addLocal("a", type);
    StartedView::grid().AddCard("a");
    const auto& card = m_view->card("a");
    QCOMPARE(card.name(), QString("a"));
    QCOMPARE(card.projType(), type);
    QCOMPARE(card.typeImag(), icon);
    QCOMPARE(card.imag(), defaultPicture);
    QCOMPARE(card.needUpgrade(), false);
    QCOMPARE(int(card.dealState()), 0);
}

void TestGridViewController::cardOfALocalProjectShowsItsPicture()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM").project->imagePath = L"/there/工程.jpg";
    StartedView::grid().AddCard("a");
    QCOMPARE(m_view->card("a").imag(), QString::fromUtf8("file:////there/工程.jpg"));
}

void TestGridViewController::cardOfALocalProjectHasItsState()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM", "1", 4);
    StartedView::grid().AddCard("a");
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_ConflictState);
}

void TestGridViewController::cardOfAServerProject_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");
    QTest::newRow("a scene") << 0 << "CIM";
    QTest::newRow("a building") << 1 << "BIM";
}

void TestGridViewController::cardOfAServerProject()
{
    QFETCH(int, type);
    QFETCH(QString, word);
    m_view->addOnServer("a", type);
    QVERIFY(m_view->start());
    StartedView::grid().AddCard("a");
    const auto& card = m_view->card("a");
    QCOMPARE(card.name(), QString("a"));
    QCOMPARE(card.projType(), word);
    // Whatever the type of the record.
    QCOMPARE(card.typeImag(), sceneIcon);
    QCOMPARE(card.imag(), defaultPicture);
    QCOMPARE(card.stateType(), CGridViewData::ST_SynchroState);
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
}

void TestGridViewController::unknownProjectGetsNoCard()
{
    QVERIFY(m_view->start());
    StartedView::grid().AddCard("unknown");
    QCOMPARE(m_view->cards().count(), 0);
}

void TestGridViewController::cardOfAProjectThatNeedsAnUpgrade()
{
    QVERIFY(m_view->start());
    StartedView::grid().AddNeedUpgradeCard("old", "O");
    const auto& card = m_view->card("old");
    QCOMPARE(card.needUpgrade(), true);
    QCOMPARE(card.name(), QString("O"));
    QCOMPARE(card.typeImag(), sceneIcon);
    QCOMPARE(card.imag(), defaultPicture);
    QCOMPARE(card.projType(), QString());
    QCOMPARE(card.stateType(), CGridViewData::ST_SynchroState);
}

void TestGridViewController::pictureFromTheServerIsTheFileThatIsThere()
{
    QVERIFY(m_view->start());
    const QString folder = QCoreApplication::applicationDirPath() + "/data/proj_old";
    QVERIFY(QDir().mkpath(folder));
    QFile picture(folder + "/projimage.jpg");
    QVERIFY(picture.open(QIODevice::WriteOnly));
    StartedView::grid().AddNeedUpgradeCard("old", "O");
    QCOMPARE(m_view->card("old").imag(), "file:///" + folder + "/projimage.jpg");
}

void TestGridViewController::addTwiceGivesTwoCards()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    StartedView::grid().AddCard("a");
    StartedView::grid().AddCard("a");
    QCOMPARE(StartedView::cardGuids(), QStringList({"a", "a"}));
}

void TestGridViewController::updateReadsALocalProjectAnew()
{
    QVERIFY(m_view->start());
    auto& stored = StartedView::addLocal("a", "BIM");
    StartedView::grid().AddNeedUpgradeCard("a", "old name");
    StartedView::grid().SetDealState("a", CGridViewData::DS_UpDateState);
    stored.project->SetName(L"new name");
    stored.project->imagePath = L"/a.jpg";
    stored.state = 3;
    StartedView::grid().UpdateCard("a");
    const auto& card = m_view->card("a");
    QCOMPARE(card.needUpgrade(), false);
    QCOMPARE(card.dealState(), CGridViewData::DS_NonState);
    QCOMPARE(card.name(), QString("new name"));
    QCOMPARE(card.imag(), QString("file:////a.jpg"));
    QCOMPARE(card.stateType(), CGridViewData::ST_UpdateState);
}

void TestGridViewController::updateKeepsTypeAndIconOfAServerCard()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    StartedView::grid().AddCard("a");
    StartedView::addLocal("a", "BIM");
    StartedView::grid().UpdateCard("a");
    QCOMPARE(m_view->card("a").typeImag(), sceneIcon);
    QCOMPARE(m_view->card("a").projType(), QString("BIM"));
}

void TestGridViewController::updateRemovesTheCardOfAProjectThatIsGone()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    StartedView::grid().AddCard("a");
    StartedView::grid().UpdateCard("a");
    QVERIFY(!StartedView::grid().ContainsCard("a"));
}

void TestGridViewController::updateWithoutACardDoesNothing()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    StartedView::grid().UpdateCard("a");
    QCOMPARE(m_view->cards().count(), 0);
}

void TestGridViewController::updateOfAModifiedSubProjectMakesTheCardModified()
{
    QVERIFY(m_view->start());
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    auto& scene = *StartedView::addLocal("scene", "CIM", "1", 3).project;
    scene.addObject(key(L"o1"), key(L"gone"));
    scene.addObject(key(L"o2"), key(L"same"));
    scene.addObject(key(L"o3"), key(L"modified"));
    StartedView::addLocal("same", "BIM", "1", 1);
    StartedView::addLocal("modified", "BIM", "1", 2);
    StartedView::grid().AddCard("scene");
    StartedView::grid().UpdateCard("scene");
    QCOMPARE(m_view->card("scene").stateType(), CGridViewData::ST_ModifyState);
}

void TestGridViewController::updateTakesNoOtherStateFromASubProject()
{
    QVERIFY(m_view->start());
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    StartedView::addLocal("scene", "CIM", "1", 1).project->addObject(key(L"o1"), key(L"sub"));
    StartedView::addLocal("sub", "BIM", "1", 4);
    StartedView::grid().AddCard("scene");
    StartedView::grid().UpdateCard("scene");
    QCOMPARE(m_view->card("scene").stateType(), CGridViewData::ST_SynchroState);
}

void TestGridViewController::updateOfAnOldProjectShowsTheServersRecord()
{
    m_view->addOnServer("old", 1).name = L"server's name";
    QVERIFY(m_view->start());
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    StartedView::grid().AddCard("old");
    StartedView::grid().SetDealState("old", CGridViewData::DS_DownloadState);
    StartedView::grid().SetStateType("old", CGridViewData::ST_ConflictState);
    StartedView::grid().UpdateCard("old");
    const auto& card = m_view->card("old");
    QCOMPARE(card.needUpgrade(), true);
    QCOMPARE(card.dealState(), CGridViewData::DS_NonState);
    QCOMPARE(card.stateType(), CGridViewData::ST_LocalState);
    QCOMPARE(card.typeImag(), sceneIcon);
    QCOMPARE(card.name(), QString("server's name"));
}

void TestGridViewController::refreshSetsTheStatesThatCanBeTold()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM", "1", 1);
    StartedView::addLocal("b", "BIM", "1", 2);
    StartedView::grid().AddCard("a");
    StartedView::grid().AddCard("b");
    SmartDB::instance().find("a")->state = 3;
    SmartDB::instance().net.setReply("GetStatusByProjId", "b", {{}, "no server", false, {}});
    StartedView::grid().RefreshStates();
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_UpdateState);
    QCOMPARE(m_view->card("b").stateType(), CGridViewData::ST_ModifyState);
}

void TestGridViewController::guidsComeInOrder()
{
    QVERIFY(m_view->start());
    for (const char* guid : {"c", "a", "b"})
        StartedView::grid().AddNeedUpgradeCard(guid, guid);
    QCOMPARE(StartedView::cardGuids(), QStringList({"c", "a", "b"}));
    StartedView::grid().RemoveCard("a");
    QCOMPARE(StartedView::cardGuids(), QStringList({"c", "b"}));
}

void TestGridViewController::settersReachTheCard()
{
    QVERIFY(m_view->start());
    auto& grid = StartedView::grid();
    grid.AddNeedUpgradeCard("a", "A");
    grid.SetDealState("a", CGridViewData::DS_UploadState);
    grid.SetIsUpgrade("a", true);
    grid.SetName("a", "B");
    grid.SetStateType("a", CGridViewData::ST_UpLoadFailedState);
    grid.SetGuid("a", "b");
    const auto& card = m_view->card("b");
    QCOMPARE(card.dealState(), CGridViewData::DS_UploadState);
    QCOMPARE(card.isUpgrade(), true);
    QCOMPARE(card.name(), QString("B"));
    QCOMPARE(card.stateType(), CGridViewData::ST_UpLoadFailedState);
}

void TestGridViewController::settersWithoutACardDoNothing()
{
    QVERIFY(m_view->start());
    auto& grid = StartedView::grid();
    grid.SetDealState("a", CGridViewData::DS_UploadState);
    grid.SetIsUpgrade("a", true);
    grid.SetName("a", "B");
    grid.SetStateType("a", CGridViewData::ST_UpLoadFailedState);
    grid.SetGuid("a", "b");
    grid.RemoveCard("a");
    QCOMPARE(m_view->cards().count(), 0);
}

QTEST_GUILESS_MAIN(TestGridViewController)
#include "test_gridviewcontroller.moc"
