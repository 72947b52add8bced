// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageLogger>
#include <QString>
#include <QStringList>

namespace Fakes
{

/// Takes every line of the log while it lives, so that a test can compare lines letter for letter and see
/// that there are no others. One at a time. Lines of any thread are taken.
class LogBook
{
public:
    LogBook();
    LogBook(const LogBook&) = delete;
    LogBook& operator=(const LogBook&) = delete;
    ~LogBook();

    /// The lines since the last call, oldest first, as "debug: text", "info: text", "warning: text".
    QStringList take();

    /// Of the lines that take() would give, those that contain `part`; the book is left as it is.
    [[nodiscard]] QStringList linesWith(const QString& part) const;

private:
    QtMessageHandler m_earlier;
};

} // namespace Fakes
