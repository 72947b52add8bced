// SPDX-License-Identifier: MIT
//
// How the children are kept in step with the home window.
#include "fakes/openhome.h"

#include <memory>

#include <QQmlEngine>
#include <QTest>
#include <QTimer>

using namespace TorvoEditor;
using Fakes::OperatorsReceivedBy;
using Fakes::ReceivedBy;

class TestTabWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void resizeGoesToAllWithTheTitleCountedTwice();
    void moveGoesToAllWithoutCoordinates();
    void hidingTheWindowHidesAllChildren();
    void showingTheWindowSaysNothing();
    void minimizingGoesToAll_data();
    void minimizingGoesToAll();
    void restoringToNormalGoesToTheCurrentTab();
    void restoringOfAMaximizedWindowMaximizesItAgain();
    void windowStateThatComesTwiceIsOneChange();
    void maximizingSaysNothing();
    void minimizingAfterARestoreFromMaximizedIsTold();
    void closingGoesToAll_data();
    void closingGoesToAll();
    void closingOfTheWindowAnnouncesThenHides();
    void quitOfTheScreensEndsTheProgram();

private:
    [[nodiscard]] CFrameWindow& window() const { return *m_home->window; }
    /// What the first tab, which is hidden, and the second, which is current, have been sent since `forget`.
    [[nodiscard]] QStringList heardByHidden() const { return OperatorsReceivedBy("p1").mid(m_before); }
    [[nodiscard]] QStringList heardByCurrent() const
    {
        return OperatorsReceivedBy("p2").mid(m_beforeCurrent);
    }
    void forget();
    /// Ends the waiting for messages: what was sent before this has arrived, in order.
    void mark() const { m_home->tabs().SendInfo("mark", "p1"), m_home->tabs().SendInfo("mark", "p2"); }

    std::unique_ptr<Fakes::OpenHome> m_home;
    int m_before = 0;
    int m_beforeCurrent = 0;
    int m_marks = 0;
};

void TestTabWindow::init()
{
    m_home = std::make_unique<Fakes::OpenHome>();
    QVERIFY(m_home->isStarted());
    Fakes::SmartDB::instance().add("p1", "one", "BIM");
    Fakes::SmartDB::instance().add("p2", "two", "BIM");
    QVERIFY(m_home->openConnected("p1"));
    QVERIFY(m_home->openConnected("p2"));
    forget();
}

void TestTabWindow::cleanup()
{
    m_home.reset();
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
}

void TestTabWindow::forget()
{
    // What the window system still has to say comes first.
    QCoreApplication::processEvents();
    const QString text = QStringLiteral("mark %1").arg(++m_marks);
    const QString message = QStringLiteral(R"({"operator":"info","value":"%1"})").arg(text);
    m_home->tabs().SendInfo(text, "p1");
    m_home->tabs().SendInfo(text, "p2");
    QTRY_VERIFY(ReceivedBy("p1").contains(message));
    QTRY_VERIFY(ReceivedBy("p2").contains(message));
    m_before = ReceivedBy("p1").indexOf(message) + 1;
    m_beforeCurrent = ReceivedBy("p2").indexOf(message) + 1;
}

void TestTabWindow::resizeGoesToAllWithTheTitleCountedTwice()
{
    m_home->item("titleRect")->setHeight(34.5);
    window().resize(800, 500);
    QTRY_COMPARE(heardByHidden(), QStringList("resize"));
    const QPoint content = window().mapToGlobal(QPoint(2, 34));
    // 800 - 4.5 and 500 - 36.25, truncated; the top lies below the title already.
    const QString expected = QStringLiteral(R"({"h":463,"operator":"resize","w":795,"x":%1,"y":%2})")
                                 .arg(content.x())
                                 .arg(content.y() + 34.5);
    QCOMPARE(ReceivedBy("p1").last(), expected);
    QTRY_COMPARE(ReceivedBy("p2").last(), expected);
}

void TestTabWindow::moveGoesToAllWithoutCoordinates()
{
    window().setPosition(7, 9);
    QTRY_COMPARE(heardByHidden(), QStringList("move"));
    QTRY_COMPARE(heardByCurrent(), QStringList("move"));
    QCOMPARE(ReceivedBy("p1").last(), QString(R"({"operator":"move"})"));
}

void TestTabWindow::hidingTheWindowHidesAllChildren()
{
    window().setVisible(false);
    QTRY_COMPARE(heardByHidden(), QStringList("hide"));
    QTRY_COMPARE(heardByCurrent(), QStringList("hide"));
}

