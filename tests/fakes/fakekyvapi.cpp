// SPDX-License-Identifier: MIT
#include "fakes/fakekyvapi.h"

#include "EditorCommon/kyvapi.h"
#include "fakes/calls.h"

namespace Fakes
{

KyvApiSession& KyvApi()
{
    static KyvApiSession session;
    return session;
}

KyvApiAnswers& KyvAnswers()
{
    static KyvApiAnswers answers;
    return answers;
}

} // namespace Fakes

namespace EditorCommon
{

namespace
{

bool Give(const QString& answer, QString& url)
{
    if (!answer.isEmpty())
        url = answer;
    return !answer.isEmpty();
}

} // namespace

void KYVApi::init(const QString& serverAddr, const QString& token)
{
    Fakes::Called(QStringLiteral("KYVApi::init(%1,%2)").arg(serverAddr, token));
    Fakes::KyvApi() = {serverAddr, token};
}

bool KYVApi::GetWebConsoleUrl(QString& url)
{
    Fakes::Called(QStringLiteral("GetWebConsoleUrl()"));
    return Give(Fakes::KyvAnswers().webConsoleUrl, url);
}

bool KYVApi::GetWebProjUrl(const QString& guid, QString& url)
{
    Fakes::Called(QStringLiteral("GetWebProjUrl(%1)").arg(guid));
    return Give(Fakes::KyvAnswers().webProjUrl, url);
}

bool KYVApi::SetProjNameToService(const QString& guid, const QString& name)
{
    Fakes::Called(QStringLiteral("SetProjNameToService(%1,%2)").arg(guid, name));
    return Fakes::KyvAnswers().acceptsNames;
}

} // namespace EditorCommon
