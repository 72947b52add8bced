// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QObject>
#include <QUrl>

namespace road
{

/// Stands where the desktop's browser would be while it lives: keeps the page that the program asks for, and
/// shows it in a browser without a window. GUI thread.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser();
    ~Browser() override;

    /// The page that was asked for last; empty when none was.
    [[nodiscard]] QUrl page() const { return m_page; }

    struct Look {
        QImage page;   ///< null when the models did not come
        QImage models; ///< the part of the page in which they stand
    };
    /// How the page of a project looks when all of its models have come.
    [[nodiscard]] Look look() const;

public slots:
    void browse(const QUrl& page) { m_page = page; }

private:
    QUrl m_page;
};

} // namespace road
