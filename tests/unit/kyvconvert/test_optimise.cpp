// SPDX-License-Identifier: MIT
#include "kyvconvert/optimise.h"

#include "ball.h"
#include "models.h"

#include <QTest>

using kyvconvert::Mode;

/// What a model is when it is fit to be drawn.
class TestOptimise : public QObject
{
    Q_OBJECT

private slots:
    void surfacesLookAsBefore();
    void treeAndBoundsStay();
    void equalCornersAreShared();
    void cornersWithDifferentNormalsAreNotShared();
    void partsOfOneLookBecomeOne();
    void partsOfDifferentLooksStayApart();
    void everyPartHasCornersOfItsOwn();
    void triangleWithoutAreaIsLeftOutAndCounted();
    void partWithoutAreaIsLeftOut();
    void linesOfOneLookBecomeOnePart();
    void lineWithoutLengthIsLeftOutAndCounted();
    void linesStayAtEveryLevel();
    void staticModelHasOneLevel();
    void coarserLevelsBecomeSmaller_data();
    void coarserLevelsBecomeSmaller();
    void levelsStayNearTheSurface();
    void hardEdgesDoNotHoldTheSimplificationUp();
    void levelHoldsAllSurfacesOfItsNode();
    void smallComponentHasNoCoarserLevel();
    void nodeWithChildrenHasNoCoarserLevel();
    void performanceGivesWayEarlier();

private:
    [[nodiscard]] static gltf::Model optimised(gltf::Model model, Mode mode, std::size_t* dropped = nullptr);
    [[nodiscard]] static std::size_t trianglesOf(const std::vector<gltf::Part>& parts, unsigned level);
};

gltf::Model TestOptimise::optimised(gltf::Model model, Mode mode, std::size_t* dropped)
{
    kyvconvert::SourceModel source;
    source.model = std::move(model);
    kyvconvert::Optimise(source, mode);
    if (dropped != nullptr)
        *dropped = source.dropped.triangles;
    return std::move(source.model);
}

std::size_t TestOptimise::trianglesOf(const std::vector<gltf::Part>& parts, unsigned level)
{
    std::size_t count = 0;
    for (const auto& part : parts)
        count += part.level == level ? part.indexCount / 3 : 0;
    return count;
}

void TestOptimise::surfacesLookAsBefore()
{
    const auto model = optimised(House(), Mode::staticModel);
    QVERIFY(IsSound(model));
    QCOMPARE(Surfaces(model), Surfaces(House()));
}

void TestOptimise::treeAndBoundsStay()
{
    const auto model = optimised(House(), Mode::staticModel);
    QCOMPARE(PathsOf(model), PathsOf(House()));
    QCOMPARE(model.bounds.low, House().bounds.low);
    QCOMPARE(model.bounds.high, House().bounds.high);
}

void TestOptimise::equalCornersAreShared()
{
    auto house = House();
    AddTriangle(house, 2, {0, 0, 0}, 4);
    // One corner of the second triangle of the wall is a corner of the first one.
    const auto model = optimised(house, Mode::staticModel);
    QCOMPARE(house.vertices.size(), std::size_t(12));
    QCOMPARE(model.vertices.size(), std::size_t(11));
}

void TestOptimise::cornersWithDifferentNormalsAreNotShared()
{
    auto house = House();
    AddTriangle(house, 2, {0, 0, 0}, 4);
    for (std::size_t i = 9; i < 12; ++i)
        house.vertices[i].normal = {0, 0, -1};
    QCOMPARE(optimised(house, Mode::staticModel).vertices.size(), std::size_t(12));
}

void TestOptimise::partsOfOneLookBecomeOne()
{
    auto house = House();
    AddTriangle(house, 2, {5, 0, 0}, 3);
    QCOMPARE(house.parts.size(), std::size_t(4));
    QCOMPARE(optimised(house, Mode::staticModel).parts.size(), std::size_t(3));
}

