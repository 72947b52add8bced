// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "view/context/editorcontrol/administrativeregion.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace TorvoEditor;

Q_DECLARE_METATYPE(Fakes::Reply)

namespace
{

const QString country = QStringLiteral("100000");

void SetCountries(const QString& text)
{
    Fakes::SmartDB::instance().net.setReply("GetCountryList", {}, {text, {}, false, {}});
}

void SetRegions(const QString& parent, const QString& text)
{
    Fakes::SmartDB::instance().net.setReply("GetAdministrativeRegion", parent, {text, {}, false, {}});
}

void SetFailure(const QString& query, const QString& argument, const Fakes::Reply& reply)
{
    Fakes::SmartDB::instance().net.setReply(query, argument, reply);
}

QString Region(const QString& id, const QString& name, const QString& lat, const QString& lon)
{
    return QStringLiteral(R"({"id":"%1","name":"%2","lat":%3,"lon":%4})").arg(id, name, lat, lon);
}

QJsonObject Shown(const QString& id, const QString& name, double latitude, double longitude)
{
    return {{"id", id}, {"name", name}, {"latitude", latitude}, {"longitude", longitude}};
}

QStringList AskedRegions()
{
    return Fakes::Calls().filter("GetAdministrativeRegion(");
}

} // namespace

class TestAdministrativeRegion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startLoadsTheProvincesOfTheFirstCountry();
    void propertyIsReadOnlyAndTellsItsChange();
    void modelHasNoParent();
    void loadWithoutACountryStaysEmpty_data();
    void loadWithoutACountryStaysEmpty();
    void loadWithoutProvincesStaysEmpty_data();
    void loadWithoutProvincesStaysEmpty();
    void loadOfNoProvincesIsTold();
    void loadIsNotRetried();
    void secondLoadTakesTheListsPlace();
    void failedSecondLoadKeepsTheList();
    void entriesAreConverted_data();
    void entriesAreConverted();
    void childrenAreConvertedInOrder();
    void childrenAreAskedForOnce();
    void emptyListIsAskedForOnce();
    void failureIsEmptyAndAskedForAgain_data();
    void failureIsEmptyAndAskedForAgain();
    void emptyIdIsAskedForLikeAnyOther();
    void eachParentHasItsOwnList();
    void loadedProvincesAreNotTheCacheOfTheirCountry();
    void answerThatIsNoListIsEmpty_data();
    void answerThatIsNoListIsEmpty();
    void regionBelowItselfIsAnEntryLikeAnyOther();
    void hugeListComesWhole();
    void screensCanAskForChildren();
    void failuresShowNoBox();

private:
    /// Starts the view models; true when the region model is published.
    [[nodiscard]] bool start();
    [[nodiscard]] CAdministrativeRegion& regions()
    {
        return *m_view->published<CAdministrativeRegion>("regionModel");
    }

    std::unique_ptr<StartedView> m_view;
};

void TestAdministrativeRegion::init()
{
    m_view = std::make_unique<StartedView>();
    SetCountries(R"([{"id":"100000"},{"id":"200000"}])");
    SetRegions(country, '[' + Region("11", "北京市", "39.9", "116.4") + ',' +
                            Region("32", "江苏省", "32", "119") + ']');
}

void TestAdministrativeRegion::cleanup()
{
    m_view.reset();
}

bool TestAdministrativeRegion::start()
{
    return m_view->start() && m_view->published<CAdministrativeRegion>("regionModel") != nullptr;
}

void TestAdministrativeRegion::startLoadsTheProvincesOfTheFirstCountry()
{
    QVERIFY(start());
    QCOMPARE(regions().cityArray(),
             (QJsonArray{Shown("11", "北京市", 39.9, 116.4), Shown("32", "江苏省", 32, 119)}));
}

