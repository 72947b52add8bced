// SPDX-License-Identifier: MIT
#include "road/browser.h"

#include <QDesktopServices>
#include <QProcess>
#include <QTemporaryDir>

namespace road
{

namespace
{

constexpr int longest = 180000; ///< ms; models are drawn without a graphics card

} // namespace

Browser::Browser()
{
    QDesktopServices::setUrlHandler("http", this, "browse");
}

Browser::~Browser()
{
    QDesktopServices::unsetUrlHandler("http");
}

Browser::Look Browser::look() const
{
    const QTemporaryDir folder;
    if (m_page.isEmpty() || !folder.isValid())
        return {};
    const QString page = folder.filePath("page.png");
    const QString models = folder.filePath("models.png");
    QProcess browser;
    browser.setProcessChannelMode(QProcess::MergedChannels);
    browser.start("node", {TORVO_LOOK_SCRIPT, m_page.toString(QUrl::FullyEncoded), page, models});
    if (!browser.waitForFinished(longest) || browser.exitCode() != 0) {
        qWarning("%s", browser.readAll().constData());
        return {};
    }
    return {QImage(page), QImage(models)};
}

} // namespace road
