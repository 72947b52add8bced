// SPDX-License-Identifier: MIT
#include "fakes/logbook.h"

#include <mutex>
#include <utility>

namespace Fakes
{

namespace
{

std::mutex linesMutex; ///< guards the lines
QStringList& Lines()
{
    static QStringList lines;
    return lines;
}

QString LevelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtWarningMsg:
        return QStringLiteral("warning");
    default:
        return QStringLiteral("critical");
    }
}

void TakeLine(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    const std::lock_guard lock(linesMutex);
    Lines().append(LevelName(type) + QStringLiteral(": ") + text);
}

} // namespace

LogBook::LogBook()
    : m_earlier(qInstallMessageHandler(TakeLine))
{
    const std::lock_guard lock(linesMutex);
    Lines().clear();
}

LogBook::~LogBook()
{
    qInstallMessageHandler(m_earlier);
}

QStringList LogBook::take()
{
    const std::lock_guard lock(linesMutex);
    return std::exchange(Lines(), {});
}

QStringList LogBook::linesWith(const QString& part) const
{
    const std::lock_guard lock(linesMutex);
    return Lines().filter(part);
}

} // namespace Fakes
