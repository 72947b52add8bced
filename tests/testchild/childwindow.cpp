// SPDX-License-Identifier: MIT
#include "childwindow.h"

#include <QPainter>

ChildWindow::ChildWindow()
{
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setGeometry(300, 300, 200, 150);
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
