// SPDX-License-Identifier: MIT
//
// The home window on a real window system, without a window manager: what is asked of it happens as asked.
// Runs on a screen of ordinary and on one of double resolution.
#include "core/framewindow.h"

#include "fakes/startedhome.h"
#include "native/nativewindow.h"

#include <memory>

#include <QCursor>
#include <QScreen>
#include <QTest>

using TorvoEditor::CFrameWindow;

class TestFrameWindowOnX : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void dragOutOfTheMaximizedStateKeepsThePointerOverTheTitleBar();
    void showMaximizedAfterADragForcesTheSizeNotedThen();

private:
    std::unique_ptr<Fakes::Surroundings> m_surroundings;
    std::unique_ptr<CFrameWindow> m_window;
};

void TestFrameWindowOnX::init()
{
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    m_window = std::make_unique<CFrameWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_window->setGeometry(0, 0, 900, 500);
    QTRY_COMPARE(m_window->geometry(), QRect(0, 0, 900, 500));
}

void TestFrameWindowOnX::cleanup()
{
    m_window.reset();
    m_surroundings.reset();
}

void TestFrameWindowOnX::dragOutOfTheMaximizedStateKeepsThePointerOverTheTitleBar()
{
    const int scale = qRound(m_window->devicePixelRatio());
    QVERIFY(Native::SetCursorPos(600 * scale, 5 * scale));
    m_window->changeSize();
    QTRY_COMPARE(m_window->geometry(), QRect(131, 40, 637, 419));
    Native::Point pointer;
    QVERIFY(Native::GetCursorPos(pointer));
    QCOMPARE(QPoint(pointer.x, pointer.y), QPoint(555, 45) * scale);
    QCOMPARE(QCursor::pos(), QPoint(555, 45));
}

void TestFrameWindowOnX::showMaximizedAfterADragForcesTheSizeNotedThen()
{
    m_window->changeSize();
    QTRY_COMPARE(m_window->size(), QSize(637, 419));
    m_window->showMaximized();
    QTRY_COMPARE(m_window->size(), QSize(900, 500));
    QVERIFY(m_window->isMaxed());
}

QTEST_MAIN(TestFrameWindowOnX)
#include "test_framewindowonx.moc"