void TestAdministrativeRegion::propertyIsReadOnlyAndTellsItsChange()
{
    QVERIFY(start());
    const auto* meta = regions().metaObject();
    const auto property = meta->property(meta->indexOfProperty("cityArray"));
    QCOMPARE(property.userType(), int(QMetaType::QJsonArray));
    QVERIFY(!property.isWritable());
    QCOMPARE(property.notifySignal().name(), QByteArray("cityArrayChanged"));
    const QSignalSpy changed(&regions(), &CAdministrativeRegion::cityArrayChanged);
    regions().Load();
    QCOMPARE(changed.count(), 1);
}

void TestAdministrativeRegion::modelHasNoParent()
{
    QVERIFY(start());
    QVERIFY(regions().parent() == nullptr);
}

void TestAdministrativeRegion::loadWithoutACountryStaysEmpty_data()
{
    QTest::addColumn<Fakes::Reply>("reply");
    QTest::newRow("no server") << Fakes::Reply{{}, "unreachable", false, {}};
    QTest::newRow("nothing") << Fakes::Reply{};
    QTest::newRow("no JSON") << Fakes::Reply{"noise", {}, false, {}};
    QTest::newRow("cancelled") << Fakes::Reply{{}, {}, true, {}};
    QTest::newRow("broken") << Fakes::Reply{{}, {}, false, "broken"};
}

void TestAdministrativeRegion::loadWithoutACountryStaysEmpty()
{
    QVERIFY(start());
    QFETCH(Fakes::Reply, reply);
    SetFailure("GetCountryList", {}, reply);
    CAdministrativeRegion regions(CHomeApp::instance().GetMgr<CProjectMgr>());
    const QSignalSpy changed(&regions, &CAdministrativeRegion::cityArrayChanged);
    Fakes::ForgetCalls();
    regions.Load();
    QVERIFY(regions.cityArray().isEmpty());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(AskedRegions(), QStringList());
}

void TestAdministrativeRegion::loadWithoutProvincesStaysEmpty_data()
{
    loadWithoutACountryStaysEmpty_data();
}

void TestAdministrativeRegion::loadWithoutProvincesStaysEmpty()
{
    QVERIFY(start());
    QFETCH(Fakes::Reply, reply);
    SetFailure("GetAdministrativeRegion", country, reply);
    CAdministrativeRegion regions(CHomeApp::instance().GetMgr<CProjectMgr>());
    const QSignalSpy changed(&regions, &CAdministrativeRegion::cityArrayChanged);
    regions.Load();
    QVERIFY(regions.cityArray().isEmpty());
    QCOMPARE(changed.count(), 0);
}

void TestAdministrativeRegion::loadOfNoProvincesIsTold()
{
    QVERIFY(start());
    SetRegions(country, "[]");
    const QSignalSpy changed(&regions(), &CAdministrativeRegion::cityArrayChanged);
    regions().Load();
    QVERIFY(regions().cityArray().isEmpty());
    QCOMPARE(changed.count(), 1);
}

void TestAdministrativeRegion::loadIsNotRetried()
{
    SetFailure("GetCountryList", {}, {{}, "unreachable", false, {}});
    QVERIFY(start());
    SetCountries(R"([{"id":"100000"}])");
    SetRegions("11", "[]");
    StartedView::letTheTimerFire();
    StartedView::control().reflushProjTree();
    QVERIFY(regions().getChildRegionList("11").isEmpty());
    QVERIFY(regions().cityArray().isEmpty());
    QVERIFY(!Fakes::Calls().contains("GetCountryList()"));
}

void TestAdministrativeRegion::secondLoadTakesTheListsPlace()
{
    QVERIFY(start());
    SetRegions(country, '[' + Region("46", "海南省", "19", "110") + ']');
    regions().Load();
    QCOMPARE(regions().cityArray(), QJsonArray({Shown("46", "海南省", 19, 110)}));
}

void TestAdministrativeRegion::failedSecondLoadKeepsTheList()
{
    QVERIFY(start());
    SetFailure("GetAdministrativeRegion", country, {{}, "unreachable", false, {}});
    regions().Load();
    QCOMPARE(regions().cityArray().size(), 2);
}

