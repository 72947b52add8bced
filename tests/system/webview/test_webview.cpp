// SPDX-License-Identifier: MIT
// The host's web service with the real engine, and the page of the property template in it.
#include "fakes/logbook.h"
#include "shell/desktopsettings.h"
#include "shell/web/webservice.h"
#include "webview/card.h"
#include "webview/engine.h"

#include <algorithm>
#include <memory>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLayout>
#include <QPointer>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQuickView>
#include <QRegularExpression>
#include <QScreen>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using shell::PageFolder;
using shell::WebService;

namespace
{

constexpr int patience = 30000;
const QRectF usualSize(0, 0, 1024, 800);

QString LibraryFile()
{
    return QStringLiteral(TORVO_WEB_VIEW_LIBRARY);
}

/// Our own pages, as they are deployed.
QString DeployedPages()
{
    return QStringLiteral(TORVO_WEB_PAGES);
}

QString TemplateEditor()
{
    return DeployedPages() + QStringLiteral("/PropertyEditor/index.html");
}

/// A page that runs a script once its channel stands; `card` is the object on it.
QByteArray PageRunning(const QByteArray& script)
{
    return "<!DOCTYPE html><meta charset=utf-8><title>Test</title><body><script>"
           "new QWebChannel(qt.webChannelTransport, (channel) => { const card = channel.objects.propObject;" +
           script + "});</script>";
}

} // namespace

class TestWebView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void noEngineBeforeTheFirstPage();
    void screensOpenAPageByItsName();
    void windowHasTheSizeThatWasAskedFor();
    void windowIsNoLargerThanTheScreen();
    void windowTakesTheTitleOfItsPage();
    void observersHearOfTheChannelBeforeThePageLoads();
    void secondCallBringsTheSameWindowBack();
    void closedWindowIsMadeAnew();
    void openWindowDoesNotKeepTheProgramAlive();
    void endOfTheHostClosesAllWindows();

    void missingPageIsToldWithItsPath();
    void missingEngineIsToldWithItsPath();
    void foreignAddressIsRefused_data();
    void foreignAddressIsRefused();
    void linkOutOfTheFolderIsRefused();
    void pageMayNot_data();
    void pageMayNot();
    void linkOpensNoWindow();
    void pageReachesNobodyOnTheNetwork();

    void templateIsChangedByTheKeyboard();
    void largeTemplateGoesThereAndBack();
    void unsavedTemplateIsAskedForBeforeTheWindowCloses();

private:
    void writePage(const QString& name, const QByteArray& content) const;
    [[nodiscard]] QString pagePath(const QString& name) const { return m_pages->filePath(name); }
    QWidget* openOwn(const QString& name, const QByteArray& script);
    [[nodiscard]] QWidget* openTemplate();
    static void press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static bool pressUntil(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers, bool isChanged);
    static bool addGroup(QWidget* window)
    {
        return pressUntil(window, Qt::Key_Insert, Qt::AltModifier, true);
    }
    static bool undo(QWidget* window) { return pressUntil(window, Qt::Key_Z, Qt::ControlModifier, false); }

    QQuickView m_home;
    std::unique_ptr<QTemporaryDir> m_pages;
    std::unique_ptr<WebService> m_service;
    std::unique_ptr<WebService> m_deployed;
    std::unique_ptr<webview::Card> m_card;
    std::unique_ptr<Fakes::LogBook> m_log;
    QStringList m_told;
};

// As in the program: a window of the screens is there before any page, with whatever it draws by.
void TestWebView::initTestCase()
{
    m_home.resize(600, 400);
    m_home.show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_home));
}

void TestWebView::init()
{
    const auto tell = [this](const QString& words) { m_told.append(words); };
    m_told.clear();
    m_log = std::make_unique<Fakes::LogBook>();
    m_card = std::make_unique<webview::Card>();
    m_pages = std::make_unique<QTemporaryDir>();
    m_service = std::make_unique<WebService>(PageFolder(m_pages->path()), LibraryFile(), tell);
    m_service->AddWebObserver(m_card.get());
    m_deployed = std::make_unique<WebService>(PageFolder(DeployedPages()), LibraryFile(), tell);
    m_deployed->AddWebObserver(m_card.get());
}

