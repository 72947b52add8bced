// SPDX-License-Identifier: MIT
// The editor of the property template in the whole program: from the card's data to the page and back.
#include "road/colleague.h"
#include "road/infocard.h"
#include "road/samplecontent.h"
#include "road/suite.h"
#include "webview/engine.h"

#include <QFile>
#include <QLayout>
#include <QPointer>
#include <QQmlContext>
#include <QQmlExpression>
#include <QTemporaryDir>

using road::HomeScreen;

class TestTemplatePage : public road::Suite
{
    Q_OBJECT

    static QQmlContext* screens() { return HomeScreen::window()->rootContext(); }

    static QObject* published(const char* name) { return screens()->contextProperty(name).value<QObject*>(); }

    /// Does what a button of the screens does.
    static void evaluate(const QString& expression)
    {
        QQmlExpression call(screens(), nullptr, expression);
        call.evaluate();
        QVERIFY2(!call.hasError(), qPrintable(call.error().toString()));
    }

    static void openPage(const QString& name = QStringLiteral("index.html"))
    {
        evaluate(QStringLiteral("webViewMgr.openWeb(appPath + '/EditorWebExtern/PropertyEditor/%1', "
                                "Qt.rect(0, 0, 1024, 800))")
                     .arg(name));
    }

    static QWidget* pageWindow()
    {
        const auto windows = QApplication::topLevelWidgets();
        for (auto* window : windows) {
            if (window->isVisible() && window->windowTitle().contains(QString::fromUtf8("属性模板编辑")))
                return window;
        }
        return nullptr;
    }

    /// A page that is not drawn yet takes no keys: presses until something is there.
    template<class Condition>
    static bool pressUntil(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers, Condition isDone)
    {
        auto* view = window->layout()->itemAt(0)->widget();
        return QTest::qWaitFor(
            [&] {
                QTest::keyClick(view->focusProxy(), key, modifiers);
                return QTest::qWaitFor(isDone, 2000);
            },
            60000);
    }

private slots:
    // Has to be the first: what is loaded stays loaded.
    void noEngineIsThereBeforeThePageIsOpened()
    {
        QVERIFY(session->enter());
        QVERIFY(session->download(road::house));
        QCOMPARE(webview::MappedEngineFiles(), QStringList());
        QCOMPARE(webview::EngineProcesses(), 0);
        openPage();
        QTRY_VERIFY_WITH_TIMEOUT(pageWindow() != nullptr, 60000);
        QVERIFY(!webview::MappedEngineFiles().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(webview::EngineProcesses() > 0, 60000);
    }

    void thePageChangesTheTemplateOfTheCard()
    {
        QVERIFY(session->enter());
        QVERIFY(session->download(road::scene));
        evaluate(QStringLiteral("infoCardCtrl.showProjectInfo('%1')").arg(road::scene));
        auto* card = published("proInfoModel");
        const auto templateText = [card] { return card->property("templateContent").toString(); };
        openPage();
        QTRY_VERIFY_WITH_TIMEOUT(pageWindow() != nullptr, 60000);
        auto* window = pageWindow();
        QVERIFY(pressUntil(window, Qt::Key_Insert, Qt::AltModifier,
                           [&] { return window->windowTitle().startsWith(QString::fromUtf8("●")); }));
        QVERIFY(pressUntil(window, Qt::Key_S, Qt::ControlModifier,
                           [&] { return templateText().contains(QString::fromUtf8("\"新分组\"")); }));
    }

    void aGroupMadeOnThePageIsInTheProjectOnceTheCardIsSaved()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("mine.json"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(R"({"groups": []})") > 0 && file.flush());
        QVERIFY(session->enter() && session->download(road::scene));
        road::InfoCard card(session->desktop(), session->home());
        QVERIFY(card.openFor(road::scene) && card.clickIn(road::templateRow, "importBtn"));
        session->desktop().awaitQuiet();
        session->desktop().type(file.fileName());
        session->desktop().press(0xff0d);
        QTRY_COMPARE(HomeScreen::textOf("templateField"), QStringLiteral("mine.json"));

        QVERIFY(card.clickIn(road::templateRow, "editBtn"));
        QTRY_VERIFY_WITH_TIMEOUT(pageWindow() != nullptr, 60000);
        auto* window = pageWindow();
        QVERIFY(pressUntil(window, Qt::Key_Insert, Qt::AltModifier,
                           [&] { return window->windowTitle().startsWith(QString::fromUtf8("●")); }));
        QVERIFY(pressUntil(window, Qt::Key_S, Qt::ControlModifier,
                           [&] { return !window->windowTitle().startsWith(QString::fromUtf8("●")); }));
        window->close();
        QTRY_VERIFY(pageWindow() == nullptr);
        QVERIFY(card.accept());
        const road::Colleague here(server->address(), QCoreApplication::applicationDirPath() + "/data");
        QVERIFY(
            here.factsOf(road::scene).value("template").toString().contains(QString::fromUtf8("\"新分组\"")));
    }

    void aMissingPageIsToldInTheHomeWindow()
    {
        QVERIFY(session->enter());
        openPage(QStringLiteral("none.html"));
        QTRY_VERIFY_WITH_TIMEOUT(HomeScreen::shows(QStringLiteral("messageText")), 30000);
        const QString words = HomeScreen::textOf(QStringLiteral("messageText"));
        QVERIFY2(words.contains(QStringLiteral("EditorWebExtern/PropertyEditor/none.html")),
                 qPrintable(words));
    }

    void thePageGoesWithTheHost()
    {
        QVERIFY(session->enter());
        openPage();
        QTRY_VERIFY_WITH_TIMEOUT(pageWindow() != nullptr, 60000);
        const QPointer<QWidget> window = pageWindow();
        session->leave();
        QVERIFY(window.isNull());
    }
};

ROAD_MAIN(TestTemplatePage)
#include "test_templatepage.moc"
