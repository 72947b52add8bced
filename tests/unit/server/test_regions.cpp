// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include "server/regions/regions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QTest>

namespace
{

/// The rows of one parent that a form needs to place a project; both coordinates lie in the country.
constexpr double southmost = 3;
constexpr double northmost = 54;
constexpr double westmost = 73;
constexpr double eastmost = 136;

std::string HeaderOf(const server::Reply& reply, const std::string& name)
{
    for (const auto& [key, value] : reply.headers) {
        if (key == name)
            return value;
    }
    return {};
}

QJsonArray ListOf(const std::string& body)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(body)).array();
}

QJsonArray Below(const QString& parent)
{
    return ListOf(server::Regions::known().below(parent.toStdString()).body);
}

QString IdOf(const QJsonArray& list, const QString& name)
{
    for (const auto& value : list) {
        if (value.toObject().value("name").toString() == name)
            return value.toObject().value("id").toString();
    }
    return {};
}

QStringList NamesOf(const QJsonArray& list)
{
    QStringList names;
    for (const auto& value : list)
        names.append(value.toObject().value("name").toString());
    return names;
}

const QString country = QStringLiteral("100000");

} // namespace

/// The administrative regions that the server knows, and how it answers with them.
class TestRegions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_server.reset(); }

    void thereIsOneCountry();
    void countryHasItsProvinces();
    void directlyGovernedCityHasItsDistrictsBelowItself_data();
    void directlyGovernedCityHasItsDistrictsBelowItself();
    void provinceHasCitiesAndTheseHaveDistricts();
    void whatHasNoCityAboveItStandsAmongTheCities_data();
    void whatHasNoCityAboveItStandsAmongTheCities();
    void cityWithoutDistrictsHasNothingBelow_data();
    void cityWithoutDistrictsHasNothingBelow();
    void provinceMayHaveNothingBelow_data();
    void provinceMayHaveNothingBelow();
    void everyRegionHasItsFieldsOnceAndAPlaceInTheCountry();
    void noListHasAGroupWithoutARealName();
    void regionsLieWhereTheyLie_data();
    void regionsLieWhereTheyLie();
    void districtThatTheGazetteerLacksLiesInItsCity();

    void listIsAnsweredWithItsTagAndADay();
    void knownTagIsAnsweredWithoutAList();
    void tagsOfDifferentListsDiffer();
    void unknownParentHasAnEmptyList_data();
    void unknownParentHasAnEmptyList();
    void whatCannotBeAnIdIsRefused_data();
    void whatCannotBeAnIdIsRefused();
    void encodedIdIsRead();
    void withoutATokenThereIsNoList_data();
    void withoutATokenThereIsNoList();
    void otherMethodsAreRefused_data();
    void otherMethodsAreRefused();

private:
    server::Reply ask(const std::string& query, const std::string& tag = {});

    std::unique_ptr<AnsweringServer> m_server;
    std::string m_token;
};

void TestRegions::initTestCase()
{
    m_server = std::make_unique<AnsweringServer>();
    m_token = m_server->addAccount("wang");
}

server::Reply TestRegions::ask(const std::string& query, const std::string& tag)
{
    server::Request request;
    request.method = "GET";
    request.path = {"regions"};
    request.query = query;
    request.authorization = "Bearer " + m_token;
    request.ifNoneMatch = tag;
    return m_server->api().answer(request);
}

void TestRegions::thereIsOneCountry()
{
    const auto reply = m_server->ask("GET", {"countries"}, m_token);
    QCOMPARE(reply.status, 200U);
    const auto countries = ListOf(reply.body);
    QCOMPARE(countries.size(), 1);
    QCOMPARE(IdOf(countries, "中国"), country);
}

void TestRegions::countryHasItsProvinces()
{
    const auto provinces = Below(country);
    QCOMPARE(provinces.size(), 34);
    QCOMPARE(NamesOf(provinces).mid(0, 3), QStringList({"北京市", "天津市", "河北省"}));
    QCOMPARE(IdOf(provinces, "江苏省"), QString("320000"));
}

void TestRegions::directlyGovernedCityHasItsDistrictsBelowItself_data()
{
    QTest::addColumn<QString>("city");
    QTest::addColumn<QString>("district");
    QTest::addColumn<int>("count");
    QTest::newRow("Beijing") << "北京市"
                             << "东城区" << 16;
    QTest::newRow("Tianjin") << "天津市"
                             << "滨海新区" << 16;
    QTest::newRow("Shanghai") << "上海市"
                              << "浦东新区" << 16;
    QTest::newRow("Chongqing, counties too") << "重庆市"
                                             << "城口县" << 38;
}

