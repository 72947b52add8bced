// SPDX-License-Identifier: MIT
#include "fakes/fakekyvconvertmgr.h"

#include "KYVConvertCommon/kyvconvertmgr.h"
#include "fakes/calls.h"

#include <QList>

namespace
{

QList<KYVConvertCommon::CKYVConvertMgr*>& Engines()
{
    static QList<KYVConvertCommon::CKYVConvertMgr*> engines;
    return engines;
}

} // namespace

namespace Fakes
{

void TellConversion(const QString& uid, const QString& file, int state)
{
    const auto engines = Engines();
    for (auto* engine : engines)
        emit engine->sigConvertKyvStateNty(uid, file, state);
}

} // namespace Fakes

namespace KYVConvertCommon
{

class CKYVConvertMgr::Engine
{
};

CKYVConvertMgr::CKYVConvertMgr(QObject* parent)
    : QObject(parent)
{
    Engines().append(this);
}

CKYVConvertMgr::~CKYVConvertMgr()
{
    Engines().removeOne(this);
}

void CKYVConvertMgr::Init()
{
    Fakes::Called(QStringLiteral("InitConvert()"));
}

void CKYVConvertMgr::UnInit()
{
    Fakes::Called(QStringLiteral("UnInitConvert()"));
}

void CKYVConvertMgr::ConvertKyv(const QString& uid, const QString& absoluteFilePath, int mode)
{
    Fakes::Called(QStringLiteral("ConvertKyv(%1,%2,%3)").arg(uid, absoluteFilePath).arg(mode));
}

void CKYVConvertMgr::ConvertDwg(const QString& uid, const QString& absoluteFilePath)
{
    Fakes::Called(QStringLiteral("ConvertDwg(%1,%2)").arg(uid, absoluteFilePath));
}

void CKYVConvertMgr::ConvertFBX(const QString& uid, const QString& absoluteFilePath)
{
    Fakes::Called(QStringLiteral("ConvertFBX(%1,%2)").arg(uid, absoluteFilePath));
}

void CKYVConvertMgr::CancleAllConvert()
{
    Fakes::Called(QStringLiteral("CancleAllConvert()"));
}

} // namespace KYVConvertCommon
