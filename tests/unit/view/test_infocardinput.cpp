// SPDX-License-Identifier: MIT

/// What the info card makes of files and texts that are not as they should be.

#include "folderdialog.h"
#include "startedview.h"

#include "view/context/editorcontrol/infocardcontroller.h"
#include "view/context/editorcontrol/projectinfo.h"

#include <QTemporaryDir>

using namespace TorvoEditor;

namespace
{

const QString nameLabel = QStringLiteral("工程名称");
const QString templateLabel = QStringLiteral("属性模板");

QString ExpandPath()
{
    return QCoreApplication::applicationDirPath() + "/ProjectExpandAttr.json";
}

bool Write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

CInfoCardController& Controller()
{
    return *CHomeApp::instance().GetMgr<CInfoCardController>();
}

} // namespace

class TestInfoCardInput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void templateFileIsTakenAsItIs_data();
    void templateFileIsTakenAsItIs();
    void templateFileThatCannotBeReadIsEmpty_data();
    void templateFileThatCannotBeReadIsEmpty();
    void templateOfFiftyMegabytesIsReadWhole();
    void templateThatIsNoJsonIsNotExported();
    void exportOverAFolderOfTheTemplatesNameLeavesIt();
    void exportToAFolderWithoutPermissionWritesNothing();
    void nameReachesTheProjectAsItWasTyped_data();
    void nameReachesTheProjectAsItWasTyped();
    void coordinatesOfTheServerAreKeptAsText_data();
    void coordinatesOfTheServerAreKeptAsText();
    void missingFileOfAdditionalRowsIsSilent();
    void brokenFileOfAdditionalRowsWarns_data();
    void brokenFileOfAdditionalRowsWarns();
    void fileOfAdditionalRowsMayHaveAnyShape_data();
    void fileOfAdditionalRowsMayHaveAnyShape();

private:
    CProjectInfo& info() { return *m_view->published<CProjectInfo>("proInfoModel"); }
    /// Shows a scene of this machine, whose template is "{}".
    void showScene();

    std::unique_ptr<StartedView> m_view;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestInfoCardInput::init()
{
    m_view = std::make_unique<StartedView>();
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestInfoCardInput::cleanup()
{
    m_view.reset();
    m_folder.reset();
    QFile::remove(ExpandPath());
    QDir(ExpandPath()).removeRecursively();
    QDir(QCoreApplication::applicationDirPath() + "/projImage").removeRecursively();
}

void TestInfoCardInput::showScene()
{
    StartedView::addLocal("a", "CIM").project->SetTemplate(L"{}");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    Controller().showProjectInfo("a");
    QCOMPARE(info().templateContent(), QString("{}"));
}

void TestInfoCardInput::templateFileIsTakenAsItIs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no json");
    QTest::newRow("cut off") << QByteArray(R"({"a": )");
    QTest::newRow("list") << QByteArray("[1, 2]");
    QTest::newRow("blanks") << QByteArray(" \n\t ");
    QTest::newRow("signs") << QByteArray(R"({"构件": "🏗️"})");
}

void TestInfoCardInput::templateFileIsTakenAsItIs()
{
    QFETCH(QByteArray, bytes);
    showScene();
    const QString path = m_folder->filePath("t.json");
    QVERIFY(Write(path, bytes));
    info().setJsonData(templateLabel, path, true);
    QCOMPARE(info().templateContent(), QString::fromUtf8(bytes));
}

void TestInfoCardInput::templateFileThatCannotBeReadIsEmpty_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "/nowhere/t.json";
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("no name") << "";
    QTest::newRow("very long name") << "/" + QString(5000, 'a');
}

void TestInfoCardInput::templateFileThatCannotBeReadIsEmpty()
{
    QFETCH(QString, path);
    showScene();
    info().setJsonData(templateLabel, path, true);
    QCOMPARE(info().templateContent(), QString());
    QCOMPARE(info().record().templateName, path);
}

void TestInfoCardInput::templateOfFiftyMegabytesIsReadWhole()
{
    showScene();
    const QString path = m_folder->filePath("t.json");
    const QByteArray bytes = "{\"a\": \"" + QByteArray(50 * 1024 * 1024, 'x') + "\"}";
    QVERIFY(Write(path, bytes));
    info().setJsonData(templateLabel, path, true);
    QCOMPARE(info().templateContent().size(), bytes.size());
    QVERIFY(info().templateContent().endsWith("x\"}"));
}

void TestInfoCardInput::templateThatIsNoJsonIsNotExported()
{
    showScene();
    const QString path = m_folder->filePath("t.json");
    QVERIFY(Write(path, "no json"));
    info().setJsonData(templateLabel, path, true);
    bool wasAsked = false;
    QTimer::singleShot(0, this, [&] { wasAsked = QApplication::activeModalWidget() != nullptr; });
    info().exportConfigFile();
    QCoreApplication::processEvents();
    QVERIFY(!wasAsked);
}

void TestInfoCardInput::exportOverAFolderOfTheTemplatesNameLeavesIt()
{
    showScene();
    QVERIFY(QDir(m_folder->path()).mkpath("CompTemplate.json/inner"));
    bool wasAsked = false;
    AnswerFolderDialog(m_folder->path(), wasAsked);
    info().exportConfigFile();
    QVERIFY(wasAsked);
    QVERIFY(QFileInfo(m_folder->filePath("CompTemplate.json/inner")).isDir());
}