void TestWebView::cleanup()
{
    m_service.reset();
    m_deployed.reset();
    m_card.reset();
    const auto lines = m_log->take();
    m_log.reset();
    if (QTest::currentTestFailed())
        qInfo().noquote() << lines.join(QLatin1Char('\n')) << m_told;
}

void TestWebView::writePage(const QString& name, const QByteArray& content) const
{
    QFile file(pagePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// Opens a page of the test that runs a script, and waits until that has reported something.
QWidget* TestWebView::openOwn(const QString& name, const QByteArray& script)
{
    writePage(name, PageRunning(script));
    m_service->openWeb(pagePath(name), usualSize);
    [this] { QTRY_VERIFY_WITH_TIMEOUT(!m_card->reports.isEmpty(), patience); }();
    return m_service->window(pagePath(name));
}

/// Opens the page of the template and waits until it has read the card.
QWidget* TestWebView::openTemplate()
{
    m_deployed->openWeb(TemplateEditor(), usualSize);
    auto* window = m_deployed->window(TemplateEditor());
    if (window == nullptr || !QTest::qWaitForWindowActive(window, patience))
        return nullptr;
    const bool isThere = QTest::qWaitFor([this] { return m_card->reads > 0; }, patience);
    return isThere ? window : nullptr;
}

void TestWebView::press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    auto* view = window->layout()->itemAt(0)->widget();
    QTest::keyClick(view->focusProxy() != nullptr ? view->focusProxy() : view, key, modifiers);
}

/// A page that is not drawn yet takes no keys: presses until the title says that there are changes, or none.
bool TestWebView::pressUntil(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers, bool isChanged)
{
    const auto isDone = [&] { return window->windowTitle().startsWith(QString::fromUtf8("●")) == isChanged; };
    return QTest::qWaitFor(
        [&] {
            press(window, key, modifiers);
            return QTest::qWaitFor(isDone, 3000);
        },
        2 * patience);
}

// Has to be the first: what is loaded stays loaded.
void TestWebView::noEngineBeforeTheFirstPage()
{
    QCOMPARE(webview::MappedEngineFiles(), QStringList());
    QCOMPARE(webview::EngineProcesses(), 0);
    m_service->openWeb(pagePath("missing.html"), usualSize);
    m_service->openWeb("https://example.org/", usualSize);
    QCOMPARE(webview::MappedEngineFiles(), QStringList());
    m_log->take();
    openOwn("a.html", "card.report('here');");
    QCOMPARE(m_card->reports, QStringList("here"));
    QVERIFY(!webview::MappedEngineFiles().isEmpty());
    QVERIFY(webview::EngineProcesses() > 0);
    // The engine says itself that it draws without OpenGL, which is meant, and as root that it has no
    // sandbox.
    const QRegularExpression known(
        "initialized from a plugin|before QtWebEngine::initialize|Sandboxing disabled");
    QStringList lines = m_log->take();
    lines.erase(
        std::remove_if(lines.begin(), lines.end(), [&](const QString& line) { return line.contains(known); }),
        lines.end());
    QVERIFY2(lines.isEmpty(), qPrintable(lines.join(QLatin1Char('\n'))));
}

void TestWebView::screensOpenAPageByItsName()
{
    QQmlEngine engine;
    m_deployed->ContributeContext(engine.rootContext());
    engine.rootContext()->setContextProperty("pages", DeployedPages());
    QQmlExpression call(engine.rootContext(), nullptr,
                        "webViewMgr.openWeb(pages + '/PropertyEditor/index.html', Qt.rect(0, 0, 1024, 800))");
    call.evaluate();
    QVERIFY2(!call.hasError(), qPrintable(call.error().toString()));
    QVERIFY(m_deployed->window(TemplateEditor()) != nullptr);
    QQmlExpression again(
        engine.rootContext(), nullptr,
        "webViewMgr.openWeb(Qt.resolvedUrl('file://' + pages + '/PropertyEditor/index.html'), "
        "Qt.rect(0, 0, 1024, 800))");
    again.evaluate();
    QVERIFY2(!again.hasError(), qPrintable(again.error().toString()));
    QCOMPARE(m_card->channels, 1);
}

void TestWebView::windowHasTheSizeThatWasAskedFor()
{
    auto* window = openOwn("a.html", "card.report(innerWidth + ' ' + innerHeight);");
    QCOMPARE(window->size(), QSize(1024, 800));
    QCOMPARE(m_card->reports, QStringList("1024 800"));
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(window->frameGeometry()));
}

