// SPDX-License-Identifier: MIT
#include "core/framewindow.h"

#include "fakes/fakenative.h"
#include "fakes/startedhome.h"

#include <memory>

#include <QDir>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

using TorvoEditor::CFrameWindow;

class TestFrameWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowIsFramelessAndWithoutSizeLimits();
    void screensSeeWhatIsPublishedToThem();
    void rootItemFollowsTheWindow();
    void showMaximizedTellsOnce();
    void showMinimizedOfAMaximizedWindowRemembersIt();
    void showMinimizedOfANormalWindowRemembersThatToo();
    void showNormalBeforeTheFirstDragKeepsThePlace();
    void isMaxedDoesNotFollowTheWindowFromOutside();
    void changeSizePlacesTheWindowUnderThePointer_data();
    void changeSizePlacesTheWindowUnderThePointer();
    void secondDragReusesTheSizesOfTheFirst();
    void showNormalAfterADragKeepsThePlace();
    void changeSizeWithoutAPointerStillRestores();
    void moveTruncatesEachSum_data();
    void moveTruncatesEachSum();
    void closeAnnouncesThenCloses();
    void closeTwiceAnnouncesTwice();
    void movedComesAfterTheMove();
    void resizedComesAfterTheScreensHaveFollowed();

private:
    std::unique_ptr<Fakes::Surroundings> m_surroundings;
    std::unique_ptr<CFrameWindow> m_window;
};

void TestFrameWindow::init()
{
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    Fakes::Windows() = Fakes::WindowSystem();
    m_window = std::make_unique<CFrameWindow>();
    QCOMPARE(m_window->status(), QQuickView::Ready);
}

void TestFrameWindow::cleanup()
{
    m_window.reset();
    m_surroundings.reset();
}

void TestFrameWindow::windowIsFramelessAndWithoutSizeLimits()
{
    QCOMPARE(static_cast<int>(m_window->flags()), 0x801);
    QCOMPARE(m_window->minimumSize(), QSize(0, 0));
    QCOMPARE(m_window->maximumSize(), QWindow().maximumSize());
    QCOMPARE(m_window->isMaxed(), false);
    QCOMPARE(m_window->wasMaxed(), false);
}

void TestFrameWindow::screensSeeWhatIsPublishedToThem()
{
    const auto* root = m_window->rootObject();
    QCOMPARE(m_window->source(), QUrl("qrc:/qmls/main.qml"));
    QVERIFY(m_window->rootContext()->contextProperty("rootView").value<QObject*>() == m_window.get());
    QCOMPARE(root->property("seenAppPath").toString(),
             QDir(QCoreApplication::applicationDirPath()).absolutePath());
    QCOMPARE(root->property("seenFileName").toString(), QString("b.txt"));
    QCOMPARE(root->property("seenMaxed").toBool(), false);
    m_window->showMaximized();
    QCOMPARE(root->property("seenMaxed").toBool(), true);
}

void TestFrameWindow::rootItemFollowsTheWindow()
{
    QCOMPARE(m_window->resizeMode(), QQuickView::SizeRootObjectToView);
    m_window->show();
    m_window->resize(640, 480);
    QTRY_COMPARE(m_window->rootObject()->size(), QSizeF(640, 480));
}

void TestFrameWindow::showMaximizedTellsOnce()
{
    QSignalSpy changed(m_window.get(), &CFrameWindow::isMaxedChanged);
    m_window->showMaximized();
    QCOMPARE(m_window->windowState(), Qt::WindowMaximized);
    QVERIFY(m_window->isMaxed());
    m_window->showMaximized();
    QCOMPARE(changed.count(), 1);
}

void TestFrameWindow::showMinimizedOfAMaximizedWindowRemembersIt()
{
    m_window->showMaximized();
    QSignalSpy changed(m_window.get(), &CFrameWindow::isMaxedChanged);
    m_window->showMinimized();
    QCOMPARE(m_window->windowState(), Qt::WindowMinimized);
    QVERIFY(m_window->wasMaxed());
    QVERIFY(!m_window->isMaxed());
    QCOMPARE(changed.count(), 1);
}

void TestFrameWindow::showMinimizedOfANormalWindowRemembersThatToo()
{
    m_window->showMaximized();
    m_window->showMinimized();
    m_window->showNormal();
    QSignalSpy changed(m_window.get(), &CFrameWindow::isMaxedChanged);
    m_window->showMinimized();
    QVERIFY(!m_window->wasMaxed());
    QCOMPARE(changed.count(), 0);
}

void TestFrameWindow::showNormalBeforeTheFirstDragKeepsThePlace()
{
    m_window->setGeometry(30, 40, 500, 400);
    m_window->show();
    m_window->showNormal();
    QCOMPARE(m_window->geometry(), QRect(30, 40, 500, 400));
    QCOMPARE(Fakes::CallsOf({"SetCursorPos"}), QStringList());
}

void TestFrameWindow::isMaxedDoesNotFollowTheWindowFromOutside()
{
    m_window->showMaximized();
    m_window->setWindowState(Qt::WindowNoState);
    QVERIFY(m_window->isMaxed());
}

