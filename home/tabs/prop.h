// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// The property template on the info card, as a page of the host's web view reads and writes it. Holds no
/// text of its own. Published as "propObject", to the screens and on the channel of each web view. GUI
/// thread.
class Prop : public QObject
{
    Q_OBJECT

public:
    explicit Prop(QObject* parent = nullptr);

public slots:
    /// The template of the project that the card shows; empty without one.
    [[nodiscard]] QString getProp() const;
    /// Gives the card's project another template; the card's own button saves it.
    void setProp(const QString& prop);
};

} // namespace TorvoEditor
