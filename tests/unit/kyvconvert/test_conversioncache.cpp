// SPDX-License-Identifier: MIT
#include "kyvconvert/conversion.h"
#include "kyvconvert/conversioncache.h"

#include "gltf/modelwriter.h"
#include "kyvconvert/modelfolder.h"
#include "models.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

/// Sources that were converted before.
class TestConversionCache : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void sameBytesGiveTheKeptModel();
    void keptModelGetsItsNewNameAndSource();
    void keptModelIsDrawn();
    void otherBytesGiveAnotherKey();
    void otherModeGivesAnotherKey();
    void otherPartGivesAnotherKey();
    void nameOfTheFileDoesNotMatter();
    void missingSourceHasNoKey();
    void sourceThatNamesOtherFilesIsNotKept();
    void damagedEntryIsNoEntry();
    void failedConversionIsNotKept();
    void whatWasNotUsedForLongestGoesFirst();
    void modelLargerThanTheCacheIsNotKept();

private:
    [[nodiscard]] std::string path(const char* name) const { return m_folder->filePath(name).toStdString(); }
    [[nodiscard]] QStringList entries() const
    {
        return QDir(m_folder->filePath("cache")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] kyvconvert::Order order(const char* source, const char* target) const;
    [[nodiscard]] static bool convert(const kyvconvert::Order& order);
    void mark(const QString& entry) const;
    [[nodiscard]] bool isMarked(const char* target) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestConversionCache::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(gltf::WriteModel(House(), path("house.glb"), "test"));
    QVERIFY(QDir(m_folder->path()).mkdir("cache"));
}

kyvconvert::Order TestConversionCache::order(const char* source, const char* target) const
{
    kyvconvert::Order order;
    order.source = path(source);
    order.folder = path(target);
    order.name = target;
    order.cache = path("cache");
    order.cacheLimit = 1U << 30U;
    return order;
}

bool TestConversionCache::convert(const kyvconvert::Order& order)
{
    const auto outcome = kyvconvert::Convert(order, [](int) {});
    if (outcome.problem != kyvconvert::Problem::none)
        qInfo("%s", outcome.reason.c_str());
    return outcome.problem == kyvconvert::Problem::none;
}

/// Something that no conversion makes, to tell a kept model by.
void TestConversionCache::mark(const QString& entry) const
{
    QFile file(m_folder->filePath("cache/" + entry + "/floors.json"));
    if (!file.open(QIODevice::WriteOnly) || file.write("[\"kept\"]") < 0)
        qFatal("the test cannot write");
}

bool TestConversionCache::isMarked(const char* target) const
{
    QFile file(m_folder->filePath(target) + "/floors.json");
    return file.open(QIODevice::ReadOnly) && file.readAll() == "[\"kept\"]";
}

void TestConversionCache::sameBytesGiveTheKeptModel()
{
    QVERIFY(convert(order("house.glb", "a")));
    QCOMPARE(entries().size(), 1);
    QVERIFY(!isMarked("a"));
    mark(entries().first());
    QVERIFY(convert(order("house.glb", "b")));
    QVERIFY(isMarked("b"));
    const auto read = gltf::ReadModel(m_folder->filePath("b/model.glb").toStdString());
    QCOMPARE(Surfaces(std::get<gltf::Model>(read)), Surfaces(House()));
}