void TestWebView::windowIsNoLargerThanTheScreen()
{
    writePage("a.html", "");
    m_service->openWeb(pagePath("a.html"), QRectF(0, 0, 9000, 9000));
    const auto screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(m_service->window(pagePath("a.html"))->width() <= screen.width());
    QVERIFY(m_service->window(pagePath("a.html"))->height() <= screen.height());
}

void TestWebView::windowTakesTheTitleOfItsPage()
{
    auto* window = openOwn("a.html", "document.title = '标题'; card.report('');");
    QTRY_COMPARE_WITH_TIMEOUT(window->windowTitle(), QString::fromUtf8("标题"), patience);
}

void TestWebView::observersHearOfTheChannelBeforeThePageLoads()
{
    writePage("a.html", PageRunning("card.getProp((text) => card.report(text));"));
    m_card->text = "there";
    m_service->openWeb(pagePath("a.html"), usualSize);
    QCOMPARE(m_card->channels, 1);
    QTRY_COMPARE_WITH_TIMEOUT(m_card->reports, QStringList("there"), patience);
}

void TestWebView::secondCallBringsTheSameWindowBack()
{
    auto* window = openOwn("a.html", "card.report('loaded');");
    window->showMinimized();
    QTRY_VERIFY(window->isMinimized());
    m_service->openWeb("file://" + pagePath("a.html"), QRectF(0, 0, 500, 400));
    QCOMPARE(m_service->window(pagePath("a.html")), window);
    QTRY_VERIFY(!window->isMinimized() && window->isVisible());
    QCOMPARE(window->size(), QSize(1024, 800));
    QCOMPARE(m_card->channels, 1);
}

void TestWebView::closedWindowIsMadeAnew()
{
    const QPointer<QWidget> window = openOwn("a.html", "card.report('loaded');");
    window->close();
    QTRY_VERIFY_WITH_TIMEOUT(window.isNull(), patience);
    m_service->openWeb(pagePath("a.html"), usualSize);
    QCOMPARE(m_card->channels, 2);
    QTRY_COMPARE_WITH_TIMEOUT(m_card->reports.size(), 2, patience);
}

void TestWebView::openWindowDoesNotKeepTheProgramAlive()
{
    auto* window = openOwn("a.html", "card.report('loaded');");
    QVERIFY(!window->testAttribute(Qt::WA_QuitOnClose));
}

void TestWebView::endOfTheHostClosesAllWindows()
{
    const QPointer<QWidget> first = openOwn("a.html", "card.report('loaded');");
    const QPointer<QWidget> second = openOwn("b.html", "card.report('loaded');");
    m_service->close();
    QVERIFY(first.isNull() && second.isNull());
    m_service->openWeb(pagePath("a.html"), usualSize);
    QCOMPARE(m_card->channels, 2);
}

