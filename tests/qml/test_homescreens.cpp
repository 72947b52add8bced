// SPDX-License-Identifier: MIT

/// The home window as people have it: the real main.qml over the real managers. It goes through every state
/// of its screens, and none of them may bring a warning. Run at several scale factors.

#include "core/framewindow.h"
#include "core/homeapp.h"
#include "core/messageboxmgr.h"
#include "fakes/fakesmartdb.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/localprojectinfomgr.h"
#include "tabs/tab.h"
#include "tabs/tabmgr.h"
#include "view/context/editorcontrol/editorcontrol.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/gridviewdata.h"
#include "view/context/editorcontrol/gridviewlistmodel.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <algorithm>
#include <memory>
#include <optional>

#include <QQmlContext>
#include <QQuickItem>
#include <QTest>

using namespace TorvoEditor;

namespace
{

template<typename Manager>
Manager& Mgr()
{
    return *CHomeApp::instance().GetMgr<Manager>();
}

QString GuidOf(int number)
{
    return QStringLiteral("{00000000-0000-0000-0000-%1}").arg(number, 12, 10, QLatin1Char('0'));
}

/// The first item of this name that is to be seen below `from`. Items that come and go with their models are
/// no objects' children, so they are looked for among the items.
QQuickItem* FindItem(QQuickItem* from, const QString& name)
{
    if (!from->isVisible())
        return nullptr;
    if (from->objectName() == name)
        return from;
    for (QQuickItem* child : from->childItems()) {
        if (QQuickItem* found = FindItem(child, name))
            return found;
    }
    return nullptr;
}

/// A server that knows one directly governed city with one district.
void SetRegions()
{
    auto& net = Fakes::SmartDB::instance().net;
    net.setReply("GetCountryList", {}, {R"([{"id":"100000"}])", {}, false, {}});
    net.setReply("GetAdministrativeRegion", "100000",
                 {R"([{"id":"110000","name":"北京市","lat":39.9,"lon":116.4}])", {}, false, {}});
    net.setReply("GetAdministrativeRegion", "110000",
                 {R"([{"id":"110101","name":"东城区","lat":39.93,"lon":116.42}])", {}, false, {}});
}

/// The home window over the stand-ins of the database and the host.
class Home
{
public:
    /// `serverProject`: the guid of a building that the server has.
    explicit Home(const std::optional<TorvoSDK::SOrgNode>& organisation = {},
                  const QString& serverProject = {})
    {
        SetRegions();
        surroundings.host.projects.organisation = organisation;
        if (!serverProject.isEmpty())
            surroundings.host.projects.addServerProject(serverProject, QStringLiteral("远方的楼"), 1);
        m_isStarted = CHomeApp::instance().Init(Fakes::TestSession());
        window = std::make_unique<CFrameWindow>();
        CHomeApp::instance().m_frameWindow = window.get();
        window->setGeometry(0, 0, 1360, 860);
        window->show();
    }

    [[nodiscard]] bool isShown() const { return m_isStarted && QTest::qWaitForWindowActive(window.get()); }
    [[nodiscard]] QQuickItem* item(const QString& name) const
    {
        return FindItem(window->contentItem(), name);
    }
    [[nodiscard]] CGridViewListModel& cards() const
    {
        return *qvariant_cast<CGridViewListModel*>(
            window->rootContext()->contextProperty(QStringLiteral("gridViewModel")));
    }

    CGridViewData& addCard(int number) const
    {
        auto* card = new CGridViewData;
        card->setGuid(GuidOf(number));
        card->setName(QStringLiteral("工程 %1").arg(number));
        card->setImag(QStringLiteral("qrc:/images/card_ic_default.png"));
        card->setTypeImag(QStringLiteral("qrc:/images/bar_ic_scene.png"));
        card->setProjType(number % 2 == 0 ? QStringLiteral("CIM") : QStringLiteral("BIM"));
        cards().addProjectInfo(card);
        return *card;
    }

