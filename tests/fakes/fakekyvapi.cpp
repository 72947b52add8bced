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

} // namespace Fakes

namespace EditorCommon
{

void KYVApi::init(const QString& serverAddr, const QString& token)
{
    Fakes::Called(QStringLiteral("KYVApi::init(%1,%2)").arg(serverAddr, token));
    Fakes::KyvApi() = {serverAddr, token};
}

} // namespace EditorCommon
