// SPDX-License-Identifier: MIT
#include "kyvconvert/modelfolder.h"

#include "models.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

class TestModelFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void modelIsWrittenWithItsSurfaces();
    void factsNameTheModelAndCountWhatIsInIt();
    void factsSayWhatWasDropped();
    void factsTellTypeAndAttributesOfTheModel();
    void factsCountLinesBesideTriangles();
    void factsCountTheTrianglesOfEveryLevel();
    void factsSayWhereTheSourceHasTheModelsZero();
    void modelGetsAnotherNameAndKeepsItsOtherFacts();
    void folderWithoutAModelGetsNoName();
    void floorsAreWrittenInTheirOrder();
    void modelWithoutFloorsHasAnEmptyList();
    void nameThatIsNoTextIsMendedAndNoFailure();
    void folderAboveIsMade();
    void folderThatStandsThereIsWrittenAnew();
    void placeThatIsNoFolderIsTold();
    void nothingIsLeftOfAModelThatCannotBeWritten();
    void nothingIsLeftInAFolderThatStoodThere();

private:
    [[nodiscard]] QString folder() const { return m_folder->filePath("model"); }
    [[nodiscard]] QString write(const kyvconvert::SourceModel& source) const;
    [[nodiscard]] QJsonDocument json(const QString& file) const;
    static kyvconvert::SourceModel source();

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestModelFolder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

kyvconvert::SourceModel TestModelFolder::source()
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.floors = {{"一层", 0.0}, {"二层", 3.25}};
    source.dropped.primitives = 4;
    source.dropped.textures = 2;
    source.dropped.components = 1;
    source.dropped.names = {"门"};
    source.dropped.faces = 5;
    source.dropped.triangles = 3;
    source.dropped.kinds = {{"IMAGE", 7}};
    return source;
}

/// Gives the reason of a failure.
QString TestModelFolder::write(const kyvconvert::SourceModel& source) const
{
    return QString::fromStdString(
        kyvconvert::WriteModelFolder(source, "房子", "house.ifc", folder().toStdString()));
}

QJsonDocument TestModelFolder::json(const QString& file) const
{
    QFile source(folder() + '/' + file);
    return source.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(source.readAll()) : QJsonDocument();
}

void TestModelFolder::modelIsWrittenWithItsSurfaces()
{
    QCOMPARE(write(source()), QString());
    const auto read = gltf::ReadModel((folder() + "/model.glb").toStdString());
    QCOMPARE(ReasonOf(read), QString());
    QCOMPARE(Surfaces(std::get<gltf::Model>(read)), Surfaces(House()));
}

void TestModelFolder::factsNameTheModelAndCountWhatIsInIt()
{
    QCOMPARE(write(source()), QString());
    const auto facts = json("model.json").object();
    QCOMPARE(facts.value("name").toString(), QStringLiteral("房子"));
    QCOMPARE(facts.value("type").toString(), QStringLiteral("MODEL"));
    QCOMPARE(facts.value("source").toString(), QStringLiteral("house.ifc"));
    QCOMPARE(facts.value("triangles").toInt(), 3);
    QCOMPARE(facts.value("vertices").toInt(), 9);
    QCOMPARE(facts.value("nodes").toInt(), 6);
    QCOMPARE(facts.value("parts").toInt(), 3);
    const auto bounds = facts.value("bounds").toObject();
    QCOMPARE(bounds.value("low").toArray(), QJsonArray({0, 0, -1}));
    QCOMPARE(bounds.value("high").toArray(), QJsonArray({3, 6, 0}));
}

void TestModelFolder::factsSayWhatWasDropped()
{
    QCOMPARE(write(source()), QString());
    QCOMPARE(json("model.json").object().value("dropped").toObject(),
             (QJsonObject{{"pointsAndLines", 4},
                          {"textures", 2},
                          {"components", 1},
                          {"componentNames", QJsonArray{QStringLiteral("门")}},
                          {"faces", 5},
                          {"triangles", 3},
                          {"kinds", QJsonObject{{"IMAGE", 7}}}}));
}

void TestModelFolder::factsTellTypeAndAttributesOfTheModel()
{
    auto drawing = source();
    drawing.type = "DWG";
    drawing.attributes = {{"editor_import_source_type", "DWG"}};
    QCOMPARE(write(drawing), QString());
    const auto facts = json("model.json").object();
    QCOMPARE(facts.value("type").toString(), QStringLiteral("DWG"));
    QCOMPARE(facts.value("attributes").toObject(), (QJsonObject{{"editor_import_source_type", "DWG"}}));
}

