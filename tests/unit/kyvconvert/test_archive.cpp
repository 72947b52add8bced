// SPDX-License-Identifier: MIT
#include "kyvconvert/archive.h"

#include "archives.h"
#include "models.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

/// Model archives: what is written comes back, and what others write is read as the format says.
class TestArchive : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void modelComesBack();
    void floorsComeBack();
    void whatIsKnownOfComponentsComesBack();
    void whatWasDroppedComesBack();
    void linesComeBack();
    void originComesBack();
    void componentsWithoutIdsGetSome();
    void componentsWithOneIdAreToldApart();
    void failedArchiveLeavesNothing();

    void ballastIsIgnored();
    void severalIndicesAndPartsMakeOneModel();
    void childMayStandBeforeItsParent();
    void surfaceOfNoComponentIsAComponentOfItsOwn();
    void surfaceBelowAComponentsNodeIsTheComponents();
    void promisedSurfaceThatIsMissingIsCountedAndNamed();
    void floorThatTwoIndicesHaveIsOne();
    void progressRunsToAll();
    void whatIsNoModelArchiveIsTold_data();
    void whatIsNoModelArchiveIsTold();

private:
    [[nodiscard]] QString path(const char* name) const { return m_folder->filePath(name); }
    [[nodiscard]] kyvconvert::SourceModel read() const;
    [[nodiscard]] kyvconvert::SourceModel writtenAndRead(const kyvconvert::SourceModel& source) const;
    [[nodiscard]] QByteArray triangle(const char* node, const char* child = nullptr) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestArchive::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

kyvconvert::SourceModel TestArchive::read() const
{
    auto result = kyvconvert::ReadArchive(path("a.kyv").toStdString(), [](int) {});
    if (const auto* failure = std::get_if<kyvconvert::Failure>(&result))
        qWarning("%s", failure->reason.c_str());
    auto* source = std::get_if<kyvconvert::SourceModel>(&result);
    return source != nullptr ? std::move(*source) : kyvconvert::SourceModel();
}

kyvconvert::SourceModel TestArchive::writtenAndRead(const kyvconvert::SourceModel& source) const
{
    const auto problem = kyvconvert::WriteArchive(source, "房子", path("a.kyv").toStdString());
    if (!problem.empty())
        qWarning("%s", problem.c_str());
    return read();
}

/// A part with one triangle at a node, or at a child of it.
QByteArray TestArchive::triangle(const char* node, const char* child) const
{
    gltf::Model model;
    model.nodes = {{node, -1}};
    if (child != nullptr)
        model.nodes.push_back({child, 0});
    AddTriangle(model, child != nullptr ? 1 : 0, {0, 0, 0}, 1);
    return GeometryOf(model, m_folder->path());
}

void TestArchive::modelComesBack()
{
    kyvconvert::SourceModel source;
    source.model = House();
    const auto back = writtenAndRead(source);
    QVERIFY(IsSound(back.model));
    QCOMPARE(Surfaces(back.model), Surfaces(House()));
    QCOMPARE(PathsOf(back.model), PathsOf(House()));
    QCOMPARE(back.model.bounds.low, House().bounds.low);
    QCOMPARE(back.model.bounds.high, House().bounds.high);
}

void TestArchive::floorsComeBack()
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.floors = {{"一层", 0.0}, {"二层", 3.25}};
    QVERIFY(writtenAndRead(source).floors == source.floors);
}

void TestArchive::whatIsKnownOfComponentsComesBack()
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.model.nodes.at(2).id = "3rPX_Juz59peXXY6wDJl18";
    source.model.nodes.at(2).type = "IfcWall";
    source.model.nodes.at(2).properties = {{"Pset_WallCommon", {{"防火等级", "F90"}}}};
    const auto back = writtenAndRead(source);
    QVERIFY(back.model.nodes.at(2) == source.model.nodes.at(2));
}

