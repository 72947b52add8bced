// SPDX-License-Identifier: MIT
#include "ball.h"
#include "gltf/modelwriter.h"
#include "models.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// The program as those who start it see it: arguments, words, exit code.
class TestConverter : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void modelFolderAndPictureAreMade();
    void progressRisesToAHundred();
    void modelIsNamedAfterItsFileWhenNobodyNamesIt();
    void onlyTheNamedPartIsConverted();
    void unknownPartIsTold();
    void missingArgumentsAreTold();
    void missingSourceIsTold();
    void damagedSourceIsToldAndLeavesNothing();
    void folderThatCannotBeMadeIsTold();
    void folderThatHoldsSomethingIsLeftAlone();
    void emptyFolderIsFilled();
    void pictureThatCannotBeWrittenIsToldAndLeavesNothing();
    void whatAKilledConversionLeftBehindGoesWithTheNext();
    void modeMakesCoarserLevels();
    void unknownModeIsRefused();
    void sourceThatWasConvertedBeforeIsTakenFromTheCache();

    void packedModelConvertsLikeItsSource();
    void sourceThatCannotBePackedIsToldAndLeavesNothing();
    void archiveThatCannotBeMadeIsTold();

private:
    struct Run {
        int exitCode;
        QString out;
        QString error; ///< that the last line tells
    };
    [[nodiscard]] static Run run(const QStringList& arguments,
                                 const QString& program = QStringLiteral(TORVO_CONVERTER));
    [[nodiscard]] QString path(const char* name) const { return m_folder->filePath(name); }
    [[nodiscard]] QJsonObject facts() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestConverter::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(gltf::WriteModel(House(), path("house.glb").toStdString(), "test"));
}

TestConverter::Run TestConverter::run(const QStringList& arguments, const QString& program)
{
    QProcess converter;
    converter.start(program, arguments);
    if (!converter.waitForFinished(60000) || converter.exitStatus() != QProcess::NormalExit)
        return {-1, {}, converter.errorString()};
    const auto out = converter.readAllStandardOutput();
    const auto last = QJsonDocument::fromJson(out.trimmed().split('\n').last()).object();
    if (last.contains("error") && last.value("code").toInt() != converter.exitCode())
        return {-1, QString::fromUtf8(out), QStringLiteral("the told code is not the exit code")};
    return {converter.exitCode(), QString::fromUtf8(out), last.value("error").toString()};
}

QJsonObject TestConverter::facts() const
{
    QFile file(path("model/model.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void TestConverter::modelFolderAndPictureAreMade()
{
    const auto done =
        run({"--name", "房子", "--picture", path("house.jpg"), path("house.glb"), path("model")});
    QCOMPARE(done.error, QString());
    QCOMPARE(done.exitCode, 0);
    QCOMPARE(QDir(path("model")).entryList(QDir::Files),
             QStringList({"floors.json", "model.glb", "model.json"}));
    QCOMPARE(facts().value("name").toString(), QStringLiteral("房子"));
    QCOMPARE(facts().value("source").toString(), QStringLiteral("house.glb"));
    QCOMPARE(facts().value("triangles").toInt(), 3);
    QCOMPARE(QImage(path("house.jpg")).size(), QSize(930, 501));
}

void TestConverter::progressRisesToAHundred()
{
    const auto lines = run({path("house.glb"), path("model")}).out.split('\n', Qt::SkipEmptyParts);
    QVERIFY(!lines.isEmpty());
    int last = -1;
    for (const auto& line : lines) {
        const auto told = QJsonDocument::fromJson(line.toUtf8()).object();
        QCOMPARE(told.keys(), QStringList{"percent"});
        const int percent = told.value("percent").toInt(-1);
        QVERIFY(percent > last);
        last = percent;
    }
    QCOMPARE(last, 100);
}

void TestConverter::modelIsNamedAfterItsFileWhenNobodyNamesIt()
{
    QCOMPARE(run({path("house.glb"), path("model")}).exitCode, 0);
    QCOMPARE(facts().value("name").toString(), QStringLiteral("house"));
}

void TestConverter::onlyTheNamedPartIsConverted()
{
    QCOMPARE(run({"--only", "一层", path("house.glb"), path("model")}).exitCode, 0);
    QCOMPARE(facts().value("triangles").toInt(), 1);
    QCOMPARE(facts().value("nodes").toInt(), 3);
}

void TestConverter::unknownPartIsTold()
{
    const auto done = run({"--only", "三层", path("house.glb"), path("model")});
    QCOMPARE(done.exitCode, 3);
    QVERIFY(done.error.contains("no node with this name"));
    QVERIFY(!QFile::exists(path("model")));
}

void TestConverter::missingArgumentsAreTold()
{
    const auto done = run({path("house.glb")});
    QCOMPARE(done.exitCode, 2);
    QVERIFY(done.error.contains("--help"));
}

void TestConverter::missingSourceIsTold()
{
    const auto done = run({path("gone.ifc"), path("model")});
    QCOMPARE(done.exitCode, 3);
    QVERIFY2(done.error.contains(path("gone.ifc")), qPrintable(done.error));
}

void TestConverter::damagedSourceIsToldAndLeavesNothing()
{
    QFile file(path("house.glb"));
    QVERIFY(file.resize(300));
    const auto done = run({path("house.glb"), path("model")});
    QCOMPARE(done.exitCode, 3);
    QVERIFY2(done.error.startsWith("the file cannot be read: "), qPrintable(done.error));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"house.glb"});
}

void TestConverter::folderThatCannotBeMadeIsTold()
{
    const auto done = run({path("house.glb"), path("house.glb") + "/model"});
    QCOMPARE(done.exitCode, 4);
    QVERIFY2(done.error.contains(path("house.glb") + "/model"), qPrintable(done.error));
}

void TestConverter::folderThatHoldsSomethingIsLeftAlone()
{
    QVERIFY(QDir(m_folder->path()).mkpath("model/letters"));
    const auto done = run({path("house.glb"), path("model")});
    QCOMPARE(done.exitCode, 4);
    QVERIFY2(done.error.contains("is there already"), qPrintable(done.error));
    QCOMPARE(QDir(path("model")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList{"letters"});
}

void TestConverter::emptyFolderIsFilled()
{
    QVERIFY(QDir(m_folder->path()).mkdir("model"));
    QCOMPARE(run({path("house.glb"), path("model/")}).exitCode, 0);
    QVERIFY(QFile::exists(path("model/model.glb")));
}

void TestConverter::pictureThatCannotBeWrittenIsToldAndLeavesNothing()
{
    const auto done = run({"--picture", path("none/house.jpg"), path("house.glb"), path("model")});
    QCOMPARE(done.exitCode, 4);
    QVERIFY2(done.error.contains("picture"), qPrintable(done.error));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"house.glb"});
}

