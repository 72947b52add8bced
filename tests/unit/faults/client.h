// SPDX-License-Identifier: MIT
#pragma once

#include "realserver.h"

#include <chrono>

#include <QElapsedTimer>

/// How a transfer ended.
struct Outcome {
    bool isDone = false;
    bool hasCrashed = false; ///< or was killed
    std::uint64_t written = 0;
    QString words; ///< why it has failed
    std::chrono::microseconds length{0};

    /// The code of the failure, 0 for none.
    [[nodiscard]] int code() const;
};

/// A transfer in a process of its own.
class Client
{
public:
    void start(const QStringList& arguments);
    void sleepUntil(std::chrono::microseconds moment) const; ///< after the start
    /// Gives it so much time to end.
    void letGo(std::chrono::microseconds time);
    void kill();
    [[nodiscard]] bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    [[nodiscard]] Outcome wait();

private:
    BoundProcess m_process;
    QElapsedTimer m_timer;
};
