// SPDX-License-Identifier: MIT
#include "core/torvohomeplugin.h"

#include "core/framewindow.h"
#include "core/homeapp.h"

#include <new>
#include <utility>

#include <QGuiApplication>

namespace TorvoEditor
{

struct TorvoHomePluginPrivate {
    CFrameWindow* window = nullptr;
};

TorvoHomePlugin::TorvoHomePlugin()
    : m_private(new (std::nothrow) TorvoHomePluginPrivate)
{
}

TorvoHomePlugin::~TorvoHomePlugin()
{
    if (m_private == nullptr)
        return;
    delete m_private->window;
    delete m_private;
    m_private = nullptr;
}

// Hosts rely on the assignment sharing the record.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
TorvoHomePlugin& TorvoHomePlugin::operator=(const TorvoHomePlugin& other)
{
    m_private = other.m_private;
    return *this;
}

void TorvoHomePlugin::Init(TorvoSDK::ITorvoSDKPlugin* plugin, const TorvoSDK::CTorvoSession& session)
{
    if (m_private == nullptr)
        return;
    QGuiApplication::setQuitOnLastWindowClosed(true);
    auto& app = CHomeApp::instance();
    app.m_plugin = plugin;
    if (!app.Init(session))
        return;

    auto* window = new CFrameWindow;
    delete std::exchange(m_private->window, window);
    app.m_frameWindow = window;
    window->showMaximized();
}

void TorvoHomePlugin::UnInit()
{
    if (m_private != nullptr)
        delete std::exchange(m_private->window, nullptr);
    CHomeApp::instance().UnInit();
}

} // namespace TorvoEditor
