// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace editortab
{

class SceneView;

/// The buttons over the 3D view: fit and the four directions.
class ViewBar : public QWidget
{
    Q_OBJECT

public:
    explicit ViewBar(SceneView& view, QWidget* parent = nullptr);
};

} // namespace editortab
