// SPDX-License-Identifier: MIT
#include "editortab/window/editorwindow.h"

#include "editortab/view/sceneview.h"
#include "editortab/view/viewbar.h"
#include "editortab/window/messagebar.h"
#include "editortab/window/propertypanel.h"
#include "native/nativewindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWindow>

namespace editortab
{

namespace
{

constexpr int panelWidth = 260;
constexpr int overlayMargin = 12;
constexpr int floorRow = 28;
constexpr int mostFloorRows = 8; ///< that are seen without scrolling

} // namespace

EditorWindow::EditorWindow(const StartMessage& start, HomeLink& home)
    : m_start(start)
    , m_home(home)
    , m_document(start)
{
    setObjectName(QStringLiteral("editorWindow"));
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_StyledBackground);
    setGeometry(start.contentRect);
    build();
    connectParts();
    qApp->installEventFilter(this);
}

EditorWindow::~EditorWindow()
{
    qApp->removeEventFilter(this);
}

void EditorWindow::build()
{
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(buildTreePanel());
    splitter->addWidget(buildCentre());
    m_properties = new PropertyPanel(m_document, splitter);
    splitter->addWidget(m_properties);
    splitter->setSizes({panelWidth, width() - 2 * panelWidth, panelWidth});
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setStretchFactor(2, 0);

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("statusLine"));
    m_status->setFixedHeight(26);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(splitter, 1);
    column->addWidget(m_status);
    m_messages = new MessageBar(this);
}

QWidget* EditorWindow::buildTreePanel()
{
    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("leftPanel"));
    panel->setAttribute(Qt::WA_StyledBackground);
    auto* title = new QLabel(tr("对象"), panel);
    title->setObjectName(QStringLiteral("panelTitle"));
    m_search = new QLineEdit(panel);
    m_search->setObjectName(QStringLiteral("objectSearch"));
    m_search->setPlaceholderText(tr("搜索对象"));
    m_search->setAccessibleName(tr("搜索对象"));
    m_search->setClearButtonEnabled(true);
    m_filter.setSourceModel(&m_tree);
    m_filter.setRecursiveFilteringEnabled(true);
    m_filter.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_treeView = new QTreeView(panel);
    m_treeView->setObjectName(QStringLiteral("objectTree"));
    m_treeView->setAccessibleName(tr("对象"));
    m_treeView->setModel(&m_filter);
    m_treeView->setHeaderHidden(true);
    m_treeView->setUniformRowHeights(true);

    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(12, 12, 0, 0);
    column->setSpacing(8);
    column->addWidget(title);
    auto* searchRow = new QHBoxLayout;
    searchRow->setContentsMargins(0, 0, 12, 0);
    searchRow->addWidget(m_search);
    column->addLayout(searchRow);
    column->addWidget(m_treeView, 1);
    column->addWidget(buildFloorPanel());
    auto* newProjectRow = new QHBoxLayout;
    newProjectRow->setContentsMargins(0, 0, 12, 12);
    newProjectRow->addWidget(buildNewProjectButton());
    column->addLayout(newProjectRow);
    return panel;
}

