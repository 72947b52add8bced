// SPDX-License-Identifier: MIT
#include "EditorCommon/kyvapi.h"
#include "ball.h"
#include "kyvconvert/archive.h"
#include "realserver.h"
#include "smartdb/data/projectfile.h"

#include <memory>

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using EditorCommon::KYVApi;

namespace
{

const QString guid = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");
constexpr int patience = 60000;
constexpr qint64 portion = 4 << 20;

} // namespace

/// The client's calls and the real server with its workers: that both mean the same.
class TestKyvRoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_server.reset(); }

    void archiveOfSeveralPortionsBecomesAModel();
    void archiveOfAServerThatWasRestartedIsSentFurther();
    void newModelTakesThePlaceOfTheOldOne();
    void failedJobIsListedUntilItIsDeleted();
    void jobOfAnUnknownModelIsRefused();

private:
    [[nodiscard]] QString archive(const char* name, std::uint32_t rings) const;
    [[nodiscard]] static QJsonObject job(const QString& path, const QString& md5, const QString& name);
    /// Sends an archive and registers a job for it, as a static model; the result is the job's id.
    [[nodiscard]] static QString order(const QString& file, const QString& task,
                                       const QString& oldModel = {});
    [[nodiscard]] static QJsonArray models();
    [[nodiscard]] static QJsonArray failures();
    [[nodiscard]] static QJsonArray jobs();

    QTemporaryDir m_folder;
    std::unique_ptr<RealServer> m_server;
};

void TestKyvRoad::initTestCase()
{
    m_server = std::make_unique<RealServer>(TORVO_SERVER, QStringList{"--workers", "1"});
    ZRSmartDB::ProjectHead head;
    head.guid = guid.toStdString();
    head.name = "n";
    head.type = "BIM";
    const auto project = ZRSmartDB::ProjectFolder(m_folder.path().toStdString(), head.guid);
    ZRSmartDB::ProjectFile::create(project, head);
    m_server->publish(head.guid, "BIM", project);
    KYVApi::init(QString::fromStdString(m_server->address()), QString::fromStdString(m_server->token()));
}

QString TestKyvRoad::archive(const char* name, std::uint32_t rings) const
{
    kyvconvert::SourceModel source;
    source.model = Ball(rings);
    const auto file = m_folder.filePath(name);
    const auto problem = kyvconvert::WriteArchive(source, name, file.toStdString());
    if (!problem.empty())
        qFatal("the test cannot make an archive: %s", problem.c_str());
    return file;
}

QJsonObject TestKyvRoad::job(const QString& path, const QString& md5, const QString& name)
{
    return {{"projectId", guid}, {"path", path}, {"name", name},  {"md5", md5},
            {"oldModelId", ""},  {"status", 6},  {"origin", "1"}, {"type", "2"}};
}

QString TestKyvRoad::order(const QString& file, const QString& task, const QString& oldModel)
{
    const auto path = guid + '/' + task + "/a.kyv";
    QString md5;
    QString id;
    auto wish = KYVApi::uploadKyv(file, guid, path, md5) ? job(path, md5, task) : QJsonObject();
    wish["oldModelId"] = oldModel;
    return KYVApi::kyvSave(wish, id) ? id : QString();
}

QJsonArray TestKyvRoad::models()
{
    QJsonArray models;
    return KYVApi::getKyvInfoByBimProj(guid, models) ? models : QJsonArray();
}

QJsonArray TestKyvRoad::failures()
{
    QJsonArray failures;
    return KYVApi::getConvertFailedList(guid, failures) ? failures : QJsonArray();
}

QJsonArray TestKyvRoad::jobs()
{
    QJsonArray jobs;
    return KYVApi::getConvertKyvInfoBimProj(guid, jobs) ? jobs : QJsonArray{"no answer"};
}

void TestKyvRoad::archiveOfSeveralPortionsBecomesAModel()
{
    const auto file = archive("large.kyv", 400);
    QVERIFY2(QFile(file).size() > portion, qPrintable(QString::number(QFile(file).size())));
    const auto id = order(file, "large");
    QVERIFY(!id.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(models().size(), 1, patience);
    QCOMPARE(models().first().toObject().value("name").toString(), QStringLiteral("large"));
    QCOMPARE(jobs(), QJsonArray());
    double percent = -1;
    QVERIFY(KYVApi::getKyvConvertProcess(id, percent));
    QCOMPARE(percent, 0.0);
}

void TestKyvRoad::archiveOfAServerThatWasRestartedIsSentFurther()
{
    const auto file = archive("again.kyv", 20);
    const auto path = guid + "/again/a.kyv";
    QString md5;
    QVERIFY(KYVApi::uploadKyv(file, guid, path, md5));
    m_server->kill();
    m_server->start();
    QString again;
    QVERIFY(KYVApi::uploadKyv(file, guid, path, again));
    QCOMPARE(again, md5);
    const auto before = models().size();
    QString id;
    QVERIFY(KYVApi::kyvSave(job(path, md5, "again"), id));
    QTRY_COMPARE_WITH_TIMEOUT(models().size(), before + 1, patience);
}

void TestKyvRoad::newModelTakesThePlaceOfTheOldOne()
{
    const auto before = models();
    QVERIFY(!before.isEmpty());
    const auto old = before.first().toObject().value("id").toString();
    QVERIFY(!order(archive("new.kyv", 20), "new", old).isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(models().last().toObject().value("name").toString(), QStringLiteral("new"),
                              patience);
    QCOMPARE(models().size(), before.size());
    for (const auto& model : models())
        QVERIFY(model.toObject().value("id").toString() != old);
}

void TestKyvRoad::failedJobIsListedUntilItIsDeleted()
{
    QFile file(m_folder.filePath("broken.kyv"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no archive") > 0);
    file.close();
    const auto id = order(file.fileName(), "broken");
    QVERIFY(!id.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(failures().size(), 1, patience);
    QCOMPARE(failures().first().toObject().value("id").toString(), id);
    QCOMPARE(jobs().size(), 1);
    QVERIFY(KYVApi::delKyvConvert(id));
    QCOMPARE(jobs(), QJsonArray());
    QCOMPARE(failures().size(), 1);
}

void TestKyvRoad::jobOfAnUnknownModelIsRefused()
{
    QVERIFY(order(archive("other.kyv", 20), "other", "unknown").isEmpty());
    QCOMPARE(jobs(), QJsonArray());
}

QTEST_GUILESS_MAIN(TestKyvRoad)
#include "test_kyvroad.moc"