void TestTabWindow::showingTheWindowSaysNothing()
{
    window().setVisible(false);
    window().setVisible(true);
    mark();
    QTRY_COMPARE(heardByHidden(), QStringList({"hide", "info"}));
    QTRY_COMPARE(heardByCurrent(), QStringList({"hide", "info"}));
}

void TestTabWindow::minimizingGoesToAll_data()
{
    QTest::addColumn<bool>("isMaximized");
    QTest::newRow("from normal") << false;
    QTest::newRow("from maximized") << true;
}

void TestTabWindow::minimizingGoesToAll()
{
    QFETCH(bool, isMaximized);
    if (isMaximized)
        window().showMaximized();
    QCoreApplication::processEvents();
    forget();
    window().showMinimized();
    QTRY_VERIFY(heardByHidden().contains("showMinimized"));
    QTRY_VERIFY(heardByCurrent().contains("showMinimized"));
    QCOMPARE(heardByHidden().count("showMinimized"), 1);
}

void TestTabWindow::restoringToNormalGoesToTheCurrentTab()
{
    window().showMinimized();
    forget();
    window().setWindowState(Qt::WindowNoState);
    QTRY_VERIFY(heardByCurrent().contains("showNormal"));
    mark();
    QTRY_VERIFY(heardByHidden().endsWith("info"));
    QVERIFY(!heardByHidden().contains("showNormal"));
    QCOMPARE(window().windowState(), Qt::WindowNoState);
    QVERIFY(!window().isMaxed());
}

void TestTabWindow::restoringOfAMaximizedWindowMaximizesItAgain()
{
    window().showMaximized();
    QCoreApplication::processEvents();
    window().showMinimized();
    QVERIFY(!window().isMaxed());
    forget();
    window().setWindowState(Qt::WindowNoState);
    QCOMPARE(window().windowState(), Qt::WindowMaximized);
    QVERIFY(window().isMaxed());
    QTRY_VERIFY(heardByCurrent().contains("showNormal"));
    QCOMPARE(heardByCurrent().count("showNormal"), 1);
}

void TestTabWindow::windowStateThatComesTwiceIsOneChange()
{
    window().showMinimized();
    forget();
    m_home->tabs().syncWindowState(Qt::WindowMinimized);
    mark();
    QTRY_COMPARE(heardByCurrent(), QStringList("info"));
}

void TestTabWindow::maximizingSaysNothing()
{
    m_home->tabs().syncWindowState(Qt::WindowMaximized);
    m_home->tabs().syncWindowState(Qt::WindowNoState);
    mark();
    QTRY_COMPARE(heardByCurrent(), QStringList("info"));
    QTRY_COMPARE(heardByHidden(), QStringList("info"));
}

void TestTabWindow::minimizingAfterARestoreFromMaximizedIsTold()
{
    window().showMaximized();
    QCoreApplication::processEvents();
    window().showMinimized();
    window().setWindowState(Qt::WindowNoState);
    forget();
    window().showMinimized();
    QTRY_VERIFY(heardByHidden().contains("showMinimized"));
    QVERIFY(window().wasMaxed());
}

void TestTabWindow::closingGoesToAll_data()
{
    QTest::addColumn<bool>("bSaveProj");
    QTest::addColumn<QString>("message");
    QTest::newRow("saving") << true << R"({"bSaveProj":true,"operator":"mainQuit"})";
    QTest::newRow("not saving") << false << R"({"bSaveProj":false,"operator":"mainQuit"})";
}

void TestTabWindow::closingGoesToAll()
{
    QFETCH(bool, bSaveProj);
    QFETCH(QString, message);
    window().setVisible(true);
    emit window().beforeClosing(bSaveProj);
    QTRY_COMPARE(ReceivedBy("p1").last(), message);
    QTRY_COMPARE(ReceivedBy("p2").last(), message);
}

void TestTabWindow::closingOfTheWindowAnnouncesThenHides()
{
    window().close(true);
    // The window system may have something to say about a window that is gone, behind these.
    QTRY_COMPARE(heardByHidden().mid(0, 2), QStringList({"mainQuit", "hide"}));
    QTRY_COMPARE(heardByCurrent().mid(0, 2), QStringList({"mainQuit", "hide"}));
}

void TestTabWindow::quitOfTheScreensEndsTheProgram()
{
    QTimer::singleShot(0, window().engine(), [this] { emit window().engine()->quit(); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

QTEST_MAIN(TestTabWindow)
#include "test_tabwindow.moc"
