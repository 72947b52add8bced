// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QUrl>

namespace shell
{

Q_DECLARE_LOGGING_CATEGORY(lcWeb)

/// An address as the log shows it: an address may hold a whole document.
[[nodiscard]] QString LogText(const QUrl& url);

} // namespace shell
