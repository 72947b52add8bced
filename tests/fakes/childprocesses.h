// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Fakes
{

/// The process ids of the children beside the test program ("TorvoEditorTab.exe") that are running.
[[nodiscard]] QList<qint64> RunningChildren();

/// What a child of the tab has been sent, one line of JSON a message; the folder is the one that
/// TESTCHILD_LOG names.
[[nodiscard]] QStringList ReceivedBy(const QString& tabName);

/// The start message of the tab's child as it came, empty as long as it has not started.
[[nodiscard]] QByteArray StartMessageOf(const QString& tabName);

/// Of what a child has been sent, the values of "operator" alone.
[[nodiscard]] QStringList OperatorsReceivedBy(const QString& tabName);

} // namespace Fakes
