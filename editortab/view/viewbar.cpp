// SPDX-License-Identifier: MIT
#include "editortab/view/viewbar.h"

#include "editortab/view/sceneview.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace editortab
{

ViewBar::ViewBar(SceneView& view, QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("viewBar"));
    setAttribute(Qt::WA_StyledBackground);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 4, 4, 4);
    row->setSpacing(2);
    const auto add = [&](const QString& text, const QString& tip, const QKeySequence& key, auto action) {
        auto* button = new QToolButton(this);
        button->setText(text);
        button->setToolTip(QStringLiteral("%1 (%2)").arg(tip, key.toString()));
        button->setAccessibleName(tip);
        button->setShortcut(key);
        connect(button, &QToolButton::clicked, &view, action);
        row->addWidget(button);
    };
    const auto look = [&view](Camera::Preset preset) { return [&view, preset] { view.look(preset); }; };
    add(tr("适应"), tr("显示全部模型"), QKeySequence(Qt::Key_F), [&view] { view.fitAll(); });
    add(tr("选中"), tr("显示选中的对象"), QKeySequence(Qt::Key_Z), [&view] { view.fitSelection(); });
    add(tr("轴测"), tr("轴测视图"), QKeySequence(Qt::Key_0), look(Camera::Preset::isometric));
    add(tr("俯视"), tr("俯视图"), QKeySequence(Qt::Key_7), look(Camera::Preset::top));
    add(tr("正视"), tr("正视图"), QKeySequence(Qt::Key_1), look(Camera::Preset::front));
    add(tr("侧视"), tr("侧视图"), QKeySequence(Qt::Key_3), look(Camera::Preset::right));
}

} // namespace editortab
