// SPDX-License-Identifier: MIT
#pragma once

#include <QRasterWindow>

/// A window of one colour, which reports its native number once it is on the screen: before that, the first
/// showing would undo where the home has put it.
class ChildWindow : public QRasterWindow
{
    Q_OBJECT

public:
    ChildWindow();

    static constexpr QRgb colour = 0xff2060c0;

signals:
    void shown(quint64 id);

protected:
    void exposeEvent(QExposeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_isReported = false;
};
