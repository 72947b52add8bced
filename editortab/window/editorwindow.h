// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/document/document.h"
#include "editortab/document/modelloader.h"
#include "editortab/home/homelink.h"
#include "editortab/window/floorlist.h"
#include "editortab/window/objecttree.h"

#include <memory>

#include <QSortFilterProxyModel>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListView;
class QTreeView;

namespace editortab
{

class MessageBar;
class PropertyPanel;
class SceneView;

/// The window of the opened project, and what it does when the home says something. GUI thread.
class EditorWindow : public QWidget
{
    Q_OBJECT

public:
    EditorWindow(const StartMessage& start, HomeLink& home);
    ~EditorWindow() override;

    /// Opens the project and begins to read its models.
    void openProject();

signals:
    /// The program is to end.
    void finished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void placeOverlays();
    void build();
    [[nodiscard]] QWidget* buildTreePanel();
    [[nodiscard]] QWidget* buildFloorPanel();
    [[nodiscard]] QWidget* buildNewProjectButton();
    [[nodiscard]] QWidget* buildCentre();
    void connectParts();
    /// Shows the document as it is now, and begins to read its models.
    void showDocument();
    /// Shows what others have brought into the project meanwhile.
    void reload();
    void takeModel(int index, const SharedModel& model);
    void applyFloors(int model);
    void obey(const QString& name, const QJsonObject& message);
    void takeSize(const QJsonObject& message);
    void save();
    /// Asks about unsaved changes. False when the user does not want to close.
    [[nodiscard]] bool mayClose();
    void showHelp();
    void showSelection(int model, int node);
    void selectInTree(int model, int node);
    void updateStatus();

    StartMessage m_start;
    HomeLink& m_home;
    Document m_document;
    std::unique_ptr<ModelLoader> m_loader;
    ObjectTree m_tree;
    QSortFilterProxyModel m_filter;
    FloorList m_floors;
    QWidget* m_floorPanel = nullptr; ///< seen when there are floors
    QTreeView* m_treeView = nullptr;
    QLineEdit* m_search = nullptr;
    SceneView* m_view = nullptr;
    QWidget* m_viewBar = nullptr;
    MessageBar* m_messages = nullptr;
    PropertyPanel* m_properties = nullptr;
    QLabel* m_status = nullptr;
    std::vector<int> m_viewModels; ///< by model of the document: its number in the view, -1 until it is there
    std::vector<SharedModel> m_loaded;
    int m_modelsDone = 0;
    int m_timesShown = 0; ///< that the document has been shown anew
    bool m_isWindowReported = false;
    bool m_isDiscarding = false; ///< the user gave up the changes
};

} // namespace editortab