void TestInfoCardInput::exportToAFolderWithoutPermissionWritesNothing()
{
    // Nobody may write there, whatever the account.
    const QString folder = "/proc";
    showScene();
    bool wasAsked = false;
    AnswerFolderDialog(folder, wasAsked);
    info().exportConfigFile();
    QVERIFY(wasAsked);
    QVERIFY(!QFile::exists(folder + "/CompTemplate.json"));
    QCOMPARE(info().templateContent(), QString("{}"));
}

void TestInfoCardInput::nameReachesTheProjectAsItWasTyped_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing") << "";
    QTest::newRow("blanks") << "   ";
    QTest::newRow("10,000 signs") << QString(10000, QChar(0x957f));
    QTest::newRow("line breaks") << "一\n二\r\n三";
    QTest::newRow("emoji") << QString::fromUtf8("🏗️ 一期 👷");
    QTest::newRow("markup") << "<b>x</b> & \"y\"";
    QTest::newRow("path") << "../../a/b";
}

void TestInfoCardInput::nameReachesTheProjectAsItWasTyped()
{
    QFETCH(QString, name);
    showScene();
    info().setJsonData(nameLabel, name);
    QCOMPARE(info().projInfo().at(0).toObject().value("value").toString(), name);
    StartedView::control().slotProjectInfoUpdate();
    QCOMPARE(QString::fromStdWString(Fakes::SmartDB::instance().find("a")->project->GetName()), name);
}

void TestInfoCardInput::coordinatesOfTheServerAreKeptAsText_data()
{
    QTest::addColumn<QString>("longitude");
    QTest::newRow("nothing") << "";
    QTest::newRow("words") << "east";
    QTest::newRow("no number") << "nan";
    QTest::newRow("beyond the earth") << "1e400";
    QTest::newRow("comma") << "121,5";
}

void TestInfoCardInput::coordinatesOfTheServerAreKeptAsText()
{
    QFETCH(QString, longitude);
    m_view->addOnServer("s", 0).longitude = longitude.toStdWString();
    QVERIFY(m_view->start());
    Controller().showProjectInfo("s");
    QCOMPARE(Controller().GetProjectInfo().guid, QString("s"));
    QCOMPARE(Controller().GetProjectInfo().longitude, longitude);
}

void TestInfoCardInput::missingFileOfAdditionalRowsIsSilent()
{
    QVERIFY(m_view->start());
    Controller().Init();
    QCOMPARE(m_view->log.take(), QStringList());
    QCOMPARE(info().expandInsert(), 0);
    QVERIFY(info().expandRows().isEmpty());
}

void TestInfoCardInput::brokenFileOfAdditionalRowsWarns_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no json");
    QTest::newRow("cut off") << QByteArray(R"({"insert": 1, "expands": [)");
    QTest::newRow("value") << QByteArray("3");
}

void TestInfoCardInput::brokenFileOfAdditionalRowsWarns()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(m_view->start());
    QVERIFY(Write(ExpandPath(), bytes));
    Controller().Init();
    const auto lines = m_view->log.take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.constFirst().startsWith("warning: parse json failed:"), qPrintable(lines.constFirst()));
    QVERIFY(info().expandRows().isEmpty());
}

void TestInfoCardInput::fileOfAdditionalRowsMayHaveAnyShape_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("insert");
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("list") << QByteArray("[1]") << 0 << QStringList();
    QTest::newRow("nothing in it") << QByteArray("{}") << 0 << QStringList();
    QTest::newRow("position as text") << QByteArray(R"({"insert": "2"})") << 0 << QStringList();
    QTest::newRow("position below the first") << QByteArray(R"({"insert": -7})") << -7 << QStringList();
    QTest::newRow("position with a fraction") << QByteArray(R"({"insert": 1.5})") << 0 << QStringList();
    QTest::newRow("huge position") << QByteArray(R"({"insert": 1e300})") << 0 << QStringList();
    QTest::newRow("rows as text") << QByteArray(R"({"expands": "x"})") << 0 << QStringList();
    QTest::newRow("rows as object") << QByteArray(R"({"expands": {"key": "k"}})") << 0 << QStringList();
    QTest::newRow("row is no object")
        << QByteArray(R"({"expands": [7, null, [], {"key": "k"}]})") << 0 << QStringList({"", "k"});
    QTest::newRow("row without a key")
        << QByteArray(R"({"expands": [{"value": "v"}]})") << 0 << QStringList("");
    QTest::newRow("key is no text") << QByteArray(R"({"expands": [{"key": 3}]})") << 0 << QStringList("");
    QTest::newRow("unknown words") << QByteArray(R"({"x": 1, "expands": [{"key": "k", "y": {}}]})") << 0
                                   << QStringList("k");
}

void TestInfoCardInput::fileOfAdditionalRowsMayHaveAnyShape()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, keys);
    QVERIFY(m_view->start());
    QVERIFY(Write(ExpandPath(), bytes));
    Controller().Init();
    QCOMPARE(m_view->log.take(), QStringList());
    QTEST(info().expandInsert(), "insert");
    QStringList read = info().expandRows().keys();
    read.sort();
    QCOMPARE(read, keys);
}

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    TestInfoCardInput test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_infocardinput.moc"