void TestConversionCache::keptModelGetsItsNewNameAndSource()
{
    QVERIFY(convert(order("house.glb", "a")));
    QVERIFY(QFile::copy(m_folder->filePath("house.glb"), m_folder->filePath("copy.glb")));
    QVERIFY(convert(order("copy.glb", "b")));
    QFile file(m_folder->filePath("b/model.json"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto facts = QJsonDocument::fromJson(file.readAll()).object();
    QCOMPARE(facts.value("name").toString(), QStringLiteral("b"));
    QCOMPARE(facts.value("source").toString(), QStringLiteral("copy.glb"));
}

void TestConversionCache::keptModelIsDrawn()
{
    QVERIFY(convert(order("house.glb", "a")));
    auto second = order("house.glb", "b");
    second.picture = path("b.jpg");
    QVERIFY(convert(second));
    QVERIFY(QFileInfo(m_folder->filePath("b.jpg")).size() > 0);
}

void TestConversionCache::otherBytesGiveAnotherKey()
{
    QVERIFY(convert(order("house.glb", "a")));
    auto house = House();
    house.nodes.front().name = "塔";
    QVERIFY(gltf::WriteModel(house, path("house.glb"), "test"));
    QVERIFY(convert(order("house.glb", "b")));
    QCOMPARE(entries().size(), 2);
}

void TestConversionCache::otherModeGivesAnotherKey()
{
    QVERIFY(kyvconvert::ConversionKey(path("house.glb"), kyvconvert::Mode::staticModel, "") !=
            kyvconvert::ConversionKey(path("house.glb"), kyvconvert::Mode::qualityFirst, ""));
}

void TestConversionCache::otherPartGivesAnotherKey()
{
    QVERIFY(kyvconvert::ConversionKey(path("house.glb"), kyvconvert::Mode::staticModel, "") !=
            kyvconvert::ConversionKey(path("house.glb"), kyvconvert::Mode::staticModel, "墙"));
}

void TestConversionCache::nameOfTheFileDoesNotMatter()
{
    QVERIFY(QFile::copy(m_folder->filePath("house.glb"), m_folder->filePath("copy.glb")));
    const auto key = kyvconvert::ConversionKey(path("house.glb"), kyvconvert::Mode::staticModel, "");
    QVERIFY(key.has_value());
    QCOMPARE(key->size(), std::size_t(64));
    QVERIFY(key == kyvconvert::ConversionKey(path("copy.glb"), kyvconvert::Mode::staticModel, ""));
}

void TestConversionCache::missingSourceHasNoKey()
{
    QVERIFY(!kyvconvert::ConversionKey(path("gone.glb"), kyvconvert::Mode::staticModel, "").has_value());
}

void TestConversionCache::sourceThatNamesOtherFilesIsNotKept()
{
    QFile file(m_folder->filePath("a.obj"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    file.close();
    QVERIFY(convert(order("a.obj", "a")));
    QVERIFY(entries().isEmpty());
}

void TestConversionCache::damagedEntryIsNoEntry()
{
    QVERIFY(convert(order("house.glb", "a")));
    QVERIFY(QFile::remove(m_folder->filePath("cache/" + entries().first() + "/model.glb")));
    QVERIFY(convert(order("house.glb", "b")));
    QVERIFY(QFile::exists(m_folder->filePath("b/model.glb")));
}

void TestConversionCache::failedConversionIsNotKept()
{
    QVERIFY(QFile::resize(m_folder->filePath("house.glb"), 300));
    QVERIFY(!convert(order("house.glb", "a")));
    QVERIFY(entries().isEmpty());
}

void TestConversionCache::whatWasNotUsedForLongestGoesFirst()
{
    QVERIFY(convert(order("house.glb", "a")));
    const kyvconvert::ConversionCache large(path("cache"), 1U << 30U);
    QVERIFY(QDir(m_folder->filePath("cache")).removeRecursively() && QDir(m_folder->path()).mkdir("cache"));
    for (const char* key : {"first", "second", "third"})
        large.keep(key, path("a"));
    const auto hour = std::chrono::hours(1);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(path("cache/first"), now - 3 * hour);
    std::filesystem::last_write_time(path("cache/second"), now - 2 * hour);
    std::filesystem::last_write_time(path("cache/third"), now - hour);
    QVERIFY(large.fetch("first", path("b")));
    std::uintmax_t size = 0;
    for (const auto* file : kyvconvert::modelFiles)
        size += std::filesystem::file_size(std::filesystem::path(path("a")) / file);
    kyvconvert::ConversionCache(path("cache"), 3 * size).keep("fourth", path("a"));
    QCOMPARE(entries(), QStringList({"first", "fourth", "third"}));
}

void TestConversionCache::modelLargerThanTheCacheIsNotKept()
{
    auto small = order("house.glb", "a");
    small.cacheLimit = 10;
    QVERIFY(convert(small));
    QVERIFY(entries().isEmpty());
    QVERIFY(QFile::exists(m_folder->filePath("a/model.glb")));
}

QTEST_GUILESS_MAIN(TestConversionCache)
#include "test_conversioncache.moc"
