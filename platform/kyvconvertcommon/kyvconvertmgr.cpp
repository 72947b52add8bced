// SPDX-License-Identifier: MIT
#include "KYVConvertCommon/kyvconvertmgr.h"

#include "kyvconvertcommon/conversionqueue.h"

#include <algorithm>

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <unistd.h>

namespace KYVConvertCommon
{

namespace
{

/// Of the machine's memory, what all conversions together may occupy.
constexpr quint64 memoryShare = 75;

quint64 MebibytesOfMachine()
{
    const auto pages = sysconf(_SC_PHYS_PAGES);
    const auto pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? static_cast<quint64>(pages) * static_cast<quint64>(pageSize) >> 20U
                                     : 0;
}

ConversionSettings SettingsOfMachine()
{
    const QString here = QCoreApplication::applicationDirPath();
    ConversionSettings settings;
    settings.converter = here + QStringLiteral("/kyv-convert");
    settings.dataFolder = here + QStringLiteral("/data");
    settings.atOnce = std::max(1, QThread::idealThreadCount());
    settings.mebibytes = MebibytesOfMachine() * memoryShare / 100 / static_cast<quint64>(settings.atOnce);
    return settings;
}

/// Models are called as the list shows them.
QString NameOption(const QString& file)
{
    return QStringLiteral("--name=") + QFileInfo(file).baseName();
}

} // namespace

class CKYVConvertMgr::Engine
{
public:
    explicit Engine(CKYVConvertMgr* mgr)
        : m_queue(SettingsOfMachine())
    {
        QObject::connect(&m_queue, &ConversionQueue::stateChanged, mgr,
                         &CKYVConvertMgr::sigConvertKyvStateNty);
    }

    ConversionQueue& queue() { return m_queue; }

private:
    ConversionQueue m_queue;
};

CKYVConvertMgr::CKYVConvertMgr(QObject* parent)
    : QObject(parent)
{
}

CKYVConvertMgr::~CKYVConvertMgr() = default;

void CKYVConvertMgr::Init()
{
    if (!m_engine)
        m_engine = std::make_unique<Engine>(this);
}

void CKYVConvertMgr::UnInit()
{
    m_engine.reset();
}

void CKYVConvertMgr::ConvertKyv(const QString& uid, const QString& absoluteFilePath, int mode)
{
    if (m_engine)
        m_engine->queue().add(
            {uid, absoluteFilePath, {NameOption(absoluteFilePath), QStringLiteral("--mode=%1").arg(mode)}});
}

void CKYVConvertMgr::ConvertDwg(const QString& uid, const QString& absoluteFilePath)
{
    if (m_engine)
        m_engine->queue().add({uid, absoluteFilePath, {NameOption(absoluteFilePath)}});
}

void CKYVConvertMgr::ConvertFBX(const QString& uid, const QString& absoluteFilePath)
{
    if (m_engine)
        m_engine->queue().add({uid, absoluteFilePath, {NameOption(absoluteFilePath)}});
}

void CKYVConvertMgr::CancleAllConvert()
{
    if (m_engine)
        m_engine->queue().cancelAll();
}

} // namespace KYVConvertCommon
