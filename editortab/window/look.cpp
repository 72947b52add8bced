// SPDX-License-Identifier: MIT
#include "editortab/window/look.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

namespace editortab
{

namespace
{

// The colours of the home window, so that the two look like one program.
const char* const styleSheet = R"(
* { color: #dddddd; font-size: 13px; }
QWidget#editorWindow, QSplitter { background: #232325; }
QWidget#leftPanel, QWidget#rightPanel { background: #2e2e2e; }
QSplitter::handle { background: #3f3f44; }
QSplitter::handle:horizontal { width: 1px; }
QLabel#panelTitle { color: #f0f0f0; font-size: 14px; }
QLabel#fact { color: #b8b8bd; }
QLineEdit, QPlainTextEdit { background: #1f1f21; border: 1px solid #4a4a50; border-radius: 3px; padding: 4px 8px;
    selection-background-color: #1473e6; }
QLineEdit:focus, QPlainTextEdit:focus { border-color: #1473e6; }
QTreeView, QListView { background: #2e2e2e; border: none; outline: none; show-decoration-selected: 1; }
QTreeView::item, QListView::item { height: 28px; }
QTreeView::item:hover, QListView::item:hover { background: #38383c; }
QTreeView::item:selected, QListView::item:selected { background: #2f4a73; color: #ffffff; }
QHeaderView { background: #2e2e2e; }
QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }
QScrollBar::handle:vertical { background: #4d4d55; border-radius: 4px; min-height: 32px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; width: 0; }
QScrollBar:horizontal { background: transparent; height: 8px; margin: 0; }
QScrollBar::handle:horizontal { background: #4d4d55; border-radius: 4px; min-width: 32px; }
QPushButton { background: #46464c; color: #f0f0f0; border: 1px solid #46464c; border-radius: 3px; padding: 0 16px;
    min-height: 30px; }
QPushButton:hover { background: #52525a; }
QPushButton:focus { border-color: #1473e6; }
QPushButton:default { background: #1473e6; border-color: #1473e6; color: #ffffff; }
QPushButton:disabled { color: #77777c; background: #38383c; border-color: #38383c; }
QWidget#viewBar { background: rgba(35, 35, 37, 200); border: 1px solid #3f3f44; border-radius: 3px; }
QToolButton { background: transparent; border: 1px solid transparent; border-radius: 3px; padding: 4px 8px; }
QToolButton:hover { background: #3b3b40; color: #ffffff; }
QToolButton:focus { border-color: #1473e6; }
QLabel#statusLine { color: #b8b8bd; background: #2e2e2e; border-top: 1px solid #3f3f44; padding: 0 12px; font-size: 12px; }
QFrame#messageBar { border-radius: 3px; }
QFrame#messageBar[kind="info"] { background: #24405f; border: 1px solid #1473e6; }
QFrame#messageBar[kind="warn"] { background: #4d3f22; border: 1px solid #d9a44c; }
QFrame#messageBar[kind="error"] { background: #552a2c; border: 1px solid #ff6b6b; }
QMessageBox, QDialog { background: #2a2a2c; }
QToolTip { background: #2a2a2c; color: #dddddd; border: 1px solid #3f3f44; padding: 4px; }
)";

} // namespace

void ApplyLook(QApplication& app)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font = QApplication::font();
    font.setFamilies({QStringLiteral("微软雅黑"), QStringLiteral("Noto Sans CJK SC"),
                      QStringLiteral("Source Han Sans SC"), font.family()});
    QApplication::setFont(font);
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2e, 0x2e, 0x2e));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x1f, 0x21));
    palette.setColor(QPalette::WindowText, QColor(0xdd, 0xdd, 0xdd));
    palette.setColor(QPalette::Text, QColor(0xdd, 0xdd, 0xdd));
    palette.setColor(QPalette::Button, QColor(0x46, 0x46, 0x4c));
    palette.setColor(QPalette::ButtonText, QColor(0xf0, 0xf0, 0xf0));
    palette.setColor(QPalette::Highlight, QColor(0x14, 0x73, 0xe6));
    palette.setColor(QPalette::PlaceholderText, QColor(0x8c, 0x8c, 0x92));
    QApplication::setPalette(palette);
    app.setStyleSheet(QString::fromUtf8(styleSheet));
}

} // namespace editortab