void TestArchive::whatWasDroppedComesBack()
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.dropped = {4, 2, 1, {}, 5, 3, {{"IMAGE", 7}}};
    const auto back = writtenAndRead(source);
    QCOMPARE(back.dropped.primitives, std::size_t(4));
    QCOMPARE(back.dropped.textures, std::size_t(2));
    QCOMPARE(back.dropped.components, std::size_t(1));
    QCOMPARE(back.dropped.faces, std::size_t(5));
    QCOMPARE(back.dropped.triangles, std::size_t(3));
    QCOMPARE(back.dropped.kinds, source.dropped.kinds);
}

void TestArchive::linesComeBack()
{
    kyvconvert::SourceModel source;
    source.model = House();
    AddLine(source.model, 2, {0, 0, 0}, {0, 0, 5});
    const auto back = writtenAndRead(source);
    QVERIFY(IsSound(back.model));
    QCOMPARE(Surfaces(back.model), Surfaces(source.model));
}

void TestArchive::originComesBack()
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.origin = {450000, 0, -3300000};
    QVERIFY(writtenAndRead(source).origin == source.origin);
}

void TestArchive::componentsWithoutIdsGetSome()
{
    kyvconvert::SourceModel source;
    source.model = House();
    for (const auto& node : writtenAndRead(source).model.nodes)
        QVERIFY(!node.id.empty());
}

void TestArchive::componentsWithOneIdAreToldApart()
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.model.nodes.at(2).id = source.model.nodes.at(4).id = "wall";
    const auto back = writtenAndRead(source);
    QCOMPARE(Surfaces(back.model), Surfaces(House()));
    QCOMPARE(back.model.nodes.at(2).id, std::string("wall"));
    QVERIFY(back.model.nodes.at(4).id != "wall");
}

void TestArchive::failedArchiveLeavesNothing()
{
    QVERIFY(!kyvconvert::WriteArchive({}, "empty", path("a.kyv").toStdString()).empty());
    kyvconvert::SourceModel source;
    source.model = House();
    QVERIFY(!kyvconvert::WriteArchive(source, "house", path("none/a.kyv").toStdString()).empty());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void TestArchive::ballastIsIgnored()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("preview/picture.png", "no picture");
        archive.add("index.zrim",
                    R"({"format": "kyv", "version": 1, "components": [{"id": "a", "name": "A"}]})");
        archive.add("geometry.zrg", triangle("a"));
        archive.add("notes.txt", "zrim");
    }
    QCOMPARE(PathsOf(read().model), QStringList{"/A"});
}

void TestArchive::severalIndicesAndPartsMakeOneModel()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add(
            "b/2.zrim",
            R"({"format": "kyv", "version": 1, "components": [{"id": "b", "name": "B", "parent": "a"}]})");
        archive.add("a/1.zrim",
                    R"({"format": "kyv", "version": 1, "components": [{"id": "a", "name": "A"}]})");
        archive.add("b/2.zrg", triangle("b"));
        archive.add("a/1.zrg", triangle("a"));
    }
    const auto source = read();
    QCOMPARE(PathsOf(source.model), QStringList({"/A", "/A/B"}));
    QCOMPARE(source.model.parts.size(), std::size_t(2));
    QVERIFY(IsSound(source.model));
}

void TestArchive::childMayStandBeforeItsParent()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", R"({"format": "kyv", "version": 1, "components": [
            {"id": "c", "name": "C", "parent": "b"}, {"id": "b", "name": "B", "parent": "a"},
            {"id": "a", "name": "A"}]})");
        archive.add("1.zrg", triangle("c"));
    }
    QCOMPARE(PathsOf(read().model), QStringList({"/A", "/A/B", "/A/B/C"}));
}

void TestArchive::surfaceOfNoComponentIsAComponentOfItsOwn()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", R"({"format": "kyv", "version": 1})");
        archive.add("1.zrg", triangle("stranger"));
    }
    QCOMPARE(PathsOf(read().model), QStringList{"/stranger"});
}

void TestArchive::surfaceBelowAComponentsNodeIsTheComponents()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", R"({"format": "kyv", "version": 1, "components": [{"id": "a", "name": "A"}]})");
        archive.add("1.zrg", triangle("a", "handle"));
    }
    const auto source = read();
    QCOMPARE(PathsOf(source.model), QStringList{"/A"});
    QCOMPARE(source.model.parts.size(), std::size_t(1));
}

