// SPDX-License-Identifier: MIT
#include "kyvconvert/picture.h"

#include "models.h"

#include <QTest>

namespace
{

constexpr QSize size(120, 80);
constexpr std::array<float, 4> red{0.8F, 0.0F, 0.0F, 1.0F};
constexpr std::array<float, 4> blue{0.0F, 0.0F, 0.8F, 1.0F};
constexpr std::array<float, 4> blueGlass{0.0F, 0.0F, 0.8F, 0.5F};

/// A level square of this colour, four metres wide, at this height.
void AddSquare(gltf::Model& model, float height, const std::array<float, 4>& color)
{
    if (model.nodes.empty())
        model.nodes.push_back({"square", -1});
    const auto first = static_cast<std::uint32_t>(model.vertices.size());
    for (const gltf::Vector3& corner : {gltf::Vector3{-2, height, -2}, gltf::Vector3{-2, height, 2},
                                        gltf::Vector3{2, height, 2}, gltf::Vector3{2, height, -2}}) {
        model.vertices.push_back({corner, {0, 1, 0}});
        model.bounds.include(corner);
    }
    gltf::Part part;
    part.firstIndex = static_cast<std::uint32_t>(model.indices.size());
    part.indexCount = 6;
    part.color = color;
    for (std::uint32_t corner : {0U, 1U, 2U, 0U, 2U, 3U})
        model.indices.push_back(first + corner);
    model.parts.push_back(part);
}

QImage Draw(const gltf::Model& model)
{
    const gltf::Model* models[] = {&model};
    return kyvconvert::DrawPicture(models, size);
}

QColor Middle(const QImage& picture)
{
    return picture.pixelColor(picture.width() / 2, picture.height() / 2);
}

/// The pixels that differ from a picture of nothing.
QRect DrawnArea(const QImage& picture)
{
    const auto ground = kyvconvert::DrawPicture({}, size);
    QRect area;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != ground.pixel(x, y))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

} // namespace

class TestPicture : public QObject
{
    Q_OBJECT

private slots:
    void pictureHasTheSizeAskedFor();
    void nothingIsTheGreyOfTheCards();
    void surfaceHasItsColor();
    void lineHasItsColorWhateverTheLight();
    void modelFillsThePictureUpToABorder();
    void modelStandsInTheMiddleWhereverItLies();
    void surfaceAboveHidesTheOneBelow();
    void glassLetsThroughWhatIsBehindIt();
    void severalModelsAreDrawnTogether();
    void surfaceIsSeenFromBothSides();
    void surfaceTowardsTheSunIsBrighter();
    void sameModelGivesTheSamePicture();
};

void TestPicture::pictureHasTheSizeAskedFor()
{
    QCOMPARE(Draw(House()).size(), size);
}

void TestPicture::nothingIsTheGreyOfTheCards()
{
    const auto picture = kyvconvert::DrawPicture({}, size);
    QCOMPARE(picture.pixelColor(0, 0), QColor(70, 70, 75));
    QCOMPARE(picture.pixelColor(0, 0), picture.pixelColor(119, 0));
    QVERIFY(picture.pixelColor(0, 79).lightness() < picture.pixelColor(0, 0).lightness());
}

void TestPicture::surfaceHasItsColor()
{
    gltf::Model model;
    AddSquare(model, 0, red);
    const auto color = Middle(Draw(model));
    QVERIFY2(color.red() > 200 && color.green() < 10 && color.blue() < 10, qPrintable(color.name()));
}

void TestPicture::lineHasItsColorWhateverTheLight()
{
    gltf::Model drawing;
    drawing.nodes = {{"drawing", -1}};
    AddLine(drawing, 0, {0, -1, 0}, {0, 1, 0});
    const auto picture = Draw(drawing);
    // It may share its pixels with the ground beside it.
    const auto color = Middle(picture);
    QVERIFY2(color.red() > 150 && color.green() < 40 && color.blue() < 40, qPrintable(color.name()));
    QVERIFY(DrawnArea(picture).width() <= 2);
}

