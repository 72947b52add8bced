// SPDX-License-Identifier: MIT
#include "kyvconvertcommon/conversionqueue.h"

#include "KYVConvertCommon/kyvconvertstate.h"
#include "kyvconvertcommon/kyvconvertcommonlog.h"

#include <algorithm>
#include <utility>

#include <QDir>

namespace KYVConvertCommon
{

ConversionQueue::ConversionQueue(ConversionSettings settings, QObject* parent)
    : QObject(parent)
    , m_settings(std::move(settings))
{
    removeWorkFolder();
}

ConversionQueue::~ConversionQueue()
{
    cancelAll();
    // All are asked before one is waited for.
    for (auto* run : std::exchange(m_running, {})) {
        run->disconnect(this);
        run->waitUntilGone();
        delete run;
    }
    removeWorkFolder();
}

void ConversionQueue::add(const Conversion& conversion)
{
    m_waiting.push_back({conversion});
    QMetaObject::invokeMethod(this, &ConversionQueue::advance, Qt::QueuedConnection);
}

void ConversionQueue::cancelAll()
{
    m_waiting.clear();
    for (auto* run : m_running) {
        if (!run->isStopped())
            run->stop();
    }
}

/// Whoever hears of a state may add and cancel, so each loop looks at the lists anew after every word.
void ConversionQueue::advance()
{
    tellWaiting();
    while (!m_waiting.empty() && m_running.size() < static_cast<std::size_t>(m_settings.atOnce))
        startNext();
}

void ConversionQueue::tellWaiting()
{
    const auto isNew = [](const Waiting& waiting) { return !waiting.isTold; };
    for (auto found = std::find_if(m_waiting.begin(), m_waiting.end(), isNew); found != m_waiting.end();
         found = std::find_if(m_waiting.begin(), m_waiting.end(), isNew)) {
        found->isTold = true;
        const auto conversion = found->conversion;
        emit stateChanged(conversion.uid, conversion.file, CKYVConvertState::Waiting);
    }
}

void ConversionQueue::startNext()
{
    const auto conversion = m_waiting.front().conversion;
    m_waiting.pop_front();
    auto* run = new ConversionRun(conversion, m_settings, this);
    m_running.push_back(run);
    connect(run, &ConversionRun::ended, this, [this, run] { onEnded(run); });
    QMetaObject::invokeMethod(run, &ConversionRun::start, Qt::QueuedConnection);
    emit stateChanged(conversion.uid, conversion.file, CKYVConvertState::Converting);
}

void ConversionQueue::onEnded(ConversionRun* run)
{
    std::erase(m_running, run);
    const auto conversion = run->conversion();
    const bool isWanted = !run->isStopped();
    const auto problem = isWanted ? run->deliver() : QString();
    run->deleteLater();
    QMetaObject::invokeMethod(this, &ConversionQueue::advance, Qt::QueuedConnection);
    if (!isWanted)
        return;
    if (!problem.isEmpty())
        qCWarning(kyvConvertCommonLog).noquote()
            << "the conversion of" << conversion.file << "has failed:" << problem;
    emit stateChanged(conversion.uid, conversion.file,
                      problem.isEmpty() ? CKYVConvertState::ConvertFinished
                                        : CKYVConvertState::ConvertFailed);
}

void ConversionQueue::removeWorkFolder() const
{
    QDir(ConversionRun::workFolder(m_settings.dataFolder)).removeRecursively();
}

} // namespace KYVConvertCommon
