// SPDX-License-Identifier: MIT
#pragma once

#include "core/framewindow.h"
#include "fakes/childprocesses.h"
#include "fakes/startedhome.h"
#include "tabs/tab.h"
#include "tabs/tabmgr.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace Fakes
{

/// A home that runs: the managers over the stand-ins, the window with its smallest screens, and children that
/// play the parts that a test gives them (see tests/testchild/testchild.h).
class OpenHome
{
public:
    OpenHome()
    {
        qputenv("TESTCHILD_LOG", m_log.path().toUtf8());
        m_isStarted = TorvoEditor::CHomeApp::instance().Init(TestSession());
        window = std::make_unique<TorvoEditor::CFrameWindow>();
        TorvoEditor::CHomeApp::instance().m_frameWindow = window.get();
        window->setGeometry(100, 50, 640, 480);
        window->show();
        m_isShown = QTest::qWaitFor([this] { return window->rootObject()->size() == window->size(); });
    }
    OpenHome(const OpenHome&) = delete;
    OpenHome& operator=(const OpenHome&) = delete;
    ~OpenHome() { QCoreApplication::instance()->setProperty("epName", QVariant()); }

    /// Nothing that a test relies on has failed.
    [[nodiscard]] bool isStarted() const { return m_isStarted && m_isShown && m_log.isValid(); }
    [[nodiscard]] TorvoEditor::CTabMgr& tabs() const
    {
        return *TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CTabMgr>();
    }
    [[nodiscard]] TorvoEditor::CTab& tab() const { return *tabs().tab(); }
    [[nodiscard]] QQuickItem* item(const char* objectName) const
    {
        return window->rootObject()->findChild<QQuickItem*>(objectName);
    }

    /// Opens a tab whose child plays this part.
    void open(const QString& tabName, const QString& part) const
    {
        QCoreApplication::instance()->setProperty("epName", part);
        tabs().openTab(tabName);
    }

    /// Opens a tab whose child connects, names itself, plays this part and then obeys. True when it has come
    /// that far.
    [[nodiscard]] bool openConnected(const QString& tabName, const QString& part = QString()) const
    {
        QSignalSpy said(&tabs(), &TorvoEditor::CTabMgr::isConvertingChanged);
        open(tabName, QStringLiteral("connect;name;send {\"convertstate\": false};%1").arg(part));
        return said.wait(30000);
    }

    Surroundings surroundings;
    std::unique_ptr<TorvoEditor::CFrameWindow> window;

private:
    QTemporaryDir m_log;
    bool m_isStarted = false;
    bool m_isShown = false; ///< the screens have the window's size
};

} // namespace Fakes