void TestConverter::whatAKilledConversionLeftBehindGoesWithTheNext()
{
    QVERIFY(QDir(m_folder->path()).mkpath("model.half/model/old"));
    QCOMPARE(run({path("house.glb"), path("model")}).exitCode, 0);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"house.glb", "model"}));
    QCOMPARE(QDir(path("model")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList({"floors.json", "model.glb", "model.json"}));
}

void TestConverter::modeMakesCoarserLevels()
{
    auto ball = Ball(40);
    QVERIFY(gltf::WriteModel(ball, path("ball.glb").toStdString(), "test"));
    const auto counts = [&](const char* mode) {
        if (run({"--mode", mode, path("ball.glb"), path("model")}).exitCode != 0)
            return QJsonArray();
        const auto levels = facts().value("levels").toArray();
        QDir(path("model")).removeRecursively();
        return levels;
    };
    const auto all = counts("0");
    QCOMPARE(all.size(), 1);
    const auto quality = counts("1");
    QVERIFY(quality.size() > 1);
    QCOMPARE(quality.first(), all.first());
    QVERIFY(quality.at(1).toInt() < quality.at(0).toInt());
    const auto performance = counts("3");
    QVERIFY(performance.size() > 1);
    QVERIFY(performance.first().toInt() < all.first().toInt());
    QVERIFY(performance.last().toInt() < quality.last().toInt());
}

void TestConverter::unknownModeIsRefused()
{
    QCOMPARE(run({"--mode", "2", path("house.glb"), path("model")}).exitCode, 2);
}

void TestConverter::sourceThatWasConvertedBeforeIsTakenFromTheCache()
{
    QCOMPARE(run({"--cache", path("cache"), path("house.glb"), path("model")}).exitCode, 0);
    const auto kept = QDir(path("cache")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(kept.size(), 1);
    QFile floors(path("cache") + '/' + kept.first() + "/floors.json");
    QVERIFY(floors.open(QIODevice::WriteOnly) && floors.write("[]") == 2);
    floors.close();
    const auto done = run({"--cache", path("cache"), "--name", "again", path("house.glb"), path("second")});
    QCOMPARE(done.exitCode, 0);
    QFile taken(path("second/floors.json"));
    QVERIFY(taken.open(QIODevice::ReadOnly));
    QCOMPARE(taken.readAll(), QByteArray("[]"));
}

void TestConverter::packedModelConvertsLikeItsSource()
{
    const auto packed = run({path("house.glb"), path("house.kyv")}, TORVO_PACKER);
    QCOMPARE(packed.error, QString());
    QCOMPARE(packed.exitCode, 0);
    QCOMPARE(run({path("house.kyv"), path("model")}).exitCode, 0);
    QCOMPARE(facts().value("name").toString(), QStringLiteral("house"));
    const auto read = gltf::ReadModel(path("model/model.glb").toStdString());
    QCOMPARE(ReasonOf(read), QString());
    QCOMPARE(Surfaces(std::get<gltf::Model>(read)), Surfaces(House()));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"house.glb", "house.kyv", "model"}));
}

void TestConverter::sourceThatCannotBePackedIsToldAndLeavesNothing()
{
    QVERIFY(QFile::resize(path("house.glb"), 300));
    const auto done = run({path("house.glb"), path("house.kyv")}, TORVO_PACKER);
    QCOMPARE(done.exitCode, 3);
    QVERIFY(done.error.startsWith("the file cannot be read: "));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"house.glb"});
}

void TestConverter::archiveThatCannotBeMadeIsTold()
{
    const auto done = run({path("house.glb"), path("house.glb/house.kyv")}, TORVO_PACKER);
    QCOMPARE(done.exitCode, 4);
    QVERIFY(done.error.contains("cannot be made"));
}

QTEST_GUILESS_MAIN(TestConverter)
#include "test_converter.moc"