void TestOptimise::partsOfDifferentLooksStayApart()
{
    auto house = House();
    AddTriangle(house, 2, {5, 0, 0}, 3, {1, 0, 0, 1});
    AddTriangle(house, 2, {5, 0, 0}, 3, {1, 0, 0, 1}, true);
    QCOMPARE(optimised(house, Mode::staticModel).parts.size(), std::size_t(5));
}

void TestOptimise::everyPartHasCornersOfItsOwn()
{
    // Two parts that share corners.
    auto ball = Ball(8);
    auto other = ball.parts.front();
    other.color = {1, 0, 0, 1};
    other.firstIndex = other.indexCount = ball.parts.front().indexCount / 2 / 3 * 3;
    ball.parts.front().indexCount = other.firstIndex;
    ball.parts.push_back(other);
    const auto model = optimised(ball, Mode::staticModel);
    QCOMPARE(model.parts.size(), std::size_t(2));
    std::vector<int> owner(model.vertices.size(), -1);
    for (std::size_t part = 0; part < model.parts.size(); ++part) {
        for (std::uint32_t i = 0; i < model.parts[part].indexCount; ++i) {
            auto& mark = owner[model.indices[model.parts[part].firstIndex + i]];
            QVERIFY(mark == -1 || mark == static_cast<int>(part));
            mark = static_cast<int>(part);
        }
    }
}

void TestOptimise::triangleWithoutAreaIsLeftOutAndCounted()
{
    auto house = House();
    AddTriangle(house, 2, {5, 0, 0}, 0);
    std::size_t dropped = 0;
    const auto model = optimised(house, Mode::staticModel, &dropped);
    QCOMPARE(dropped, std::size_t(1));
    QCOMPARE(Surfaces(model), Surfaces(House()));
}

void TestOptimise::partWithoutAreaIsLeftOut()
{
    gltf::Model flat;
    flat.nodes = {{"flat", -1}};
    AddTriangle(flat, 0, {0, 0, 0}, 0);
    QVERIFY(optimised(flat, Mode::staticModel).parts.empty());
}

void TestOptimise::linesOfOneLookBecomeOnePart()
{
    auto house = House();
    AddLine(house, 2, {0, 0, 0}, {9, 0, 0});
    AddLine(house, 2, {9, 0, 0}, {9, 9, 0});
    const auto model = optimised(house, Mode::qualityFirst);
    QVERIFY(IsSound(model));
    QCOMPARE(model.parts.size(), House().parts.size() + 1);
    const auto lines =
        std::find_if(model.parts.begin(), model.parts.end(), [](const auto& part) { return part.isLines; });
    QVERIFY(lines != model.parts.end());
    QCOMPARE(lines->indexCount, 4U);
    QCOMPARE(model.vertices[model.indices[lines->firstIndex + 3]].position, (gltf::Vector3{9, 9, 0}));
}

void TestOptimise::lineWithoutLengthIsLeftOutAndCounted()
{
    kyvconvert::SourceModel source;
    source.model = House();
    AddLine(source.model, 2, {1, 1, 1}, {1, 1, 1});
    kyvconvert::Optimise(source, Mode::staticModel);
    QCOMPARE(source.dropped.primitives, std::size_t(1));
    QCOMPARE(source.dropped.triangles, std::size_t(0));
    QCOMPARE(Surfaces(source.model), Surfaces(House()));
}

void TestOptimise::linesStayAtEveryLevel()
{
    auto ball = Ball(30);
    for (int i = 0; i < 200; ++i)
        AddLine(ball, 0, {0, 0, 0}, {1, static_cast<float>(i), 0});
    const auto model = optimised(ball, Mode::qualityFirst);
    QVERIFY(!model.coarser.empty());
    for (unsigned level = 1; level <= model.coarser.back().level; ++level) {
        std::uint32_t ends = 0;
        for (const auto& part : model.coarser)
            ends += part.isLines && part.level == level ? part.indexCount : 0;
        QCOMPARE(ends, 400U);
    }
}

void TestOptimise::staticModelHasOneLevel()
{
    const auto model = optimised(Ball(30), Mode::staticModel);
    QVERIFY(model.coarser.empty());
    // The quadrangles at the poles are triangles.
    QCOMPARE(trianglesOf(model.parts, 0), std::size_t(2 * 30 * 60 - 2 * 60));
}

