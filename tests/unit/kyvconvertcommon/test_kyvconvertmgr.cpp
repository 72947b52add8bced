// SPDX-License-Identifier: MIT
#include "KYVConvertCommon/kyvconvertmgr.h"

#include "KYVConvertCommon/kyvconvertstate.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"
#include "filesizelimit.h"
#include "gltf/modelwriter.h"
#include "kyvconvert/archive.h"
#include "models.h"

#include <memory>

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

using KYVConvertCommon::CKYVConvertMgr;
using KYVConvertCommon::CKYVConvertState;

/// The engine as it is shipped: with the converter beside the program, and a project that takes the models
/// in.
class TestKyvConvertMgr : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void archiveBecomesAModelThatAProjectTakesIn();
    void fbxFileBecomesAModelThatSaysWhereItCameFrom();
    void modelIsNamedUpToTheFirstDot();
    void modeReachesTheModel();
    void fileThatIsNoModelFails();
    void fullDiskFails();
    void endedEngineTakesNothing();
    void engineMayBeMadeReadyAgain();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] static QString data() { return QCoreApplication::applicationDirPath() + "/data"; }
    /// Waits for the last state of a conversion; -1 when there is none.
    [[nodiscard]] int lastState(const QString& uid) const;
    [[nodiscard]] static QJsonObject facts(const QString& uid);

    QTemporaryDir m_folder;
    QString m_uid;
    std::unique_ptr<CKYVConvertMgr> m_mgr;
    std::unique_ptr<QSignalSpy> m_states;
};

void TestKyvConvertMgr::initTestCase()
{
    const auto program = QCoreApplication::applicationDirPath() + "/kyv-convert";
    QFile::remove(program);
    QVERIFY(QFile::link(TORVO_CONVERTER, program));
    kyvconvert::SourceModel source;
    source.model = House();
    source.floors = {{"一层", 0.0}, {"二层", 3.25}};
    QCOMPARE(kyvconvert::WriteArchive(source, "房子", path("房子.v2.kyv").toStdString()), std::string());
    QVERIFY(gltf::WriteModel(source.model, path("house.glb").toStdString(), "test"));
    Assimp::Importer importer;
    const auto* scene = importer.ReadFile(path("house.glb").toStdString(), aiProcess_Triangulate);
    Assimp::Exporter exporter;
    QVERIFY(scene != nullptr);
    QCOMPARE(exporter.Export(scene, "fbxa", path("house.fbx").toStdString()), AI_SUCCESS);
}

void TestKyvConvertMgr::init()
{
    QDir(data()).removeRecursively();
    m_uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_mgr = std::make_unique<CKYVConvertMgr>();
    m_states = std::make_unique<QSignalSpy>(m_mgr.get(), &CKYVConvertMgr::sigConvertKyvStateNty);
    m_mgr->Init();
}

void TestKyvConvertMgr::cleanup()
{
    m_states.reset();
    m_mgr.reset();
    ZRSmartDB::FreeIDBDirector();
}

void TestKyvConvertMgr::cleanupTestCase()
{
    QDir(data()).removeRecursively();
}

int TestKyvConvertMgr::lastState(const QString& uid) const
{
    const auto last = [&] {
        int state = -1;
        for (const auto& told : *m_states)
            state = told.at(0).toString() == uid ? told.at(2).toInt() : state;
        return state;
    };
    static_cast<void>(QTest::qWaitFor([&] { return last() >= CKYVConvertState::ConvertFinished; }, 60000));
    return last();
}

QJsonObject TestKyvConvertMgr::facts(const QString& uid)
{
    QFile file(data() + "/proj_" + uid + "/model.json");
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void TestKyvConvertMgr::archiveBecomesAModelThatAProjectTakesIn()
{
    auto* director = ZRSmartDB::GetIDBDirector();
    QVERIFY(director->SetServer(L"http://127.0.0.1:1"));
    auto* database = director->GetDatabase();
    database->SetUp(0);
    const auto bim = ZRSmartFormat::GuidFromText(L"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");
    QVERIFY(QDir().mkpath(data()));
    auto* project = database->CreateProj(bim, L"楼", L"BIM", {}, data().toStdWString());
    QVERIFY(project != nullptr);
    m_mgr->ConvertKyv(m_uid, path("房子.v2.kyv"), 1);
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFinished));
    const auto model = ZRSmartFormat::GuidFromText(m_uid.toStdWString());
    auto* store = project->GetModelStore();
    QVERIFY(store->ImportModelProj(model, data().toStdWString()));
    QVERIFY(store->HasModelProj(model));
    const auto* record = store->GetModelProj(model);
    QCOMPARE(QString::fromStdWString(record->GetName()), QString("房子"));
    QCOMPARE(QString::fromStdWString(record->GetType()), QString("MODEL"));
    QVERIFY(record->GetAttribute(L"editor_import_source_type").empty());
}

void TestKyvConvertMgr::fbxFileBecomesAModelThatSaysWhereItCameFrom()
{
    m_mgr->ConvertFBX(m_uid, path("house.fbx"));
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFinished));
    QCOMPARE(facts(m_uid).value("attributes").toObject(),
             (QJsonObject{{"editor_import_source_type", "FBX"}}));
    QVERIFY(QFile::exists(data() + "/proj_" + m_uid + "/model.glb"));
}

void TestKyvConvertMgr::modelIsNamedUpToTheFirstDot()
{
    m_mgr->ConvertKyv(m_uid, path("房子.v2.kyv"), 0);
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFinished));
    QCOMPARE(facts(m_uid).value("name").toString(), QString("房子"));
}

void TestKyvConvertMgr::modeReachesTheModel()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("has failed: .*mode"));
    m_mgr->ConvertKyv(m_uid, path("房子.v2.kyv"), 2); // there is no such mode
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFailed));
}

void TestKyvConvertMgr::fileThatIsNoModelFails()
{
    QFile file(path("no.fbx"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no model") > 0);
    file.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^the conversion of .*no\\.fbx has failed: ."));
    m_mgr->ConvertFBX(m_uid, file.fileName());
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFailed));
    QVERIFY(!QFile::exists(data() + "/proj_" + m_uid));
}

void TestKyvConvertMgr::fullDiskFails()
{
    const FileSizeLimit full(400);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("has failed: .*cannot be written"));
    m_mgr->ConvertFBX(m_uid, path("house.fbx"));
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFailed));
    QVERIFY(!QFile::exists(data() + "/proj_" + m_uid));
}

void TestKyvConvertMgr::endedEngineTakesNothing()
{
    m_mgr->UnInit();
    m_mgr->ConvertFBX(m_uid, path("house.fbx"));
    m_mgr->CancleAllConvert();
    QTest::qWait(200);
    QCOMPARE(m_states->size(), 0);
}

void TestKyvConvertMgr::engineMayBeMadeReadyAgain()
{
    m_mgr->UnInit();
    m_mgr->Init();
    m_mgr->ConvertFBX(m_uid, path("house.fbx"));
    QCOMPARE(lastState(m_uid), int(CKYVConvertState::ConvertFinished));
}

QTEST_GUILESS_MAIN(TestKyvConvertMgr)
#include "test_kyvconvertmgr.moc"
