// SPDX-License-Identifier: MIT
#include "shell/webview/webwindow.h"

#include "shell/webview/guardedpage.h"
#include "shell/webview/requestguard.h"
#include "shell/webview/weblog.h"

#include <utility>

#include <QCloseEvent>
#include <QFileInfo>
#include <QPointer>
#include <QVBoxLayout>
#include <QWebEngineDownloadItem>
#include <QWebEngineView>

namespace shell
{

namespace
{

constexpr QSize smallest(480, 320);
constexpr int patienceWithThePage = 5000; ///< milliseconds until a page that does not answer is closed
const QColor ground(0x23, 0x23, 0x25);    ///< what is seen before the page has drawn itself

} // namespace

WebWindow::WebWindow(const PageFolder& folder, const QUrl& page, QWebChannel* channel, Tell tell)
    : m_view(new QWebEngineView(this))
    , m_page(nullptr)
    , m_tell(std::move(tell))
{
    setAttribute(Qt::WA_DeleteOnClose);
    // The program ends with the home window, whatever pages are still open.
    setAttribute(Qt::WA_QuitOnClose, false);
    setMinimumSize(smallest);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    m_view->setContextMenuPolicy(Qt::NoContextMenu);

    m_profile.setUrlRequestInterceptor(new RequestGuard(folder, &m_profile));
    refuseDownloads();
    m_page = new GuardedPage(&m_profile, page, channel, m_view);
    m_page->setBackgroundColor(ground);
    m_view->setPage(m_page);
    watchPage(page);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceWithThePage);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        qCWarning(lcWeb) << "a page does not answer, its window is closed";
        closeForGood();
    });
}

WebWindow::~WebWindow()
{
    // The profile is a member, the view a child, which would go after it.
    delete m_view;
}

void WebWindow::closeEvent(QCloseEvent* event)
{
    if (m_mayClose) {
        event->accept();
        return;
    }
    event->ignore();
    askPage();
}

void WebWindow::refuseDownloads()
{
    connect(&m_profile, &QWebEngineProfile::downloadRequested, this, [](QWebEngineDownloadItem* download) {
        qCWarning(lcWeb) << "refused, a page wanted to save" << LogText(download->url());
        download->cancel();
    });
}

void WebWindow::watchPage(const QUrl& address)
{
    connect(m_page, &QWebEnginePage::titleChanged, this, &QWidget::setWindowTitle);
    connect(m_page, &QWebEnginePage::windowCloseRequested, this, &WebWindow::closeForGood);
    connect(m_page, &QWebEnginePage::loadFinished, this, [this, address](bool success) {
        // A refused navigation ends in the same way, and has been logged where it was refused.
        if (!success && !QFileInfo(address.toLocalFile()).isReadable())
            m_tell(QStringLiteral("页面无法打开：%1。").arg(address.toLocalFile()));
    });
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus status, int exitCode) {
                if (status == QWebEnginePage::NormalTerminationStatus)
                    return;
                qCWarning(lcWeb) << "the page's process has ended with" << exitCode;
                m_tell(QStringLiteral("网页进程意外退出，未保存的修改已丢失。请重新打开页面。"));
                closeForGood();
            });
}

void WebWindow::askPage()
{
    if (m_patience.isActive())
        return;
    m_patience.start();
    const QPointer<WebWindow> self = this;
    m_page->runJavaScript(QStringLiteral("typeof pageMayClose !== 'function' || pageMayClose() === true"),
                          [self](const QVariant& mayClose) {
                              if (self.isNull())
                                  return;
                              self->m_patience.stop();
                              // No answer at all: there is no page that could hold anything.
                              if (!mayClose.isValid() || mayClose.toBool())
                                  self->closeForGood();
                          });
}

void WebWindow::closeForGood()
{
    m_mayClose = true;
    m_patience.stop();
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

} // namespace shell