void TestModelFolder::factsCountLinesBesideTriangles()
{
    auto drawing = source();
    AddLine(drawing.model, 2, {0, 0, 0}, {0, 0, 5});
    AddLine(drawing.model, 2, {0, 0, 0}, {0, 5, 0});
    QCOMPARE(write(drawing), QString());
    const auto facts = json("model.json").object();
    QCOMPARE(facts.value("lines").toInt(), 2);
    QCOMPARE(facts.value("triangles").toInt(), 3);
}

void TestModelFolder::factsCountTheTrianglesOfEveryLevel()
{
    auto leveled = source();
    leveled.model.coarser = {leveled.model.parts.at(0), leveled.model.parts.at(1)};
    for (auto& part : leveled.model.coarser)
        part.level = 1;
    QCOMPARE(write(leveled), QString());
    const auto facts = json("model.json").object();
    QCOMPARE(facts.value("levels").toArray(), QJsonArray({3, 2}));
    QCOMPARE(facts.value("triangles").toInt(), 3);
}

void TestModelFolder::factsSayWhereTheSourceHasTheModelsZero()
{
    auto far = source();
    far.origin = {450000, 0, -3300000.5};
    QCOMPARE(write(far), QString());
    QCOMPARE(json("model.json").object().value("origin").toArray(), QJsonArray({450000, 0, -3300000.5}));
}

void TestModelFolder::modelGetsAnotherNameAndKeepsItsOtherFacts()
{
    QCOMPARE(write(source()), QString());
    auto expected = json("model.json").object();
    QVERIFY(kyvconvert::RenameModel(folder().toStdString(), "塔", "tower.ifc"));
    expected["name"] = QStringLiteral("塔");
    expected["source"] = QStringLiteral("tower.ifc");
    QCOMPARE(json("model.json").object(), expected);
}

void TestModelFolder::folderWithoutAModelGetsNoName()
{
    QVERIFY(!kyvconvert::RenameModel(m_folder->path().toStdString(), "塔", "tower.ifc"));
    QVERIFY(!QFile::exists(m_folder->filePath("model.json")));
}

void TestModelFolder::floorsAreWrittenInTheirOrder()
{
    QCOMPARE(write(source()), QString());
    QCOMPARE(json("floors.json").array(),
             (QJsonArray{QJsonObject{{"name", QStringLiteral("一层")}, {"elevation", 0.0}},
                         QJsonObject{{"name", QStringLiteral("二层")}, {"elevation", 3.25}}}));
}

void TestModelFolder::modelWithoutFloorsHasAnEmptyList()
{
    auto flat = source();
    flat.floors.clear();
    QCOMPARE(write(flat), QString());
    QVERIFY(json("floors.json").isArray());
    QCOMPARE(json("floors.json").array().size(), 0);
}

void TestModelFolder::nameThatIsNoTextIsMendedAndNoFailure()
{
    auto broken = source();
    broken.floors.at(0).name = "\xff\xfe";
    QCOMPARE(write(broken), QString());
    QVERIFY(json("floors.json").array().at(0).toObject().value("name").isString());
}

void TestModelFolder::folderAboveIsMade()
{
    const auto deep = m_folder->filePath("a/b/c");
    QCOMPARE(kyvconvert::WriteModelFolder(source(), "房子", "house.ifc", deep.toStdString()), std::string());
    QVERIFY(QFile::exists(deep + "/model.glb"));
}

void TestModelFolder::folderThatStandsThereIsWrittenAnew()
{
    QCOMPARE(write(source()), QString());
    auto smaller = source();
    smaller.floors.resize(1);
    QCOMPARE(write(smaller), QString());
    QCOMPARE(json("floors.json").array().size(), 1);
}

void TestModelFolder::placeThatIsNoFolderIsTold()
{
    QFile file(folder());
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto reason = write(source());
    QVERIFY2(reason.contains(folder()) && reason.contains("cannot be"), qPrintable(reason));
    QVERIFY(QFileInfo(folder()).isFile());
}

void TestModelFolder::nothingIsLeftOfAModelThatCannotBeWritten()
{
    auto empty = source();
    empty.model.parts.clear();
    const auto reason = write(empty);
    QVERIFY2(reason.contains(folder()) && reason.contains("cannot be written"), qPrintable(reason));
    QVERIFY(!QFile::exists(folder()));
}

void TestModelFolder::nothingIsLeftInAFolderThatStoodThere()
{
    QVERIFY(QDir(folder()).mkpath("floors.json/inside"));
    QVERIFY(!write(source()).isEmpty());
    QCOMPARE(QDir(folder()).entryList(QDir::Files), QStringList());
    QVERIFY(QFile::exists(folder() + "/floors.json/inside"));
}

QTEST_GUILESS_MAIN(TestModelFolder)
#include "test_modelfolder.moc"