void TestPicture::modelFillsThePictureUpToABorder()
{
    gltf::Model model;
    AddSquare(model, 0, red);
    const auto area = DrawnArea(Draw(model));
    // The square is wider than high: its width decides. 8 % of the picture stay free at each side.
    QVERIFY2(qAbs(area.left() - 10) <= 1 && qAbs(area.right() - 109) <= 1, "left and right");
    QVERIFY2(area.top() > 6 && area.bottom() < 73, "top and bottom");
}

void TestPicture::modelStandsInTheMiddleWhereverItLies()
{
    gltf::Model here;
    AddSquare(here, 0, red);
    auto there = here;
    for (auto& vertex : there.vertices)
        vertex.position = {vertex.position[0] + 512, vertex.position[1] - 64, vertex.position[2] + 256};
    const auto area = DrawnArea(Draw(there));
    const auto expected = DrawnArea(Draw(here));
    QVERIFY(qAbs(area.left() - expected.left()) <= 1 && qAbs(area.right() - expected.right()) <= 1);
    QVERIFY(qAbs(area.top() - expected.top()) <= 1 && qAbs(area.bottom() - expected.bottom()) <= 1);
}

void TestPicture::surfaceAboveHidesTheOneBelow()
{
    gltf::Model upperFirst;
    AddSquare(upperFirst, 1, red);
    AddSquare(upperFirst, 0.5F, blue);
    gltf::Model lowerFirst;
    AddSquare(lowerFirst, 0.5F, blue);
    AddSquare(lowerFirst, 1, red);
    for (const auto* model : {&upperFirst, &lowerFirst}) {
        const auto color = Middle(Draw(*model));
        QVERIFY2(color.red() > 200 && color.blue() < 10, qPrintable(color.name()));
    }
}

void TestPicture::glassLetsThroughWhatIsBehindIt()
{
    gltf::Model model;
    AddSquare(model, 1, blueGlass);
    AddSquare(model, 0.5F, red);
    const auto color = Middle(Draw(model));
    QVERIFY2(color.red() > 80 && color.blue() > 80, qPrintable(color.name()));
}

void TestPicture::severalModelsAreDrawnTogether()
{
    gltf::Model left;
    AddSquare(left, 0, red);
    auto right = left;
    for (auto& vertex : right.vertices)
        vertex.position[0] += 20;
    right.parts.front().color = blue;
    const gltf::Model* models[] = {&left, &right};
    const auto picture = kyvconvert::DrawPicture(models, size);
    int reds = 0;
    int blues = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const auto color = picture.pixelColor(x, y);
            reds += color.red() > 200 && color.blue() < 10 ? 1 : 0;
            blues += color.blue() > 200 && color.red() < 10 ? 1 : 0;
        }
    }
    QVERIFY(reds > 50 && blues > 50);
}

void TestPicture::surfaceIsSeenFromBothSides()
{
    gltf::Model front;
    AddSquare(front, 0, red);
    auto back = front;
    for (std::size_t i = 0; i < back.indices.size(); i += 3)
        std::swap(back.indices[i], back.indices[i + 1]);
    for (auto& vertex : back.vertices)
        vertex.normal = {0, -1, 0};
    QCOMPARE(Draw(back), Draw(front));
}

void TestPicture::surfaceTowardsTheSunIsBrighter()
{
    gltf::Model roof;
    AddSquare(roof, 0, red);
    auto wall = roof;
    for (auto& vertex : wall.vertices)
        vertex.normal = {0, 0, 1};
    QVERIFY(Middle(Draw(roof)).red() > Middle(Draw(wall)).red());
}

void TestPicture::sameModelGivesTheSamePicture()
{
    QCOMPARE(Draw(House()), Draw(House()));
}

QTEST_GUILESS_MAIN(TestPicture)
#include "test_picture.moc"