void TestWebView::missingPageIsToldWithItsPath()
{
    const QString path = pagePath("gone.html");
    m_service->openWeb(path, usualSize);
    QCOMPARE(m_told, QStringList(QString::fromUtf8("找不到页面文件：%1。请重新安装程序。").arg(path)));
    QCOMPARE(m_log->take(), QStringList("warning: missing page: \"" + path + "\""));
    QVERIFY(m_service->window(path) == nullptr);
}

void TestWebView::missingEngineIsToldWithItsPath()
{
    WebService service(PageFolder(m_pages->path()), m_pages->filePath("libNone.so"),
                       [this](const QString& words) { m_told.append(words); });
    writePage("a.html", "");
    service.openWeb(pagePath("a.html"), usualSize);
    QCOMPARE(m_told.size(), 1);
    QVERIFY2(m_told.first().contains(QString::fromUtf8("网页组件无法加载")), qPrintable(m_told.first()));
    QVERIFY(service.window(pagePath("a.html")) == nullptr);
}

void TestWebView::foreignAddressIsRefused_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("network") << "https://example.org/";
    QTest::newRow("file elsewhere") << "/etc/hostname";
    QTest::newRow("address of a file elsewhere") << "file:///etc/hostname";
    QTest::newRow("share") << "file://machine/share/a.html";
    QTest::newRow("data") << "data:text/html,hello";
    QTest::newRow("nothing") << "";
}

void TestWebView::foreignAddressIsRefused()
{
    QFETCH(QString, address);
    m_service->openWeb(address, usualSize);
    QCOMPARE(m_log->take(), QStringList("warning: refused, not a page of ours: \"" + address + "\""));
    QCOMPARE(m_card->channels, 0);
}

void TestWebView::linkOutOfTheFolderIsRefused()
{
    QVERIFY(QFile::link("/etc/hostname", pagePath("link.html")));
    m_service->openWeb(pagePath("link.html"), usualSize);
    QCOMPARE(m_log->linesWith("a link out of our folder").size(), 1);
    QCOMPARE(m_card->channels, 0);
}

void TestWebView::pageMayNot_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("line");
    const auto click = [](const QByteArray& element) {
        return "document.body.innerHTML = \"" + element + "\"; document.body.firstChild.click();";
    };
    QTest::newRow("go to the network")
        << QByteArray("location.href = 'http://127.0.0.1:1/';") << "refused, a page wanted to go to";
    QTest::newRow("go to another file")
        << QByteArray("location.href = 'file:///etc/hostname';") << "refused, a page wanted to go to";
    QTest::newRow("go to another page")
        << QByteArray("location.href = 'other.html';") << "refused, a page wanted to go to";
    QTest::newRow("show a frame") << QByteArray("document.body.innerHTML = '<iframe src=\"other.html\">';")
                                  << "refused, a page wanted to go to";
    QTest::newRow("follow a link") << click("<a href='http://127.0.0.1:1/'>x</a>")
                                   << "refused, a page wanted to go to";
    QTest::newRow("send a form")
        << QByteArray("document.body.innerHTML = '<form method=post action=\"http://127.0.0.1:1/\"></form>';"
                      "document.body.firstChild.submit();")
        << "refused, a page wanted to go to";
    QTest::newRow("load a picture from the network")
        << QByteArray("document.body.innerHTML = '<img src=\"http://127.0.0.1:1/a.png\">';")
        << "refused, a page asked for";
    QTest::newRow("load a file from elsewhere")
        << QByteArray("document.body.innerHTML = '<img src=\"file:///etc/hostname\">';")
        << "refused, a page asked for";
    QTest::newRow("ask the network") << QByteArray("fetch('http://127.0.0.1:1/').catch(() => {});")
                                     << "Access to fetch at 'http://127.0.0.1:1/'";
    QTest::newRow("ask where it is") << QByteArray("navigator.geolocation.getCurrentPosition(() => {});")
                                     << "refused, a page asked for permission";
    QTest::newRow("tell the user something")
        << QByteArray("Notification.requestPermission();") << "refused, a page asked for permission";
}

