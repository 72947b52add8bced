// SPDX-License-Identifier: MIT
#include "editortab/window/messagebar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>
#include <QVariant>

namespace editortab
{

namespace
{

constexpr int shortly = 4000;
constexpr int longer = 8000;

} // namespace

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("messageBar"));
    setAccessibleName(tr("消息"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 6, 6);
    m_text->setWordWrap(true);
    row->addWidget(m_text, 1);
    auto* close = new QToolButton(this);
    close->setText(QStringLiteral("✕"));
    close->setAccessibleName(tr("关闭消息"));
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    row->addWidget(close);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::hide);
    hide();
}

void MessageBar::info(const QString& text)
{
    show("info", text, shortly);
}

void MessageBar::warn(const QString& text)
{
    show("warn", text, longer);
}

void MessageBar::error(const QString& text)
{
    show("error", text, 0);
}

void MessageBar::show(const char* kind, const QString& text, int milliseconds)
{
    setProperty("kind", QString::fromLatin1(kind));
    style()->unpolish(this);
    style()->polish(this);
    m_text->setText(text);
    setAccessibleDescription(text);
    QFrame::show();
    if (milliseconds > 0)
        m_timer.start(milliseconds);
    else
        m_timer.stop();
}

} // namespace editortab
