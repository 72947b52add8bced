// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "fakes/fakekyvapi.h"

#include <QDesktopServices>
#include <QUrl>

using namespace TorvoEditor;

/// The pages of the server that the browser shows.
class TestOpenWeb : public QObject
{
    Q_OBJECT

public slots:
    /// Stands for the browser.
    void browse(const QUrl& url) { m_browsed.append(url.toString()); }

private slots:
    void init();
    void cleanup();

    void consoleIsShown();
    void consoleWithoutAnAddressIsSilent();
    void projectGoesByItsState_data();
    void projectGoesByItsState();
    void projectWithoutAnAddressIsSilent();

private:
    std::unique_ptr<StartedView> m_view;
    QStringList m_browsed;
};

void TestOpenWeb::init()
{
    m_view = std::make_unique<StartedView>();
    m_browsed.clear();
    QDesktopServices::setUrlHandler("http", this, "browse");
}

void TestOpenWeb::cleanup()
{
    QDesktopServices::unsetUrlHandler("http");
    Fakes::KyvAnswers() = {};
    m_view.reset();
}

void TestOpenWeb::consoleIsShown()
{
    Fakes::KyvAnswers().webConsoleUrl = "http://server/web?ticket=1";
    QVERIFY(m_view->start());
    StartedView::control().openWebConsole();
    QCOMPARE(m_browsed, QStringList("http://server/web?ticket=1"));
}

void TestOpenWeb::consoleWithoutAnAddressIsSilent()
{
    QVERIFY(m_view->start());
    StartedView::control().openWebConsole();
    QCOMPARE(Fakes::Calls(), QStringList("GetWebConsoleUrl()"));
    QCOMPARE(m_browsed, QStringList());
    QCOMPARE(m_view->boxes, QStringList());
}

void TestOpenWeb::projectGoesByItsState_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("not on the server") << "2" << 1 << false;
    QTest::newRow("only here") << "1" << 0 << false;
    QTest::newRow("state cannot be told") << "1" << -1 << false;
    QTest::newRow("the same") << "1" << 1 << true;
    QTest::newRow("changed here") << "1" << 2 << true;
    QTest::newRow("changed on the server") << "1" << 3 << true;
    QTest::newRow("changed on both sides") << "1" << 4 << true;
    QTest::newRow("last upload failed") << "-1" << 1 << true;
}

void TestOpenWeb::projectGoesByItsState()
{
    QFETCH(QString, word);
    QFETCH(int, state);
    QFETCH(bool, isShown);
    Fakes::KyvAnswers().webProjUrl = "http://server/web/projects/a";
    StartedView::addLocal("a", "BIM", word, state);
    QVERIFY(m_view->start());
    StartedView::control().openWebProj("a");
    QCOMPARE(m_browsed, isShown ? QStringList("http://server/web/projects/a") : QStringList());
    QCOMPARE(m_view->boxes, isShown ? QStringList() : QStringList("提示: 服务器没有本工程,请先上传"));
    QCOMPARE(Fakes::CallsOf({"GetWebProjUrl"}).size(), isShown ? 1 : 0);
}

void TestOpenWeb::projectWithoutAnAddressIsSilent()
{
    StartedView::addLocal("a", "BIM");
    QVERIFY(m_view->start());
    StartedView::control().openWebProj("a");
    QCOMPARE(Fakes::CallsOf({"GetWebProjUrl"}), QStringList("GetWebProjUrl(a)"));
    QCOMPARE(m_browsed, QStringList());
    QCOMPARE(m_view->boxes, QStringList());
}

QTEST_MAIN(TestOpenWeb)
#include "test_openweb.moc"