QWidget* EditorWindow::buildFloorPanel()
{
    m_floorPanel = new QWidget(this);
    auto* title = new QLabel(tr("楼层"), m_floorPanel);
    title->setObjectName(QStringLiteral("panelTitle"));
    auto* list = new QListView(m_floorPanel);
    list->setObjectName(QStringLiteral("floorList"));
    list->setAccessibleName(tr("楼层"));
    list->setAccessibleDescription(tr("空格键显示或隐藏楼层"));
    list->setModel(&m_floors);
    list->setUniformItemSizes(true);
    title->setBuddy(list);
    auto* column = new QVBoxLayout(m_floorPanel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(title);
    column->addWidget(list);
    m_floorPanel->hide();
    connect(&m_floors, &FloorList::modelReset, list, [this, list] {
        list->setFixedHeight(qMin(m_floors.rowCount(), mostFloorRows) * floorRow + 2);
        m_floorPanel->setVisible(m_floors.rowCount() > 0);
    });
    connect(&m_floors, &FloorList::visibilityChanged, this, [this] {
        for (std::size_t i = 0; i < m_loaded.size(); ++i)
            applyFloors(static_cast<int>(i));
    });
    return m_floorPanel;
}

QWidget* EditorWindow::buildNewProjectButton()
{
    auto* button = new QPushButton(tr("新建BIM工程"), this);
    button->setObjectName(QStringLiteral("newProjectButton"));
    button->setToolTip(
        tr("在主页中新建 (%1)").arg(QKeySequence(QKeySequence::New).toString(QKeySequence::NativeText)));
    button->setShortcut(QKeySequence::New);
    connect(button, &QPushButton::clicked, &m_home, &HomeLink::askForNewProject);
    return button;
}

QWidget* EditorWindow::buildCentre()
{
    m_view = new SceneView(this);
    m_viewBar = new ViewBar(*m_view, m_view);
    return m_view;
}

void EditorWindow::connectParts()
{
    connect(&m_home, &HomeLink::received, this, &EditorWindow::obey);
    connect(m_search, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_filter.setFilterFixedString(text);
        if (!text.isEmpty())
            m_treeView->expandAll();
    });
    connect(m_treeView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                int model = -1;
                int node = -1;
                m_tree.placeOf(m_filter.mapToSource(current), model, node);
                showSelection(model, node);
            });
    connect(&m_tree, &ObjectTree::visibilityChanged, this, [this](int model, int node, bool isVisible) {
        m_view->setVisible3D(m_viewModels[static_cast<std::size_t>(model)], node, isVisible);
    });
    connect(m_view, &SceneView::picked, this, &EditorWindow::selectInTree);
    connect(m_view, &SceneView::unusable, m_messages, &MessageBar::error);
    connect(m_properties, &PropertyPanel::saveRequested, this, &EditorWindow::save);
    connect(&m_document, &Document::modifiedChanged, this, &EditorWindow::updateStatus);
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, this, &EditorWindow::save);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_search,
            [this] { m_search->setFocus(Qt::ShortcutFocusReason); });
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, &EditorWindow::reload);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this,
            &EditorWindow::showHelp);
}

void EditorWindow::openProject()
{
    const QString problem = m_document.open();
    if (!problem.isEmpty()) {
        m_messages->error(problem);
        m_status->setText(problem);
        return;
    }
    m_properties->refresh();
    showDocument();
}

void EditorWindow::reload()
{
    if (!m_document.reload())
        return;
    m_loader.reset();
    m_view->clear();
    m_properties->showSelection({}, {});
    m_properties->refresh();
    showDocument();
}

void EditorWindow::showDocument()
{
    m_tree.setDocument(m_document);
    m_floors.setDocument(m_document);
    m_treeView->expandToDepth(0);
    m_modelsDone = 0;
    m_viewModels.assign(m_document.models().size(), -1);
    m_loaded.assign(m_document.models().size(), nullptr);
    QStringList files;
    for (const auto& model : m_document.models())
        files.append(model.file);
    m_loader = std::make_unique<ModelLoader>(files);
    // What an earlier loader has still sent off comes after it has gone.
    const int shown = ++m_timesShown;
    connect(m_loader.get(), &ModelLoader::loaded, this, [this, shown](int index, const SharedModel& model) {
        if (shown == m_timesShown)
            takeModel(index, model);
    });
    connect(m_loader.get(), &ModelLoader::failed, this, [this, shown](int index, const QString& reason) {
        if (shown != m_timesShown)
            return;
        ++m_modelsDone;
        const auto& model = m_document.models()[static_cast<std::size_t>(index)];
        m_tree.setProblem(index, reason);
        m_messages->error(tr("模型“%1”无法显示：%2").arg(model.name, reason));
        updateStatus();
    });
    m_loader->start();
    updateStatus();
}

void EditorWindow::takeModel(int index, const SharedModel& model)
{
    ++m_modelsDone;
    const auto number = static_cast<std::size_t>(index);
    const auto& building =
        m_document.buildings()[static_cast<std::size_t>(m_document.models()[number].building)];
    m_loaded[number] = model;
    m_viewModels[number] = m_view->addModel(model, building.place);
    applyFloors(index);
    m_tree.setNodes(index, *model);
    m_treeView->expandToDepth(1);
    updateStatus();
}

