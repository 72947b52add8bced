// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/torvosession.h"
#include "core/homeapp.h"
#include "fakes/calls.h"
#include "fakes/fakehost.h"
#include "fakes/fakesmartdb.h"

#include <QCoreApplication>
#include <QFile>

namespace Fakes
{

/// The session that tests log in with.
[[nodiscard]] inline TorvoSDK::CTorvoSession TestSession()
{
    TorvoSDK::CTorvoSession session;
    session.token = L"token-1";
    session.cookies = L"cookie=1";
    session.serverAddr = L"http://127.0.0.1:1";
    session.sdkAddr = L"http://127.0.0.1:2";
    session.loginName = L"王工";
    session.appVer = L"Normal";
    return session;
}

/// Everything around the plugin in its first state: fakes without content, no files beside the program, and a
/// host that CHomeApp knows. Ends CHomeApp at its own end.
class Surroundings
{
public:
    Surroundings()
    {
        QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/ProjectConfig.json"));
        SmartDB::instance().reset();
        TorvoEditor::CHomeApp::instance().m_plugin = &host;
        ForgetCalls();
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    ~Surroundings()
    {
        TorvoEditor::CHomeApp::instance().UnInit();
        TorvoEditor::CHomeApp::instance().m_plugin = nullptr;
    }

    Host host;
};

} // namespace Fakes