    /// Has the window drawn as it now is.
    void draw() const
    {
        QCoreApplication::processEvents();
        const QImage image = window->grabWindow();
        QCOMPARE(image.width(), qRound(window->width() * window->devicePixelRatio()));
    }

    void click(const QString& name) const
    {
        QQuickItem* found = item(name);
        QVERIFY2(found != nullptr, qPrintable(name));
        const QPoint place = found->mapToScene(QPointF(found->width() / 2, found->height() / 2)).toPoint();
        QTest::mouseMove(window.get(), place);
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, place);
    }

    void type(const QByteArray& letters) const
    {
        for (const char letter : letters)
            QTest::keyClick(window.get(), letter);
    }

    /// Chooses in a box, by clicks on it and on the row of its list.
    void choose(const QString& box, const QString& row) const
    {
        click(box);
        QTRY_VERIFY(item(row) != nullptr);
        draw();
        QTest::qWait(200); // the list comes into sight
        click(row);
        QTRY_VERIFY(item(row) == nullptr);
    }

    /// Whether the info card is open, with the keyboard in its first field.
    [[nodiscard]] bool hasInfoCard() const
    {
        const QQuickItem* field = item(QStringLiteral("cardField"));
        return field != nullptr && field->hasActiveFocus();
    }

    Fakes::Surroundings surroundings;
    std::unique_ptr<CFrameWindow> window;

private:
    bool m_isStarted = false;
};

} // namespace