void EditorWindow::applyFloors(int model)
{
    const auto number = static_cast<std::size_t>(model);
    if (m_loaded[number])
        m_view->setOnHiddenFloor(m_viewModels[number],
                                 m_floors.hiddenNodes(m_document, model, *m_loaded[number]));
}

void EditorWindow::updateStatus()
{
    const int models = static_cast<int>(m_document.models().size());
    std::size_t triangles = 0;
    std::size_t lines = 0;
    for (const auto& model : m_loaded) {
        if (!model)
            continue;
        for (const auto& part : model->parts) {
            triangles += part.triangles();
            lines += part.isLines ? part.indexCount / part.cornersPerPiece() : 0;
        }
    }
    QString text = m_modelsDone < models ? tr("正在读取模型 %1 / %2").arg(m_modelsDone).arg(models)
                                         : tr("%1 个模型，%2 个三角面").arg(models).arg(triangles);
    if (lines > 0)
        text += tr("，%1 条线").arg(lines);
    if (m_document.isModified())
        text += tr("　●　有未保存的修改");
    m_status->setText(text);
}

void EditorWindow::showSelection(int model, int node)
{
    const bool isModel = model >= 0 && m_loaded[static_cast<std::size_t>(model)];
    m_view->select(isModel ? m_viewModels[static_cast<std::size_t>(model)] : -1, node);
    if (!isModel) {
        m_properties->showSelection({}, {});
        return;
    }
    const auto& shown = *m_loaded[static_cast<std::size_t>(model)];
    const auto& entry = m_document.models()[static_cast<std::size_t>(model)];
    const QString name =
        node < 0 ? entry.name : QString::fromStdString(shown.nodes[static_cast<std::size_t>(node)].name);
    std::size_t triangles = 0;
    for (const auto& part : shown.parts) {
        if (node < 0 || static_cast<int>(part.node) == node)
            triangles += part.triangles();
    }
    m_properties->showSelection(name, tr("所属模型：%1\n三角面：%2").arg(entry.name).arg(triangles));
}

void EditorWindow::selectInTree(int viewModel, int node)
{
    int model = -1;
    for (std::size_t i = 0; i < m_viewModels.size(); ++i) {
        if (viewModel >= 0 && m_viewModels[i] == viewModel)
            model = static_cast<int>(i);
    }
    const auto index = m_filter.mapFromSource(m_tree.indexOf(model, node));
    if (index.isValid()) {
        m_treeView->setCurrentIndex(index);
        m_treeView->scrollTo(index);
    } else {
        m_treeView->setCurrentIndex({});
        showSelection(model, node);
    }
}

void EditorWindow::obey(const QString& name, const QJsonObject& message)
{
    const QString text = message.value(QLatin1String("value")).toString();
    if (name == QLatin1String("show") || name == QLatin1String("showNormal")) {
        show();
        raise();
        Native::FocusWindow(winId());
        reload();
    } else if (name == QLatin1String("hide")) {
        hide();
    } else if (name == QLatin1String("resize")) {
        takeSize(message);
    } else if (name == QLatin1String("move")) {
        Native::AnnouncePosition(winId());
    } else if (name == QLatin1String("mainQuit")) {
        if (message.value(QLatin1String("bSaveProj")).toBool())
            save();
        else
            m_isDiscarding = true;
    } else if (name == QLatin1String("quitRequest")) {
        if (mayClose())
            m_home.agreeToClose();
    } else if (name == QLatin1String("quit")) {
        emit finished();
    } else if (name == QLatin1String("showHelp")) {
        showHelp();
    } else if (name == QLatin1String("showMenu")) {
        m_viewBar->show();
    } else if (name == QLatin1String("hideMenu")) {
        m_viewBar->hide();
    } else if (name == QLatin1String("info")) {
        m_messages->info(text);
    } else if (name == QLatin1String("warn")) {
        m_messages->warn(text);
    } else if (name == QLatin1String("error")) {
        m_messages->error(text);
    }
}