void TestArchive::promisedSurfaceThatIsMissingIsCountedAndNamed()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", R"({"format": "kyv", "version": 1, "components": [
            {"id": "a", "name": "A", "geometry": true}, {"id": "b", "name": "B", "geometry": true},
            {"id": "c", "name": "C", "geometry": false}]})");
        archive.add("1.zrg", triangle("a"));
    }
    const auto source = read();
    QCOMPARE(source.dropped.components, std::size_t(1));
    QCOMPARE(source.dropped.names, std::vector<std::string>{"B"});
}

void TestArchive::floorThatTwoIndicesHaveIsOne()
{
    const QByteArray index = R"({"format": "kyv", "version": 1, "floors": [{"name": "二层", "elevation": 3},
                                 {"name": "一层", "elevation": 0}]})";
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", index);
        archive.add("2.zrim", index);
        archive.add("1.zrg", triangle("a"));
    }
    const std::vector<kyvconvert::Floor> expected = {{"一层", 0.0}, {"二层", 3.0}};
    QVERIFY(read().floors == expected);
}

void TestArchive::progressRunsToAll()
{
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", R"({"format": "kyv", "version": 1})");
        archive.add("1.zrg", triangle("a"));
        archive.add("2.zrg", triangle("b"));
    }
    std::vector<int> percents;
    const auto result = kyvconvert::ReadArchive(path("a.kyv").toStdString(),
                                                [&](int percent) { percents.push_back(percent); });
    QVERIFY(std::holds_alternative<kyvconvert::SourceModel>(result));
    QCOMPARE(percents, std::vector<int>({50, 100}));
}

void TestArchive::whatIsNoModelArchiveIsTold_data()
{
    QTest::addColumn<QByteArray>("index");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const char* index, const char* words) {
        QTest::newRow(name) << QByteArray(index) << QString(words);
    };
    row("no JSON", "index", "index is damaged");
    row("no object", "[]", "index is damaged");
    row("another format", R"({"format": "zip", "version": 1})", "another format");
    row("a newer version", R"({"format": "kyv", "version": 2})", "another format");
    row("a component without an id", R"({"format": "kyv", "version": 1, "components": [{"name": "A"}]})",
        "index is damaged");
    row("a component with an empty id", R"({"format": "kyv", "version": 1, "components": [{"id": ""}]})",
        "one id");
    row("two components of one id",
        R"({"format": "kyv", "version": 1, "components": [{"id": "a"}, {"id": "a"}]})", "one id");
    row("a parent that is not there",
        R"({"format": "kyv", "version": 1, "components": [{"id": "a", "parent": "b"}]})", "not there");
    row("its own parent", R"({"format": "kyv", "version": 1, "components": [{"id": "a", "parent": "a"}]})",
        "circle");
    row("a circle of parents", R"({"format": "kyv", "version": 1, "components": [
        {"id": "a", "parent": "b"}, {"id": "b", "parent": "a"}]})",
        "circle");
    row("properties that are none",
        R"({"format": "kyv", "version": 1, "components": [{"id": "a", "properties": 7}]})",
        "index is damaged");
    row("a floor without a height", R"({"format": "kyv", "version": 1, "floors": [{"name": "a"}]})",
        "index is damaged");
}

void TestArchive::whatIsNoModelArchiveIsTold()
{
    QFETCH(QByteArray, index);
    QFETCH(QString, words);
    {
        ArchiveMaker archive(path("a.kyv"));
        archive.add("1.zrim", index);
        archive.add("1.zrg", triangle("a"));
    }
    const auto result = kyvconvert::ReadArchive(path("a.kyv").toStdString(), [](int) {});
    QVERIFY(std::holds_alternative<kyvconvert::Failure>(result));
    const auto reason = QString::fromStdString(std::get<kyvconvert::Failure>(result).reason);
    QVERIFY2(reason.startsWith("the file cannot be read: ") && reason.contains(words), qPrintable(reason));
}

QTEST_GUILESS_MAIN(TestArchive)
#include "test_archive.moc"
