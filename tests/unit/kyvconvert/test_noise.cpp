// SPDX-License-Identifier: MIT
#include "archives.h"
#include "ball.h"
#include "building.h"
#include "faultplan.h"
#include "gltf/modelwriter.h"
#include "kyvconvert/archive.h"
#include "models.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>

namespace
{

void WriteFile(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the test cannot write %s", qPrintable(name));
}

} // namespace

/// Sources that are damaged at drawn places. Whatever comes of them, it is a sound model or a reason, and
/// nothing is left behind. TORVO_FAULTS says how many, TORVO_SEED repeats a run. Told is how they have ended:
/// a crash of the reader is an honest end, since it is the child's.
class TestNoise : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void damagedSourceIsAModelOrAReason_data();
    void damagedSourceIsAModelOrAReason();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] static QByteArray damaged(QByteArray bytes, FaultPlan& plan, QString& how);
    [[nodiscard]] QString findings(const QString& folder, const QString& source);
    void tellEnds() const;
    void exportAs(const char* format, const QString& name) const;
    void unpackTheArchive();
    void writeArchiveWith(const QByteArray& entry, const QByteArray& bytes, const QString& target) const;

    QTemporaryDir m_folder;
    QMap<QByteArray, QByteArray> m_entries; ///< of the sound archive, by name
    QMap<int, int> m_ends;                  ///< how often the converter has ended with an exit code
};

void TestNoise::exportAs(const char* format, const QString& name) const
{
    Assimp::Importer importer;
    const auto* scene = importer.ReadFile(path("house.glb").toStdString(), aiProcess_Triangulate);
    Assimp::Exporter exporter;
    if (scene == nullptr || exporter.Export(scene, format, path(name).toStdString()) != AI_SUCCESS)
        qFatal("the test cannot write %s: %s", qPrintable(name), exporter.GetErrorString());
}

void TestNoise::unpackTheArchive()
{
    auto* archive = zip_open(path("house.kyv").toUtf8().constData(), ZIP_RDONLY, nullptr);
    for (zip_int64_t i = 0; archive != nullptr && i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t facts;
        zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &facts);
        QByteArray bytes(static_cast<int>(facts.size), '\0');
        auto* entry = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
        if (zip_fread(entry, bytes.data(), facts.size) != static_cast<zip_int64_t>(facts.size))
            qFatal("the test cannot read its archive");
        zip_fclose(entry);
        m_entries.insert(facts.name, bytes);
    }
    zip_discard(archive);
}

/// The checksums are right: what is damaged has to be found by whoever reads it.
void TestNoise::writeArchiveWith(const QByteArray& entry, const QByteArray& bytes,
                                 const QString& target) const
{
    ArchiveMaker archive(target);
    for (auto each = m_entries.begin(); each != m_entries.end(); ++each)
        archive.add(each.key(), each.key() == entry ? bytes : each.value());
}

void TestNoise::initTestCase()
{
    QVERIFY(gltf::WriteModel(House(), path("house.glb").toStdString(), "test"));
    kyvconvert::SourceModel source;
    source.model = House();
    source.floors = {{"一层", 0.0}, {"二层", 3.25}};
    QCOMPARE(kyvconvert::WriteArchive(source, "房子", path("house.kyv").toStdString()), std::string());
    unpackTheArchive();
    QCOMPARE(m_entries.size(), 2);
    // No exporter at hand writes binary FBX that can be read again.
    QFile::copy(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                    "/torvo/sources/spider.fbx",
                path("spider.fbx"));
    exportAs("fbxa", "text.fbx");
    exportAs("obj", "house.obj");
    QProcess writer;
    writer.start("node", {TORVO_WRITE_DRAWINGS, TORVO_ROOT, m_folder.path()});
    QVERIFY(writer.waitForFinished(240000) && writer.exitCode() == 0);
    WriteFile(path("house.ifc"), building);
}

/// Bytes changed, lost, doubled, or all that follows cut off.
QByteArray TestNoise::damaged(QByteArray bytes, FaultPlan& plan, QString& how)
{
    const auto place = [&] { return static_cast<int>(plan.below(static_cast<std::uint64_t>(bytes.size()))); };
    const auto length = [&] { return static_cast<int>(1 + plan.below(64)); };
    const auto wounds = 1 + plan.below(4);
    for (std::uint64_t i = 0; i < wounds && !bytes.isEmpty(); ++i) {
        const int at = place();
        switch (plan.below(5)) {
        case 0:
            bytes[at] = static_cast<char>(plan.below(256));
            how += QStringLiteral(" byte %1").arg(at);
            break;
        case 1:
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << plan.below(8)));
            how += QStringLiteral(" bit %1").arg(at);
            break;
        case 2:
            bytes.remove(at, length());
            how += QStringLiteral(" lost %1").arg(at);
            break;
        case 3:
            bytes.insert(place(), bytes.mid(at, length()));
            how += QStringLiteral(" doubled %1").arg(at);
            break;
        default:
            bytes.truncate(at);
            how += QStringLiteral(" cut at %1").arg(at);
        }
    }
    return bytes;
}