void TestRegions::directlyGovernedCityHasItsDistrictsBelowItself()
{
    QFETCH(QString, city);
    QFETCH(QString, district);
    QFETCH(int, count);
    const auto districts = Below(IdOf(Below(country), city));
    QCOMPARE(districts.size(), count);
    QVERIFY(Below(IdOf(districts, district)).isEmpty());
    QVERIFY(!IdOf(districts, district).isEmpty());
}

void TestRegions::provinceHasCitiesAndTheseHaveDistricts()
{
    const auto cities = Below("320000");
    QCOMPARE(cities.size(), 13);
    QCOMPARE(IdOf(cities, "南京市"), QString("320100"));
    QCOMPARE(IdOf(Below("320100"), "玄武区"), QString("320102"));
}

void TestRegions::whatHasNoCityAboveItStandsAmongTheCities_data()
{
    QTest::addColumn<QString>("province");
    QTest::addColumn<QString>("county");
    QTest::newRow("Hainan") << "460000"
                            << "五指山市";
    QTest::newRow("Hainan, a county") << "460000"
                                      << "白沙黎族自治县";
    QTest::newRow("Hubei") << "420000"
                           << "仙桃市";
    QTest::newRow("Henan") << "410000"
                           << "济源市";
    QTest::newRow("Xinjiang") << "650000"
                              << "石河子市";
}

void TestRegions::whatHasNoCityAboveItStandsAmongTheCities()
{
    QFETCH(QString, province);
    QFETCH(QString, county);
    const QString id = IdOf(Below(province), county);
    QVERIFY(!id.isEmpty());
    QVERIFY(Below(id).isEmpty());
}

void TestRegions::cityWithoutDistrictsHasNothingBelow_data()
{
    QTest::addColumn<QString>("city");
    for (const char* city : {"441900", "442000", "460400", "620200"})
        QTest::newRow(city) << city;
}

void TestRegions::cityWithoutDistrictsHasNothingBelow()
{
    QFETCH(QString, city);
    QVERIFY(Below(city).isEmpty());
}

void TestRegions::provinceMayHaveNothingBelow_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"台湾省", "香港特别行政区", "澳门特别行政区"})
        QTest::newRow(name) << name;
}

void TestRegions::provinceMayHaveNothingBelow()
{
    QFETCH(QString, name);
    const QString id = IdOf(Below(country), name);
    QVERIFY(!id.isEmpty());
    QVERIFY(Below(id).isEmpty());
}

void TestRegions::everyRegionHasItsFieldsOnceAndAPlaceInTheCountry()
{
    QSet<QString> seen;
    QStringList parents{country};
    while (!parents.isEmpty()) {
        const auto list = Below(parents.takeFirst());
        for (const auto& value : list) {
            const auto region = value.toObject();
            const QString id = region.value("id").toString();
            QCOMPARE(region.keys(), QStringList({"id", "lat", "lon", "name"}));
            QVERIFY(!region.value("name").toString().isEmpty());
            QVERIFY2(!seen.contains(id), qPrintable(id));
            const double lat = region.value("lat").toDouble();
            const double lon = region.value("lon").toDouble();
            QVERIFY2(lat > southmost && lat < northmost && lon > westmost && lon < eastmost, qPrintable(id));
            seen.insert(id);
            parents.append(id);
        }
    }
    QVERIFY(seen.size() > 3000);
}

void TestRegions::noListHasAGroupWithoutARealName()
{
    const auto provinces = Below(country);
    for (const auto& value : provinces) {
        const auto cities = Below(value.toObject().value("id").toString());
        for (const QString& name : NamesOf(cities))
            QVERIFY2(!name.contains("直辖") && name != "市辖区" && name != "县", qPrintable(name));
    }
}

void TestRegions::regionsLieWhereTheyLie_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::newRow("a directly governed city") << country << "北京市" << 39.9 << 116.4;
    QTest::newRow("its district") << "110000"
                                  << "通州区" << 39.9 << 116.66;
    QTest::newRow("a city") << "320000"
                            << "南京市" << 32.06 << 118.78;
    QTest::newRow("a city with a name in another language") << "650000"
                                                            << "乌鲁木齐市" << 43.8 << 87.6;
    QTest::newRow("a county") << "320500"
                              << "昆山市" << 31.38 << 120.95;
    QTest::newRow("an autonomous county") << "460000"
                                          << "白沙黎族自治县" << 19.22 << 109.45;
    QTest::newRow("a special region") << country << "香港特别行政区" << 22.3 << 114.17;
}

