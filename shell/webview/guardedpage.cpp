// SPDX-License-Identifier: MIT
#include "shell/webview/guardedpage.h"

#include "shell/webview/weblog.h"

#include <QFile>
#include <QWebChannel>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

namespace shell
{

namespace
{

/// The client side of the channel, which Qt carries with it. A page from a file cannot load it by itself: it
/// may load files of our folder only.
QWebEngineScript ChannelScript()
{
    QFile file(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    if (!file.open(QIODevice::ReadOnly))
        qCWarning(lcWeb) << "the channel's script is missing:" << file.errorString();
    QWebEngineScript script;
    script.setName(QStringLiteral("qwebchannel.js"));
    script.setSourceCode(QString::fromUtf8(file.readAll()));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(false);
    return script;
}

} // namespace

GuardedPage::GuardedPage(QWebEngineProfile* profile, const QUrl& page, QWebChannel* channel, QObject* parent)
    : QWebEnginePage(profile, parent)
    , m_page(page)
{
    restrict();
    refusePermissions();
    giveChannel(channel);
    load(m_page);
}

void GuardedPage::restrict()
{
    auto* rules = settings();
    for (const auto attribute :
         {QWebEngineSettings::LocalContentCanAccessFileUrls,
          QWebEngineSettings::LocalContentCanAccessRemoteUrls, QWebEngineSettings::JavascriptCanOpenWindows,
          QWebEngineSettings::JavascriptCanAccessClipboard, QWebEngineSettings::PluginsEnabled,
          QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::WebGLEnabled,
          QWebEngineSettings::LocalStorageEnabled, QWebEngineSettings::ScreenCaptureEnabled,
          QWebEngineSettings::DnsPrefetchEnabled, QWebEngineSettings::ErrorPageEnabled})
        rules->setAttribute(attribute, false);
    rules->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

void GuardedPage::giveChannel(QWebChannel* channel)
{
    scripts().insert(ChannelScript());
    setWebChannel(channel, QWebEngineScript::MainWorld);
}

void GuardedPage::refusePermissions()
{
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
                qCWarning(lcWeb) << "refused, a page asked for permission" << feature;
            });
    connect(this, &QWebEnginePage::fullScreenRequested, this, [](QWebEngineFullScreenRequest request) {
        request.reject();
        qCWarning(lcWeb) << "refused, a page asked for the whole screen";
    });
    connect(this, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) {
        request.reject();
        qCWarning(lcWeb) << "refused, a page asked for space on the disk";
    });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) {
                request.reject();
                qCWarning(lcWeb) << "refused, a page wanted to handle" << request.scheme();
            });
}

bool GuardedPage::acceptNavigationRequest(const QUrl& url, NavigationType /*type*/, bool isMainFrame)
{
    if (isMainFrame && url.adjusted(QUrl::RemoveFragment) == m_page)
        return true;
    qCWarning(lcWeb) << "refused, a page wanted to go to" << LogText(url);
    return false;
}

QWebEnginePage* GuardedPage::createWindow(WebWindowType /*type*/)
{
    qCWarning(lcWeb) << "refused, a page wanted a window of its own";
    return nullptr;
}

QStringList GuardedPage::chooseFiles(FileSelectionMode /*mode*/, const QStringList& /*oldFiles*/,
                                     const QStringList& /*acceptedMimeTypes*/)
{
    qCWarning(lcWeb) << "refused, a page asked for a file";
    return {};
}

void GuardedPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                           int line, const QString& source)
{
    const QString place = QStringLiteral("%1:%2").arg(QUrl(source).fileName()).arg(line);
    if (level == InfoMessageLevel)
        qCInfo(lcWeb).noquote() << place << message;
    else
        qCWarning(lcWeb).noquote() << place << message;
}

} // namespace shell