void TestFrameWindow::changeSizePlacesTheWindowUnderThePointer_data()
{
    QTest::addColumn<QSize>("maximal");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QRect>("normal");
    QTest::addColumn<QPoint>("newPointer");
    QTest::newRow("full HD less a panel")
        << QSize(1920, 1040) << QPoint(960, 17) << QRect(280, 83, 1360, 873) << QPoint(960, 100);
    QTest::newRow("left edge") << QSize(1920, 1040) << QPoint(0, 0) << QRect(280, 83, 1360, 873)
                               << QPoint(280, 83);
    QTest::newRow("uneven") << QSize(1366, 768) << QPoint(1000, 5) << QRect(199, 61, 967, 645)
                            << QPoint(906, 66);
    QTest::newRow("pointer left of the screen")
        << QSize(801, 601) << QPoint(-10, 3) << QRect(117, 48, 567, 504) << QPoint(110, 51);
}

void TestFrameWindow::changeSizePlacesTheWindowUnderThePointer()
{
    QFETCH(QSize, maximal);
    QFETCH(QPoint, pointer);
    m_window->show();
    m_window->resize(maximal);
    Fakes::Windows().cursor = {pointer.x(), pointer.y()};
    m_window->changeSize();
    QTEST(m_window->geometry(), "normal");
    QTEST(QPoint(Fakes::Windows().cursor.x, Fakes::Windows().cursor.y), "newPointer");
    QVERIFY(!m_window->isMaxed());
}

void TestFrameWindow::secondDragReusesTheSizesOfTheFirst()
{
    m_window->show();
    m_window->resize(1920, 1040);
    m_window->changeSize();
    m_window->setGeometry(0, 0, 1000, 1000);
    Fakes::Windows().cursor = {480, 10};
    m_window->changeSize();
    QCOMPARE(m_window->geometry(), QRect(280, 83, 1360, 873));
    QCOMPARE(Fakes::Windows().cursor.x, 1360 * 480 / 1920 + 280);
}

void TestFrameWindow::showNormalAfterADragKeepsThePlace()
{
    m_window->show();
    m_window->resize(1920, 1040);
    m_window->changeSize();
    Fakes::ForgetCalls();
    m_window->setPosition(7, 8);
    m_window->showNormal();
    QCOMPARE(m_window->geometry(), QRect(7, 8, 1360, 873));
    QCOMPARE(Fakes::CallsOf({"SetCursorPos"}), QStringList());
}

void TestFrameWindow::changeSizeWithoutAPointerStillRestores()
{
    Fakes::Windows().knowsCursor = false;
    m_window->show();
    m_window->resize(1920, 1040);
    m_window->changeSize();
    QCOMPARE(m_window->geometry(), QRect(280, 83, 1360, 873));
}

void TestFrameWindow::moveTruncatesEachSum_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<QPoint>("to");
    QTest::newRow("whole") << QPoint(10, 20) << QPointF(3, -4) << QPoint(13, 16);
    QTest::newRow("nine tenths") << QPoint(10, 20) << QPointF(0.9, 0.9) << QPoint(10, 20);
    QTest::newRow("minus one half") << QPoint(10, 20) << QPointF(-0.5, -0.5) << QPoint(9, 19);
    QTest::newRow("below zero") << QPoint(-10, -20) << QPointF(-0.9, 0.9) << QPoint(-10, -19);
}

void TestFrameWindow::moveTruncatesEachSum()
{
    QFETCH(QPoint, from);
    QFETCH(QPointF, offset);
    m_window->show();
    m_window->setPosition(from);
    m_window->move(offset.x(), offset.y());
    QTEST(m_window->position(), "to");
}

void TestFrameWindow::closeAnnouncesThenCloses()
{
    m_window->show();
    bool wasVisible = false;
    connect(m_window.get(), &CFrameWindow::beforeClosing, this, [&] { wasVisible = m_window->isVisible(); });
    QSignalSpy announced(m_window.get(), &CFrameWindow::beforeClosing);
    m_window->close(true);
    QCOMPARE(announced, QList<QVariantList>{{true}});
    QVERIFY(wasVisible);
    QVERIFY(!m_window->isVisible());
}

void TestFrameWindow::closeTwiceAnnouncesTwice()
{
    m_window->show();
    QSignalSpy announced(m_window.get(), &CFrameWindow::beforeClosing);
    m_window->close(false);
    m_window->close(false);
    QCOMPARE(announced, QList<QVariantList>({{false}, {false}}));
}

void TestFrameWindow::movedComesAfterTheMove()
{
    m_window->show();
    QSignalSpy moved(m_window.get(), &CFrameWindow::moved);
    m_window->setPosition(77, 88);
    QTRY_COMPARE(moved.count(), 1);
    QCOMPARE(m_window->position(), QPoint(77, 88));
}

void TestFrameWindow::resizedComesAfterTheScreensHaveFollowed()
{
    m_window->show();
    QCoreApplication::processEvents();
    QSizeF rootSize;
    connect(m_window.get(), &CFrameWindow::resized, this, [&] { rootSize = m_window->rootObject()->size(); });
    m_window->resize(600, 300);
    QTRY_COMPARE(rootSize, QSizeF(600, 300));
}

QTEST_MAIN(TestFrameWindow)
#include "test_framewindow.moc"