void TestRegions::regionsLieWhereTheyLie()
{
    QFETCH(QString, parent);
    QFETCH(QString, name);
    QFETCH(double, lat);
    QFETCH(double, lon);
    const auto list = Below(parent);
    for (const auto& value : list) {
        const auto region = value.toObject();
        if (region.value("name").toString() != name)
            continue;
        QVERIFY(std::abs(region.value("lat").toDouble() - lat) < 0.2);
        QVERIFY(std::abs(region.value("lon").toDouble() - lon) < 0.2);
        return;
    }
    QFAIL("no such region");
}

void TestRegions::districtThatTheGazetteerLacksLiesInItsCity()
{
    // Two places in this city have the name of its county 巫山, neither of them in it.
    const auto positionOf = [](const QString& parent, const QString& name) {
        const auto list = Below(parent);
        for (const auto& value : list) {
            const auto region = value.toObject();
            if (region.value("name").toString() == name)
                return std::pair(region.value("lat").toDouble(), region.value("lon").toDouble());
        }
        return std::pair(0.0, 0.0);
    };
    QVERIFY(positionOf("500000", "巫山县").first > 0);
    QVERIFY(positionOf("500000", "巫山县") == positionOf(country, "重庆市"));
}

void TestRegions::listIsAnsweredWithItsTagAndADay()
{
    const auto reply = ask("parent=110000");
    QCOMPARE(reply.status, 200U);
    QCOMPARE(reply.contentType, std::string("application/json"));
    QCOMPARE(ListOf(reply.body), Below("110000"));
    QVERIFY(HeaderOf(reply, "ETag").size() > 2);
    QCOMPARE(HeaderOf(reply, "Cache-Control"), std::string("private, max-age=86400"));
}

void TestRegions::knownTagIsAnsweredWithoutAList()
{
    const auto tag = HeaderOf(ask("parent=110000"), "ETag");
    const auto reply = ask("parent=110000", tag);
    QCOMPARE(reply.status, 304U);
    QVERIFY(reply.body.empty());
    QCOMPARE(HeaderOf(reply, "ETag"), tag);
    QCOMPARE(HeaderOf(reply, "Cache-Control"), std::string("private, max-age=86400"));
}

void TestRegions::tagsOfDifferentListsDiffer()
{
    QVERIFY(HeaderOf(ask("parent=110000"), "ETag") != HeaderOf(ask("parent=120000"), "ETag"));
}

void TestRegions::unknownParentHasAnEmptyList_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("unknown") << "parent=999999";
    QTest::newRow("empty") << "parent=";
    QTest::newRow("a district") << "parent=110101";
    QTest::newRow("the longest") << "parent=" + QString(64, '1');
    QTest::newRow("letters") << "parent=%E5%8C%97%E4%BA%AC";
    QTest::newRow("no text") << "parent=%FF%00";
    QTest::newRow("a path") << "parent=..%2F..%2Fetc";
}

void TestRegions::unknownParentHasAnEmptyList()
{
    QFETCH(QString, query);
    const auto reply = ask(query.toStdString());
    QCOMPARE(reply.status, 200U);
    QCOMPARE(reply.body, std::string("[]"));
}

void TestRegions::whatCannotBeAnIdIsRefused_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("none") << "";
    QTest::newRow("another name") << "parents=110000";
    QTest::newRow("no value") << "parent";
    QTest::newRow("too long") << "parent=" + QString(65, '1');
    QTest::newRow("half an escape") << "parent=11%2";
    QTest::newRow("no escape") << "parent=%zz";
}

void TestRegions::whatCannotBeAnIdIsRefused()
{
    QFETCH(QString, query);
    const auto reply = ask(query.toStdString());
    QCOMPARE(reply.status, 400U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40001);
}

void TestRegions::encodedIdIsRead()
{
    QCOMPARE(ListOf(ask("other=1&parent=%31%310000").body), Below("110000"));
}

void TestRegions::withoutATokenThereIsNoList_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("countries") << "countries";
    QTest::newRow("regions") << "regions";
}

void TestRegions::withoutATokenThereIsNoList()
{
    QFETCH(QString, path);
    const auto reply = m_server->ask("GET", {path.toStdString()}, {});
    QCOMPARE(reply.status, 401U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40014);
}

void TestRegions::otherMethodsAreRefused_data()
{
    withoutATokenThereIsNoList_data();
}

void TestRegions::otherMethodsAreRefused()
{
    QFETCH(QString, path);
    for (const char* method : {"POST", "PUT", "DELETE"})
        QCOMPARE(m_server->ask(method, {path.toStdString()}, m_token).status, 405U);
}

QTEST_GUILESS_MAIN(TestRegions)

#include "test_regions.moc"