/// What is wrong with what a conversion came to; empty when nothing is.
QString TestNoise::findings(const QString& folder, const QString& source)
{
    QProcess converter;
    converter.start(QStringLiteral(TORVO_CONVERTER),
                    {"--time", "60", "--memory", "2000", "--mode", "1", source, folder + "/model"});
    if (!converter.waitForFinished(100000) || converter.exitStatus() != QProcess::NormalExit)
        return "the converter itself has died";
    ++m_ends[converter.exitCode()];
    const auto lines = converter.readAllStandardOutput().trimmed().split('\n');
    const auto last = QJsonDocument::fromJson(lines.last()).object();
    const QDir left(folder);
    if (converter.exitCode() == 0) {
        if (left.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size() != 2)
            return "more is left than the model";
        const auto read = gltf::ReadModel((folder + "/model/model.glb").toStdString());
        if (!ReasonOf(read).isEmpty())
            return "the model cannot be read: " + ReasonOf(read);
        return IsSound(std::get<gltf::Model>(read)) ? QString() : "the model is not sound";
    }
    if (converter.exitCode() < 3 || converter.exitCode() > 7)
        return QStringLiteral("exit code %1").arg(converter.exitCode());
    if (last.value("error").toString().isEmpty() || last.value("code").toInt() != converter.exitCode())
        return "no reason: " + QString::fromUtf8(lines.last());
    if (left.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size() != 1)
        return "something is left: " + left.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).join(' ');
    return {};
}

void TestNoise::tellEnds() const
{
    const QMap<int, const char*> names{{0, "models"},  {3, "refused"},       {4, "not written"},
                                       {5, "crashed"}, {6, "out of memory"}, {7, "out of time"}};
    QStringList told;
    for (auto end = m_ends.begin(); end != m_ends.end(); ++end)
        told << QStringLiteral("%1 %2").arg(end.value()).arg(names.value(end.key(), "of another kind"));
    qInfo("%s", qPrintable(told.join(", ")));
}

void TestNoise::damagedSourceIsAModelOrAReason_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<int>("share");
    QTest::newRow("archive") << "house.kyv" << QByteArray() << 50;
    QTest::newRow("index in an archive") << "house.kyv" << QByteArray("index.zrim") << 20;
    QTest::newRow("surfaces in an archive") << "house.kyv" << QByteArray("geometry.zrg") << 20;
    QTest::newRow("binary glTF") << "house.glb" << QByteArray() << 50;
    QTest::newRow("binary FBX") << "spider.fbx" << QByteArray() << 50;
    QTest::newRow("FBX as text") << "text.fbx" << QByteArray() << 20;
    QTest::newRow("OBJ") << "house.obj" << QByteArray() << 20;
    // Each of them starts a program that takes a second to start.
    QTest::newRow("IFC") << "house.ifc" << QByteArray() << 15;
    QTest::newRow("DWG of R14") << "plan-AC1014.dwg" << QByteArray() << 6;
    QTest::newRow("DWG of 2004") << "plan-AC1018.dwg" << QByteArray() << 6;
    QTest::newRow("DWG of 2007") << "plan-AC1021.dwg" << QByteArray() << 6;
    QTest::newRow("DWG of 2018") << "plan-AC1032.dwg" << QByteArray() << 6;
}

void TestNoise::damagedSourceIsAModelOrAReason()
{
    QFETCH(QString, source);
    QFETCH(QByteArray, entry);
    QFETCH(int, share);
    if (!QFile::exists(path(source)))
        QSKIP("samples/fetch has not fetched this model yet");
    QFile file(path(source));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto whole = entry.isEmpty() ? file.readAll() : m_entries.value(entry);
    QVERIFY(!whole.isEmpty());
    {
        const QTemporaryDir folder;
        QVERIFY(QFile::copy(path(source), folder.filePath(source)));
        QCOMPARE(findings(folder.path(), folder.filePath(source)), QString());
        QVERIFY2(QFile::exists(folder.filePath("model/model.glb")), "the whole source is a model");
    }
    m_ends.clear();
    FaultPlan plan(share);
    for (int number = 0; number < plan.count(); ++number) {
        const QTemporaryDir folder;
        QString how;
        const auto bytes = damaged(whole, plan, how);
        const auto target = folder.filePath(source);
        if (entry.isEmpty())
            WriteFile(target, bytes);
        else
            writeArchiveWith(entry, bytes, target);
        const auto found = findings(folder.path(), target);
        QVERIFY2(found.isEmpty(), plan.told(number, how.toStdString(), found.toStdString()).c_str());
    }
    tellEnds();
}

QTEST_GUILESS_MAIN(TestNoise)
#include "test_noise.moc"
