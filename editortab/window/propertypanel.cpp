// SPDX-License-Identifier: MIT
#include "editortab/window/propertypanel.h"

#include "editortab/document/document.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace editortab
{

namespace
{

constexpr int longestName = 200;

QLabel* Title(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(QStringLiteral("panelTitle"));
    return label;
}

QLabel* Fact(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("fact"));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

PropertyPanel::PropertyPanel(Document& document, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_name(new QLineEdit(this))
    , m_note(new QPlainTextEdit(this))
    , m_facts(Fact(this))
    , m_selectionName(Title(tr("未选中对象"), this))
    , m_selectionFacts(Fact(this))
    , m_save(new QPushButton(tr("保存"), this))
{
    setObjectName(QStringLiteral("rightPanel"));
    setAttribute(Qt::WA_StyledBackground);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 12, 16, 16);
    column->setSpacing(8);
    column->addWidget(Title(tr("工程属性"), this));
    auto* nameLabel = new QLabel(tr("工程名称"), this);
    nameLabel->setBuddy(m_name);
    column->addWidget(nameLabel);
    m_name->setObjectName(QStringLiteral("projectName"));
    m_name->setAccessibleName(tr("工程名称"));
    m_name->setMaxLength(longestName);
    column->addWidget(m_name);
    auto* noteLabel = new QLabel(tr("备注"), this);
    noteLabel->setBuddy(m_note);
    column->addWidget(noteLabel);
    m_note->setObjectName(QStringLiteral("projectNote"));
    m_note->setAccessibleName(tr("备注"));
    m_note->setTabChangesFocus(true);
    m_note->setFixedHeight(96);
    column->addWidget(m_note);
    m_save->setObjectName(QStringLiteral("saveButton"));
    m_save->setToolTip(tr("保存工程 (Ctrl+S)"));
    m_save->setEnabled(false);
    column->addWidget(m_save);
    column->addWidget(m_facts);
    column->addSpacing(16);
    column->addWidget(m_selectionName);
    column->addWidget(m_selectionFacts);
    column->addStretch(1);

    connect(m_name, &QLineEdit::textEdited, &m_document, &Document::setName);
    connect(m_name, &QLineEdit::editingFinished, this, [this] { m_name->setText(m_document.name()); });
    connect(m_note, &QPlainTextEdit::textChanged, this,
            [this] { m_document.setNote(m_note->toPlainText()); });
    connect(m_save, &QPushButton::clicked, this, &PropertyPanel::saveRequested);
    connect(&m_document, &Document::modifiedChanged, this,
            [this] { m_save->setEnabled(m_document.isModified()); });
}

void PropertyPanel::refresh()
{
    m_name->setText(m_document.name());
    m_note->setPlainText(m_document.note());
    m_facts->setText(tr("类型：%1\n位置：%2\n标识：%3")
                         .arg(m_document.type() == QLatin1String("CIM") ? tr("场景工程") : tr("BIM工程"),
                              m_document.position(), m_document.guid()));
}

void PropertyPanel::showSelection(const QString& name, const QString& facts)
{
    m_selectionName->setText(name.isEmpty() ? tr("未选中对象") : name);
    m_selectionFacts->setText(facts);
}

} // namespace editortab