void EditorWindow::takeSize(const QJsonObject& message)
{
    const int w = message.value(QLatin1String("w")).toInt();
    const int h = message.value(QLatin1String("h")).toInt();
    if (w <= 0 || h <= 0)
        return;
    // Only the size: the place inside the home window is the home's to give, and Qt would send a place on the
    // screen.
    const double scale = devicePixelRatioF();
    Native::ResizeWindow(winId(), static_cast<int>(w * scale), static_cast<int>(h * scale));
    Native::AnnouncePosition(winId());
}

void EditorWindow::save()
{
    if (!m_document.isModified())
        return;
    if (!m_document.save()) {
        m_messages->error(m_document.problem());
        return;
    }
    m_properties->refresh();
    m_messages->info(tr("工程已保存。"));
    m_home.reportSaved(m_document.guid());
}

bool EditorWindow::mayClose()
{
    if (!m_document.isModified())
        return true;
    QMessageBox question(QMessageBox::Question, tr("关闭工程"),
                         tr("工程“%1”有未保存的修改。\n是否保存？").arg(m_document.name()),
                         QMessageBox::NoButton, this);
    auto* saveButton = question.addButton(tr("保存"), QMessageBox::AcceptRole);
    auto* discardButton = question.addButton(tr("不保存"), QMessageBox::DestructiveRole);
    question.addButton(tr("取消"), QMessageBox::RejectRole);
    question.setDefaultButton(saveButton);
    Native::AnnouncePosition(winId());
    m_home.reportDialog(true);
    question.exec();
    m_home.reportDialog(false);
    if (question.clickedButton() == saveButton) {
        save();
        return !m_document.isModified();
    }
    m_isDiscarding = question.clickedButton() == discardButton;
    return m_isDiscarding;
}

void EditorWindow::showHelp()
{
    QMessageBox help(QMessageBox::Information, tr("操作帮助"),
                     tr("左键拖动：旋转\n中键、右键或 "
                        "Shift+左键拖动：平移\n滚轮：缩放\n单击：选中对象，双击：放大到选中对象\n\n"
                        "F 适应全部　Z 适应选中\n0 轴测　7 俯视　1 正视　3 侧视\nCtrl+S 保存　Ctrl+F "
                        "搜索　Ctrl+N 新建BIM工程\nF5 重新读取工程中的模型"),
                     QMessageBox::Ok, this);
    Native::AnnouncePosition(winId());
    m_home.reportDialog(true);
    help.exec();
    m_home.reportDialog(false);
}

bool EditorWindow::eventFilter(QObject* watched, QEvent* event)
{
    // The home may take the window only when it has been shown once: showing it later would undo the home's
    // placing.
    if (event->type() == QEvent::Expose && watched == windowHandle() && windowHandle()->isExposed() &&
        !m_isWindowReported) {
        m_isWindowReported = true;
        m_home.reportWindow(static_cast<quint64>(winId()));
    }
    // The view changes its size with the window, and with the panels beside it.
    if (event->type() == QEvent::Resize && watched == m_view)
        placeOverlays();
    // No window manager gives the keyboard to a window inside another program's window.
    if (event->type() == QEvent::MouseButtonPress && watched->isWindowType() && watched == windowHandle())
        Native::FocusWindow(winId());
    return QWidget::eventFilter(watched, event);
}

void EditorWindow::placeOverlays()
{
    const QRect area(m_view->mapTo(this, QPoint()), m_view->size());
    m_viewBar->adjustSize();
    m_viewBar->move(area.width() - m_viewBar->width() - overlayMargin, overlayMargin);
    m_messages->setGeometry(area.x() + overlayMargin, overlayMargin + 44,
                            qMax(200, area.width() - 2 * overlayMargin), 40);
}

void EditorWindow::closeEvent(QCloseEvent* event)
{
    // Closed by itself only when the home has gone: nothing that was not given up may be lost then.
    if (m_document.isModified() && !m_isDiscarding)
        static_cast<void>(m_document.save());
    event->accept();
}

} // namespace editortab
