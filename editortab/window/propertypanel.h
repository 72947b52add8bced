// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace editortab
{

class Document;

/// Name, note and facts of the project, and what is selected. GUI thread.
class PropertyPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PropertyPanel(Document& document, QWidget* parent = nullptr);

    /// Takes what the document holds.
    void refresh();
    void showSelection(const QString& name, const QString& facts);

signals:
    void saveRequested();

private:
    Document& m_document;
    QLineEdit* m_name;
    QPlainTextEdit* m_note;
    QLabel* m_facts;
    QLabel* m_selectionName;
    QLabel* m_selectionFacts;
    QPushButton* m_save;
};

} // namespace editortab
