// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

/// The name of the tab that is the home screen itself; every other tab is named by its project's guid.
inline constexpr QLatin1String mainTabName("main");

/// The model behind the tab strip. Changed by CTabMgr alone, published as "tab". GUI thread.
class CTab : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList tabList READ tabList NOTIFY tabListChanged)
    Q_PROPERTY(QString currentTab READ currentTab NOTIFY currentTabChanged)

public:
    explicit CTab(QObject* parent = nullptr);

    /// The open project tabs in the order in which they were opened; the home tab is not among them.
    [[nodiscard]] QStringList tabList() const { return m_tabList; }

    /// May for a moment name a tab that has left the list already.
    [[nodiscard]] QString currentTab() const { return m_currentTab; }

    /// The text of a tab: the name of its project, empty when the project is not there any more. Not for the
    /// home tab.
    Q_INVOKABLE QString idConvertToName(const QString& id) const;

    void addTab(const QString& name);
    void removeTab(const QString& name);
    void setCurrentTab(const QString& name);

signals:
    void tabListChanged();
    void currentTabChanged();

private:
    QStringList m_tabList;
    QString m_currentTab = mainTabName;
};

} // namespace TorvoEditor