void TestAdministrativeRegion::entriesAreConverted_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QJsonObject>("shown");
    const QString all = Region("1", "n", "1.5", "-2.5");
    QTest::newRow("all fields") << all << Shown("1", "n", 1.5, -2.5);
    QTest::newRow("whole numbers") << Region("1", "n", "1", "2") << Shown("1", "n", 1, 2);
    QTest::newRow("coordinates as texts")
        << Region("1", "n", R"("1.5")", R"("2.5")") << Shown("1", "n", 0, 0);
    QTest::newRow("no coordinates") << R"({"id":"1","name":"n"})" << Shown("1", "n", 0, 0);
    QTest::newRow("null coordinates") << Region("1", "n", "null", "null") << Shown("1", "n", 0, 0);
    QTest::newRow("numbers for texts") << R"({"id":1,"name":2,"lat":3,"lon":4})" << Shown("", "", 3, 4);
    QTest::newRow("further fields") << R"({"id":"1","name":"n","lat":1,"lon":2,"latitude":9,"level":1})"
                                    << Shown("1", "n", 1, 2);
    QTest::newRow("no fields") << "{}" << Shown("", "", 0, 0);
    QTest::newRow("no object") << "7" << Shown("", "", 0, 0);
    QTest::newRow("a list") << "[1]" << Shown("", "", 0, 0);
    QTest::newRow("null") << "null" << Shown("", "", 0, 0);
}

void TestAdministrativeRegion::entriesAreConverted()
{
    QFETCH(QString, entry);
    QFETCH(QJsonObject, shown);
    SetRegions(country, '[' + entry + ']');
    QVERIFY(start());
    QCOMPARE(regions().cityArray(), QJsonArray({shown}));
    SetRegions("1", '[' + entry + ']');
    QCOMPARE(regions().getChildRegionList("1"), QJsonArray({shown}));
}

void TestAdministrativeRegion::childrenAreConvertedInOrder()
{
    QVERIFY(start());
    SetRegions("32", '[' + Region("3202", "无锡市", "31.5", "120.3") + ',' +
                         Region("3201", "南京市", "32", "118.8") + ']');
    QCOMPARE(regions().getChildRegionList("32"),
             (QJsonArray{Shown("3202", "无锡市", 31.5, 120.3), Shown("3201", "南京市", 32, 118.8)}));
}

void TestAdministrativeRegion::childrenAreAskedForOnce()
{
    QVERIFY(start());
    SetRegions("32", '[' + Region("3201", "南京市", "32", "118.8") + ']');
    const auto first = regions().getChildRegionList("32");
    SetRegions("32", "[]");
    QCOMPARE(regions().getChildRegionList("32"), first);
    QCOMPARE(AskedRegions(), QStringList("GetAdministrativeRegion(32)"));
}

void TestAdministrativeRegion::emptyListIsAskedForOnce()
{
    QVERIFY(start());
    SetRegions("71", "[]");
    QVERIFY(regions().getChildRegionList("71").isEmpty());
    QVERIFY(regions().getChildRegionList("71").isEmpty());
    QCOMPARE(AskedRegions(), QStringList("GetAdministrativeRegion(71)"));
}

void TestAdministrativeRegion::failureIsEmptyAndAskedForAgain_data()
{
    loadWithoutACountryStaysEmpty_data();
}

void TestAdministrativeRegion::failureIsEmptyAndAskedForAgain()
{
    QVERIFY(start());
    QFETCH(Fakes::Reply, reply);
    SetFailure("GetAdministrativeRegion", "32", reply);
    QVERIFY(regions().getChildRegionList("32").isEmpty());
    SetRegions("32", '[' + Region("3201", "南京市", "32", "118.8") + ']');
    QCOMPARE(regions().getChildRegionList("32").size(), 1);
    QCOMPARE(AskedRegions().size(), 2);
}