class TestHomeScreens : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_log = std::make_unique<Fakes::LogBook>(); }
    void cleanup()
    {
        QStringList warnings = m_log->linesWith(QStringLiteral("warning: "));
        m_log.reset();
        // The managers miss their files here, and say so.
        warnings.erase(std::remove_if(warnings.begin(), warnings.end(),
                                      [](const QString& line) {
                                          return line.startsWith(QLatin1String("warning: open file "));
                                      }),
                       warnings.end());
        QCOMPARE(warnings.join(QLatin1Char('\n')), QString());
    }

    void everyNameOfTheScreensIsPublished_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"rootView", "appPath", "tabMgr", "tab", "gridViewModel", "gridViewCtrl",
                                 "leftPanelModel", "editorControl", "messageBoxMgr", "serviceConvertMgr",
                                 "serviceConvertModel", "proInfoModel", "infoCardCtrl", "orgModel"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void everyNameOfTheScreensIsPublished()
    {
        QFETCH(QString, name);
        const Home home;
        QVERIFY(home.window->rootContext()->contextProperty(name).isValid());
    }

    void theWindowIsLaidOutAsTheTabsExpect()
    {
        const Home home;
        QVERIFY(home.isShown());
        QTRY_COMPARE(home.window->rootObject()->size().toSize(), QSize(1360, 860));
        const QQuickItem* title = home.item(QStringLiteral("titleRect"));
        const QQuickItem* content = home.item(QStringLiteral("contentRect"));
        QCOMPARE(QSizeF(title->width(), title->height()), QSizeF(1360, 34));
        QCOMPARE(QRectF(content->position(), content->size()), QRectF(0, 34, 1360, 860 - 34));
    }

    void anEmptyHomeDraws()
    {
        const Home home;
        QVERIFY(home.isShown());
        home.draw();
        QVERIFY(home.item(QStringLiteral("gridPlaceholder")) != nullptr);
        QTRY_VERIFY(home.item(QStringLiteral("treePlaceholder")) != nullptr);
    }

    void aHomeWithATreeOfTwoLevelsDraws()
    {
        TorvoSDK::SOrgNode department;
        department.id = L"department";
        department.name = L"项目部";
        department.canSelect = true;
        TorvoSDK::SOrgNode company;
        company.id = L"company";
        company.name = L"公司";
        company.children.push_back(department);
        const Home home(company);
        QVERIFY(home.isShown());
        QTRY_VERIFY(home.item(QStringLiteral("treeRow_company")) != nullptr);
        home.draw();
        home.click(QStringLiteral("treeRow_company"));
        QTRY_VERIFY(home.item(QStringLiteral("treeRow_department")) != nullptr);
        home.draw();
        home.click(QStringLiteral("treeRow_department"));
        home.draw();
    }

    void everyStateOfACardDraws()
    {
        const Home home;
        QVERIFY(home.isShown());
        for (int state = 0; state < 6; ++state)
            home.addCard(state).setStateType(static_cast<CGridViewData::StateTypeEnum>(state));
        for (int deal = 0; deal < 4; ++deal)
            home.addCard(10 + deal).setDealState(static_cast<CGridViewData::DealStateEnum>(deal));
        home.addCard(20).setNeedUpgrade(true);
        home.addCard(21).setTipText(ConversionTipText({3, 2}));
        CGridViewData& upgrading = home.addCard(22);
        upgrading.setNeedUpgrade(true);
        upgrading.setIsUpgrade(true);
        QTRY_VERIFY(home.item(QStringLiteral("card_") + GuidOf(22)) != nullptr);
        home.draw();
        for (int deal = 3; deal >= 0; --deal) {
            home.cards()
                .getDataByGuid(GuidOf(13))
                ->setDealState(static_cast<CGridViewData::DealStateEnum>(deal));
            home.draw();
        }
        home.cards().clear();
        home.draw();
        QVERIFY(home.item(QStringLiteral("gridPlaceholder")) != nullptr);
    }

    void messagesAndQuestionsDraw()
    {
        const Home home;
        QVERIFY(home.isShown());
        emit Mgr<CMessageBoxMgr>().sigShowTip(QStringLiteral("提示"), QStringLiteral("工程正在上传中!"));
        QTRY_VERIFY(home.item(QStringLiteral("yesBtn")) != nullptr);
        home.draw();
        emit Mgr<CMessageBoxMgr>().sigCheckBox(QStringLiteral("提示"), QStringLiteral("是否继续?"));
        QTRY_VERIFY(home.item(QStringLiteral("noBtn")) != nullptr);
        home.draw();
        QTest::keyClick(home.window.get(), Qt::Key_Escape);
        QTRY_VERIFY(home.item(QStringLiteral("yesBtn")) == nullptr);
    }

    void aNewProjectComesByClicks()
    {
        const Home home;
        QVERIFY(home.isShown());
        home.click(QStringLiteral("createBtn"));
        QTRY_VERIFY(home.item(QStringLiteral("nameField")) != nullptr);
        QTRY_VERIFY(home.item(QStringLiteral("nameField"))->hasActiveFocus());
        home.draw();
        for (const char letter : {'a', 'b', 'c'})
            QTest::keyClick(home.window.get(), letter);
        home.choose(QStringLiteral("provinceBox"), QStringLiteral("region_110000"));
        home.choose(QStringLiteral("regionBox"), QStringLiteral("region_110101"));
        home.click(QStringLiteral("newProjectBtn"));
        QTRY_COMPARE(home.cards().count(), 1);
        const auto* card = home.cards().getProjectInfoData(0);
        QCOMPARE(card->name(), QStringLiteral("abc"));
        QCOMPARE(card->projType(), QStringLiteral("CIM"));
        const auto& project = *Fakes::SmartDB::instance().find(card->guid())->project;
        QCOMPARE(project.GetPosition().GetX(), 116.42);
        QCOMPARE(project.GetPosition().GetY(), 39.93);
        QCOMPARE(QString::fromStdWString(project.GetAttr(L"Pa_BelongsRegion")),
                 QStringLiteral(R"({"cityId":"110000","cityName":"北京市","provinceId":"110000",)"
                                R"("provinceName":"北京市","regionId":"110101","regionName":"东城区"})"));
        QTRY_VERIFY(home.item(QStringLiteral("nameField")) == nullptr);
        home.draw();
    }

    void theFormOfTheOtherVariantDraws()
    {
        const Home home;
        QVERIFY(home.isShown());
        Mgr<CEditorControl>().setIsBimSdk(true);
        home.click(QStringLiteral("createBtn"));
        QTRY_VERIFY(home.item(QStringLiteral("departmentBox")) != nullptr);
        QTRY_VERIFY(home.item(QStringLiteral("nameField"))->hasActiveFocus());
        home.draw();
        home.click(QStringLiteral("departmentBox"));
        QTRY_VERIFY(home.item(QStringLiteral("orgTree")) != nullptr);
        home.draw();
    }

    void aBuildingIsRenamedOnItsInfoCard()
    {
        const Home home;
        QVERIFY(home.isShown());
        emit Mgr<CTabMgr>().sigCreateBimProj();
        QTRY_VERIFY(home.item(QStringLiteral("nameField")) != nullptr);
        QTRY_VERIFY(home.item(QStringLiteral("nameField"))->hasActiveFocus());
        home.type("abc\r");
        QTRY_COMPARE(home.cards().count(), 1);
        QTRY_VERIFY(home.item(QStringLiteral("nameField")) == nullptr);
        home.click(QStringLiteral("proInfoBtn"));
        QTRY_VERIFY(home.hasInfoCard());
        home.draw();
        const qreal ratio = home.window->devicePixelRatio();
        QCOMPARE(home.item(QStringLiteral("infoPicture"))->property("sourceSize").toSize(),
                 QSize(qRound(310 * ratio), qRound(167 * ratio)));
        home.type("d");
        home.click(QStringLiteral("infoOkBtn"));
        QTRY_VERIFY(home.item(QStringLiteral("infoOkBtn")) == nullptr);
        QCOMPARE(home.cards().getProjectInfoData(0)->name(), QStringLiteral("abcd"));
        const auto guid = home.cards().getProjectInfoData(0)->guid();
        QCOMPARE(QString::fromStdWString(Fakes::SmartDB::instance().find(guid)->project->GetName()),
                 QStringLiteral("abcd"));
    }

    void aSceneIsMovedOnItsInfoCard()
    {
        const Home home;
        QVERIFY(home.isShown());
        auto& database = Fakes::SmartDB::instance();
        auto& scene = *database.add(GuidOf(1), QStringLiteral("新区"), QStringLiteral("CIM")).project;
        scene.SetAttr(L"Pa_BelongsRegion", LR"({"provinceId": "33", "provinceName": "浙江省",
            "cityId": "3301", "cityName": "杭州市", "regionId": "330106", "regionName": "西湖区"})");
        const QString districts =
            QStringLiteral(R"([{"id": "330108", "name": "滨江区", "lat": 30.25, "lon": 120.25}])");
        database.net.setReply(QStringLiteral("GetAdministrativeRegion"), QStringLiteral("3301"),
                              {districts, {}, false, {}});
        Mgr<CLocalProjectInfoMgr>().AddProject(GuidOf(1));
        home.addCard(1);
        QTRY_VERIFY(home.item(QStringLiteral("proInfoBtn")) != nullptr);
        home.draw();
        home.click(QStringLiteral("proInfoBtn"));
        QTRY_VERIFY(home.hasInfoCard());
        QCOMPARE(home.item(QStringLiteral("regionBox"))->property("displayText").toString(),
                 QStringLiteral("西湖区"));
        home.draw();
        home.click(QStringLiteral("regionBox"));
        QTRY_VERIFY(home.item(QStringLiteral("region_330108")) != nullptr);
        home.draw();
        home.click(QStringLiteral("region_330108"));
        QTRY_VERIFY(home.item(QStringLiteral("region_330108")) == nullptr);
        home.click(QStringLiteral("infoOkBtn"));
        QTRY_VERIFY(home.item(QStringLiteral("infoOkBtn")) == nullptr);
        const auto written = QString::fromStdWString(scene.GetAttr(L"Pa_BelongsRegion"));
        QVERIFY2(written.contains(QStringLiteral("滨江区")), qPrintable(written));
        QCOMPARE(scene.GetPosition().GetX(), 120.25);
        QCOMPARE(scene.GetPosition().GetY(), 30.25);
    }

    void aProjectIsDeletedFromItsInfoCard()
    {
        const Home home;
        QVERIFY(home.isShown());
        emit Mgr<CTabMgr>().sigCreateBimProj();
        QTRY_VERIFY(home.item(QStringLiteral("nameField")) != nullptr);
        QTRY_VERIFY(home.item(QStringLiteral("nameField"))->hasActiveFocus());
        home.type("abc\r");
        QTRY_VERIFY(home.item(QStringLiteral("nameField")) == nullptr);
        home.click(QStringLiteral("proInfoBtn"));
        QTRY_VERIFY(home.hasInfoCard());
        home.click(QStringLiteral("deleteBtn"));
        QTRY_VERIFY(home.item(QStringLiteral("yesBtn")) != nullptr);
        QTRY_VERIFY(home.item(QStringLiteral("yesBtn"))->hasActiveFocus());
        home.draw();
        home.type("\r");
        QTRY_COMPARE(home.cards().count(), 0);
        QTRY_VERIFY(home.item(QStringLiteral("infoOkBtn")) == nullptr);
    }

    void theInfoCardOfAServersProjectDrawsWithoutAPicture()
    {
        const Home home({}, GuidOf(7));
        QVERIFY(home.isShown());
        const QString row = QStringLiteral("treeRow_") + GuidOf(7);
        QTRY_VERIFY(home.item(row) != nullptr);
        home.click(row);
        QTRY_VERIFY(home.hasInfoCard());
        home.draw();
        QVERIFY(home.item(QStringLiteral("infoPlaceholder")) != nullptr);
        QVERIFY(!home.item(QStringLiteral("deleteBtn"))->isEnabled());
        QCOMPARE(home.item(QStringLiteral("cardField"))->property("text").toString(),
                 QStringLiteral("远方的楼"));
        QTest::keyClick(home.window.get(), Qt::Key_Escape);
        QTRY_VERIFY(home.item(QStringLiteral("infoOkBtn")) == nullptr);
    }

    void manyTabsDraw()
    {
        const Home home;
        QVERIFY(home.isShown());
        CTab& tab = *Mgr<CTabMgr>().tab();
        for (int number = 0; number < 12; ++number) {
            Fakes::SmartDB::instance().add(GuidOf(number), QStringLiteral("工程 %1").arg(number),
                                           QStringLiteral("BIM"));
            tab.addTab(GuidOf(number));
        }
        tab.setCurrentTab(GuidOf(3));
        home.draw();
        QVERIFY(home.item(QStringLiteral("tab_") + GuidOf(11)) != nullptr);
        QVERIFY(home.item(QStringLiteral("helpBtn")) != nullptr);
        tab.setCurrentTab(mainTabName);
        for (int number = 0; number < 12; ++number)
            tab.removeTab(GuidOf(number));
        home.draw();
    }

    void searchAndFilterDraw()
    {
        const Home home;
        QVERIFY(home.isShown());
        home.click(QStringLiteral("searchBox"));
        for (const char letter : {'a', 'b', 'c'})
            QTest::keyClick(home.window.get(), letter);
        QTRY_COMPARE(home.item(QStringLiteral("searchBox"))->property("text").toString(),
                     QStringLiteral("abc"));
        home.draw();
        Mgr<CEditorControl>().reflushProjTree();
        home.draw();
        QTest::keyClick(home.window.get(), Qt::Key_Escape);
        home.click(QStringLiteral("projTypeCheck"));
        QTRY_VERIFY(home.item(QStringLiteral("type_BIM")) != nullptr);
        home.draw();
        home.click(QStringLiteral("type_BIM"));
        home.draw();
    }

    void everySizeDraws_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(640, 400);
        QTest::newRow("narrow") << QSize(400, 800);
        QTest::newRow("wide") << QSize(1920, 300);
    }
    void everySizeDraws()
    {
        QFETCH(QSize, size);
        const Home home;
        QVERIFY(home.isShown());
        for (int number = 0; number < 6; ++number)
            home.addCard(number);
        home.window->resize(size);
        QTRY_COMPARE(home.window->rootObject()->size().toSize(), size);
        home.draw();
    }

private:
    std::unique_ptr<Fakes::LogBook> m_log;
};

QTEST_MAIN(TestHomeScreens)

#include "test_homescreens.moc"