void TestWebView::pageMayNot()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, line);
    writePage("other.html", "other");
    auto* window = openOwn("a.html", "card.report('loaded');" + script);
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(line).size(), 1, patience);
    QCOMPARE(window->windowTitle(), QString("Test"));
    QCOMPARE(m_told, QStringList());
}

void TestWebView::linkOpensNoWindow()
{
    writePage("other.html", "other");
    auto* window = openOwn("a.html", "document.body.innerHTML = '<a target=_blank href=other.html "
                                     "style=\"position: fixed; inset: 0\">x</a>'; card.report('loaded');");
    auto* view = window->layout()->itemAt(0)->widget();
    QVERIFY(QTest::qWaitFor(
        [&] {
            QTest::mouseClick(view->focusProxy(), Qt::LeftButton);
            return QTest::qWaitFor(
                [&] { return !m_log->linesWith("refused, a page wanted a window").isEmpty(); }, 1000);
        },
        patience));
    QCOMPARE(window->windowTitle(), QString("Test"));
}

void TestWebView::pageReachesNobodyOnTheNetwork()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QByteArray address = "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/";
    openOwn("a.html", "const tried = (what) => card.report(what);"
                      "fetch('" +
                          address + "').then(() => tried('reached'), () => tried('refused'));");
    QCOMPARE(m_card->reports, QStringList("refused"));
    QVERIFY(!server.hasPendingConnections());
}

void TestWebView::templateIsChangedByTheKeyboard()
{
    m_card->text =
        R"({"groups": [{"name": "a", "properties": [{"name": "b", "type": "integer", "default": 6}]}]})";
    auto* window = openTemplate();
    QVERIFY(window != nullptr);
    QVERIFY(addGroup(window));
    QVERIFY(undo(window));
    press(window, Qt::Key_Home, Qt::ControlModifier);
    press(window, Qt::Key_Down);
    press(window, Qt::Key_End);
    press(window, Qt::Key_Space);
    press(window, Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(m_card->writes, 1, patience);
    QCOMPARE(
        m_card->text,
        QString(
            R"({"groups":[{"name":"a","properties":[{"name":"b","type":"integer","default":6,"required":true}]}]})"));
    QCOMPARE(m_log->linesWith("warning"), QStringList());
}

void TestWebView::largeTemplateGoesThereAndBack()
{
    const QString property = R"({"name": "%1", "type": "text", "required": false, "note": "%2"})";
    QStringList properties;
    for (int n = 0; n < 30000; ++n)
        properties.append(property.arg(n).arg(QString(100, 'x')));
    m_card->text = R"({"groups": [{"name": "a", "properties": [)" + properties.join(",") + "]}]}";
    QVERIFY(m_card->text.size() > 5000000 - 1000000);
    auto* window = openTemplate();
    QVERIFY(window != nullptr);
    QVERIFY(addGroup(window));
    press(window, Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(m_card->writes, 1, patience);
    QVERIFY(m_card->text.contains(QString::fromUtf8("\"新分组\"")));
    QCOMPARE(m_card->text.count("\"note\""), 30000);
}

void TestWebView::unsavedTemplateIsAskedForBeforeTheWindowCloses()
{
    QPointer<QWidget> window = openTemplate();
    QVERIFY(window != nullptr);
    QVERIFY(addGroup(window));
    window->close();
    QTest::qWait(1000);
    QVERIFY(!window.isNull() && window->isVisible());
    // The first answer saves and closes.
    QVERIFY(QTest::qWaitFor(
        [&] {
            if (!window.isNull())
                press(window, Qt::Key_Return);
            return QTest::qWaitFor([&] { return window.isNull(); }, 1000);
        },
        patience));
    QCOMPARE(m_card->writes, 1);
    QVERIFY(m_card->text.contains(QString::fromUtf8("\"新分组\"")));
}

int main(int argumentCount, char** arguments)
{
    shell::ChooseDesktopSettings();
    QApplication app(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    TestWebView test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "test_webview.moc"