void TestAdministrativeRegion::emptyIdIsAskedForLikeAnyOther()
{
    QVERIFY(start());
    SetRegions("", '[' + Region("1", "n", "1", "2") + ']');
    QCOMPARE(regions().getChildRegionList(""), QJsonArray({Shown("1", "n", 1, 2)}));
    QCOMPARE(regions().getChildRegionList(""), QJsonArray({Shown("1", "n", 1, 2)}));
    QCOMPARE(AskedRegions(), QStringList("GetAdministrativeRegion()"));
}

void TestAdministrativeRegion::eachParentHasItsOwnList()
{
    QVERIFY(start());
    SetRegions("11", '[' + Region("1101", "东城区", "1", "2") + ']');
    SetRegions("32", '[' + Region("3201", "南京市", "3", "4") + ']');
    QCOMPARE(regions().getChildRegionList("11"), QJsonArray({Shown("1101", "东城区", 1, 2)}));
    QCOMPARE(regions().getChildRegionList("32"), QJsonArray({Shown("3201", "南京市", 3, 4)}));
    QCOMPARE(regions().getChildRegionList("11"), QJsonArray({Shown("1101", "东城区", 1, 2)}));
}

void TestAdministrativeRegion::loadedProvincesAreNotTheCacheOfTheirCountry()
{
    QVERIFY(start());
    SetRegions(country, '[' + Region("46", "海南省", "19", "110") + ']');
    QCOMPARE(regions().getChildRegionList(country), QJsonArray({Shown("46", "海南省", 19, 110)}));
    QCOMPARE(regions().cityArray().size(), 2);
}

void TestAdministrativeRegion::answerThatIsNoListIsEmpty_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("an object") << R"({"id":"1"})";
    QTest::newRow("a refusal") << R"({"code":40014,"msg":"expired"})";
}

void TestAdministrativeRegion::answerThatIsNoListIsEmpty()
{
    QVERIFY(start());
    QFETCH(QString, text);
    SetRegions("32", text);
    QVERIFY(regions().getChildRegionList("32").isEmpty());
    SetRegions(country, text);
    regions().Load();
    QVERIFY(regions().cityArray().isEmpty());
}

void TestAdministrativeRegion::regionBelowItselfIsAnEntryLikeAnyOther()
{
    QVERIFY(start());
    SetRegions("32", '[' + Region("32", "江苏省", "32", "119") + ']');
    QCOMPARE(regions().getChildRegionList("32"), QJsonArray({Shown("32", "江苏省", 32, 119)}));
    QCOMPARE(AskedRegions(), QStringList("GetAdministrativeRegion(32)"));
}

void TestAdministrativeRegion::hugeListComesWhole()
{
    constexpr int count = 50000;
    QVERIFY(start());
    QStringList entries;
    for (int number = 0; number < count; ++number)
        entries.append(Region(QString::number(number), "n", "1", "2"));
    SetRegions("32", '[' + entries.join(',') + ']');
    const auto list = regions().getChildRegionList("32");
    QCOMPARE(list.size(), count);
    QCOMPARE(list.last().toObject().value("id").toString(), QString::number(count - 1));
}

void TestAdministrativeRegion::screensCanAskForChildren()
{
    QVERIFY(start());
    SetRegions("32", '[' + Region("3201", "南京市", "32", "118.8") + ']');
    QJsonArray list;
    QVERIFY(QMetaObject::invokeMethod(&regions(), "getChildRegionList", Q_RETURN_ARG(QJsonArray, list),
                                      Q_ARG(QString, "32")));
    QCOMPARE(list.size(), 1);
}

void TestAdministrativeRegion::failuresShowNoBox()
{
    SetFailure("GetCountryList", {}, {{}, R"({"code":40014})", false, {}});
    QVERIFY(start());
    QVERIFY(regions().getChildRegionList("nowhere").isEmpty());
    QCOMPARE(m_view->boxes, QStringList());
}

QTEST_MAIN(TestAdministrativeRegion)
#include "test_administrativeregion.moc"
