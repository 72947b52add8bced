// SPDX-License-Identifier: MIT
#pragma once

#include "road/homescreen.h"

namespace road
{

// The labels of the card's rows that a test types into.
inline const QString nameRow = QStringLiteral("工程名称");
inline const QString regionRow = QStringLiteral("所属行政区");
inline const QString templateRow = QStringLiteral("属性模板");
inline const QString iotRow = QStringLiteral("物联资产编号");

/// What a person does on the card at the right edge that shows the facts of one project, and reads there. GUI
/// thread.
class InfoCard
{
public:
    InfoCard(Desktop& desktop, HomeScreen& home)
        : m_desktop(desktop)
        , m_home(home)
    {
    }

    /// Opens it by the button of a project's card, and waits until it stands.
    [[nodiscard]] bool openFor(const QString& guid);
    /// Opens it by a single click in the tree.
    [[nodiscard]] bool openFromTree(const QString& guid);
    [[nodiscard]] bool accept() { return leaveBy(QStringLiteral("infoOkBtn")); }
    [[nodiscard]] bool cancel() { return leaveBy(QStringLiteral("infoCancelBtn")); }
    /// Says yes to the question, too.
    [[nodiscard]] bool deleteLocalData();

    /// The labels of the rows, from the top.
    [[nodiscard]] static QStringList rows();
    [[nodiscard]] static QString valueOf(const QString& row);
    /// Puts a text into a row in the place of what is there.
    [[nodiscard]] bool retype(const QString& row, const QString& text);
    [[nodiscard]] bool clickIn(const QString& row, const QString& objectName);

private:
    [[nodiscard]] bool awaitStanding();
    [[nodiscard]] bool leaveBy(const QString& button);

    Desktop& m_desktop;
    HomeScreen& m_home;
};

/// Chooses a row of the list of a region box that can be seen, counted from 0, and tells its name in
/// `chosen`.
[[nodiscard]] bool ChooseRegion(Desktop& desktop, const QString& box, int row, QString& chosen);

} // namespace road