void TestOptimise::coarserLevelsBecomeSmaller_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("quality first") << 1;
    QTest::newRow("performance first") << 3;
}

void TestOptimise::coarserLevelsBecomeSmaller()
{
    QFETCH(int, mode);
    const auto model = optimised(Ball(60), static_cast<Mode>(mode));
    QVERIFY(IsSound(model));
    const auto full = trianglesOf(model.parts, 0);
    const auto middle = trianglesOf(model.coarser, 1);
    const auto coarsest = trianglesOf(model.coarser, 2);
    QVERIFY(coarsest > 0);
    QVERIFY(coarsest < middle);
    QVERIFY(middle < full);
    QCOMPARE(trianglesOf(model.coarser, 3), std::size_t(0));
}

void TestOptimise::levelsStayNearTheSurface()
{
    const auto model = optimised(Ball(60), Mode::performanceFirst);
    QVERIFY(!model.coarser.empty());
    for (const auto& part : model.coarser) {
        for (std::uint32_t i = part.firstIndex; i < part.firstIndex + part.indexCount; i += 3) {
            gltf::Vector3 middle{};
            for (std::uint32_t corner = 0; corner < 3; ++corner) {
                for (std::size_t axis = 0; axis < 3; ++axis)
                    middle[axis] += model.vertices.at(model.indices.at(i + corner)).position[axis] / 3.0F;
            }
            const float distance = std::hypot(middle[0], middle[1], middle[2]);
            // A tenth of the ball's size is what the coarsest level may be off.
            QVERIFY2(distance > 0.8F && distance < 1.01F, qPrintable(QString::number(distance)));
        }
    }
}

void TestOptimise::hardEdgesDoNotHoldTheSimplificationUp()
{
    // Every triangle has corners of its own.
    const auto ball = Ball(60);
    gltf::Model hard;
    hard.nodes = ball.nodes;
    hard.parts = ball.parts;
    for (auto index : ball.indices) {
        hard.indices.push_back(static_cast<std::uint32_t>(hard.vertices.size()));
        hard.vertices.push_back(ball.vertices[index]);
        hard.vertices.back().normal[0] += 0.001F * static_cast<float>(hard.indices.size() / 3 % 7);
    }
    const auto model = optimised(hard, Mode::qualityFirst);
    QVERIFY(trianglesOf(model.coarser, 1) < trianglesOf(model.parts, 0) * 8 / 10);
}

void TestOptimise::levelHoldsAllSurfacesOfItsNode()
{
    auto ball = Ball(60);
    AddTriangle(ball, 0, {5, 0, 0}, 3);
    const auto model = optimised(ball, Mode::qualityFirst);
    for (unsigned level : {1U, 2U}) {
        std::size_t parts = 0;
        for (const auto& part : model.coarser)
            parts += part.level == level ? 1 : 0;
        QCOMPARE(parts, std::size_t(2));
    }
}

void TestOptimise::smallComponentHasNoCoarserLevel()
{
    QVERIFY(optimised(House(), Mode::performanceFirst).coarser.empty());
}

void TestOptimise::nodeWithChildrenHasNoCoarserLevel()
{
    auto ball = Ball(60);
    ball.nodes.push_back({"child", 0});
    AddTriangle(ball, 1, {0, 0, 0}, 1);
    QVERIFY(optimised(ball, Mode::qualityFirst).coarser.empty());
}

void TestOptimise::performanceGivesWayEarlier()
{
    const auto quality = optimised(Ball(60), Mode::qualityFirst);
    const auto performance = optimised(Ball(60), Mode::performanceFirst);
    QVERIFY(performance.coarser.front().coverage > quality.coarser.front().coverage);
    QVERIFY(performance.coarser.back().coverage > quality.coarser.back().coverage);
    QVERIFY(trianglesOf(performance.parts, 0) < trianglesOf(quality.parts, 0));
}

QTEST_GUILESS_MAIN(TestOptimise)
#include "test_optimise.moc"
