// SPDX-License-Identifier: MIT
#include "childwindow.h"

#include <cstdint>
#include <cstdlib>

#include <QPainter>

#include <xcb/xcb.h>

ChildWindow::ChildWindow()
{
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setGeometry(300, 300, 200, 150);
}

void ChildWindow::resizeInPlace(int width, int height)
{
    auto* connection = xcb_connect(nullptr, nullptr);
    const std::uint32_t size[] = {static_cast<std::uint32_t>(width * devicePixelRatio()),
                                  static_cast<std::uint32_t>(height * devicePixelRatio())};
    const auto request =
        xcb_configure_window_checked(connection, static_cast<xcb_window_t>(winId()),
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    std::free(xcb_request_check(connection, request));
    xcb_disconnect(connection);
}

void ChildWindow::exposeEvent(QExposeEvent* event)
{
    QRasterWindow::exposeEvent(event);
    if (m_isReported || !isExposed())
        return;
    m_isReported = true;
    emit shown(winId());
}

void ChildWindow::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(QRect(QPoint(), size()), QColor(colour));
}
