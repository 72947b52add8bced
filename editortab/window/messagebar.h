// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QTimer>

class QLabel;

namespace editortab
{

/// A line over the view that says something and goes by itself; errors stay until they are closed.
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent = nullptr);

    void info(const QString& text);
    void warn(const QString& text);
    void error(const QString& text);

private:
    void show(const char* kind, const QString& text, int milliseconds);

    QLabel* m_text;
    QTimer m_timer;
};

} // namespace editortab
