// SPDX-License-Identifier: MIT
#include "ball.h"
#include "building.h"
#include "gltf/modelwriter.h"
#include "models.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

/// Every model that the converter writes keeps the rules of its format, which somebody else judges.
class TestValidity : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void validatorFindsWhatIsWrong();
    void convertedModelIsValid_data();
    void convertedModelIsValid();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] static QString findings(const QString& file);

    QTemporaryDir m_folder;
};

void TestValidity::initTestCase()
{
    QVERIFY(gltf::WriteModel(House(), path("house.glb").toStdString(), "test"));
    QVERIFY(gltf::WriteModel(Ball(60), path("ball.glb").toStdString(), "test"));
    QFile file(path("building.ifc"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(building) == building.size());
    QProcess writer;
    writer.start("node", {TORVO_WRITE_DRAWINGS, TORVO_ROOT, m_folder.path()});
    QVERIFY(writer.waitForFinished(240000) && writer.exitCode() == 0);
}

QString TestValidity::findings(const QString& file)
{
    QProcess validator;
    validator.start("node", {QStringLiteral(TORVO_VALIDATE), QStringLiteral(TORVO_ROOT), file});
    if (!validator.waitForFinished(60000) || validator.exitCode() != 0)
        return "the validator has failed: " + QString::fromUtf8(validator.readAllStandardError());
    return QString::fromUtf8(validator.readAllStandardOutput()).trimmed();
}

void TestValidity::validatorFindsWhatIsWrong()
{
    QFile good(path("house.glb"));
    QVERIFY(good.open(QIODevice::ReadOnly));
    QFile bad(path("bad.glb"));
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write(good.readAll().replace("\"byteStride\":12", "\"byteStride\":13"));
    bad.close();
    QVERIFY(!findings(path("bad.glb")).startsWith("0 errors"));
    QCOMPARE(findings(path("house.glb")), QStringLiteral("0 errors, 3 triangles, 3 primitives"));
}

void TestValidity::convertedModelIsValid_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("mode");
    const auto fetched =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/torvo/sources/";
    const QStringList sources = {path("house.glb"),
                                 path("ball.glb"),
                                 path("building.ifc"),
                                 path("plan-AC1014.dwg"),
                                 path("plan-AC1018.dwg"),
                                 path("plan-AC1032.dwg"),
                                 path("kind-hatchWithHole.dwg"),
                                 path("nested.dwg"),
                                 path("far.dwg"),
                                 fetched + "AC14-FZK-Haus.ifc",
                                 fetched + "2CylinderEngine.glb",
                                 fetched + "CesiumMilkTruck.gltf",
                                 fetched + "spider.fbx"};
    for (const auto& source : sources) {
        for (const char* mode : {"0", "1", "3"})
            QTest::addRow("%s, mode %s", qPrintable(QFileInfo(source).fileName()), mode) << source << mode;
    }
}

void TestValidity::convertedModelIsValid()
{
    QFETCH(QString, source);
    QFETCH(QString, mode);
    if (!QFile::exists(source))
        QSKIP("samples/fetch has not fetched this model yet");
    const QTemporaryDir target;
    QProcess converter;
    converter.start(QStringLiteral(TORVO_CONVERTER), {"--mode", mode, source, target.filePath("model")});
    QVERIFY(converter.waitForFinished(100000));
    QVERIFY2(converter.exitCode() == 0, converter.readAllStandardOutput().constData());
    const auto found = findings(target.filePath("model/model.glb"));
    QVERIFY2(found.startsWith("0 errors, ") && !found.endsWith(" 0 primitives"), qPrintable(found));
}

QTEST_GUILESS_MAIN(TestValidity)
#include "test_validity.moc"
