// SPDX-License-Identifier: MIT
#include "EditorCommon/kyvapi.h"

#include "editorcommonlog.h"
#include "serverclient.h"

namespace EditorCommon
{

http::Client& ServerClient()
{
    static http::Client client;
    return client;
}

void KYVApi::init(const QString& serverAddr, const QString& token)
{
    if (!ServerClient().setServer(serverAddr.toStdString()))
        qCWarning(editorCommonLog) << "no address of a project server:" << serverAddr;
    ServerClient().setToken(token.toStdString());
}

} // namespace EditorCommon
