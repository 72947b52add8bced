// SPDX-License-Identifier: MIT
#include "kyvconvertcommon/conversionrun.h"

#include <csignal>
#include <utility>

#include <QDir>
#include <QFileInfo>

#include <sys/prctl.h>

namespace KYVConvertCommon
{

void BoundProcess::setupChildProcess()
{
    // The converter cleans up when it is asked to end.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

QString ConversionRun::workFolder(const QString& dataFolder)
{
    return dataFolder + QStringLiteral("/conversions");
}

ConversionRun::ConversionRun(Conversion conversion, const ConversionSettings& settings, QObject* parent)
    : QObject(parent)
    , m_conversion(std::move(conversion))
    , m_settings(settings)
    , m_folder(workFolder(settings.dataFolder) + '/' + m_conversion.uid)
{
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            [this] { m_words.take(m_process.readAllStandardOutput().toStdString()); });
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &ConversionRun::finish);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish();
    });
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        m_isLate = true;
        m_process.kill();
    });
}

ConversionRun::~ConversionRun()
{
    m_process.disconnect(this);
    if (m_process.state() != QProcess::NotRunning) {
        stop();
        waitUntilGone();
    }
    QDir(m_folder).removeRecursively();
    // Goes with the last one; while others are in it this does nothing.
    QDir().rmdir(workFolder(m_settings.dataFolder));
}

void ConversionRun::start()
{
    if (m_isStopped) {
        finish();
        return;
    }
    if (!QDir().mkpath(m_folder)) {
        m_words.take("{\"error\": \"the folder for it cannot be made\"}\n");
        finish();
        return;
    }
    QStringList arguments = m_conversion.options;
    const auto seconds = std::chrono::duration<double>(m_settings.longest).count();
    arguments << QStringLiteral("--time=%1").arg(seconds)
              << QStringLiteral("--memory=%1").arg(m_settings.mebibytes) << QStringLiteral("--")
              << m_conversion.file << m_folder + QStringLiteral("/model");
    // The converter keeps the limit by itself, unless it hangs.
    m_limit.start(m_settings.longest + m_settings.patience);
    m_process.start(m_settings.converter, arguments);
}

void ConversionRun::stop()
{
    m_isStopped = true;
    m_process.terminate();
    m_limit.start(m_settings.patience);
}

void ConversionRun::waitUntilGone()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    if (m_process.waitForFinished(static_cast<int>(m_settings.patience.count())))
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void ConversionRun::finish()
{
    if (m_isEnded)
        return;
    m_isEnded = true;
    m_limit.stop();
    emit ended();
}

QString ConversionRun::failure() const
{
    if (m_process.error() == QProcess::FailedToStart)
        return QStringLiteral("the converter could not be started");
    if (m_isLate)
        return QStringLiteral("the converter does not end");
    if (!m_words.reason().empty())
        return QString::fromStdString(m_words.reason());
    if (m_process.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("something has ended the converter");
    if (m_process.exitCode() != 0)
        return QStringLiteral("the converter has ended without a reason");
    return {};
}

QString ConversionRun::deliver()
{
    if (auto reason = failure(); !reason.isEmpty())
        return reason;
    const QString model = m_folder + QStringLiteral("/model");
    if (!QFileInfo(model).isDir())
        return QStringLiteral("the converter has made no model");
    const QString target = m_settings.dataFolder + QStringLiteral("/proj_") + m_conversion.uid;
    if (!QDir().rename(model, target))
        return QStringLiteral("the model cannot be moved to ") + target;
    return {};
}

} // namespace KYVConvertCommon
