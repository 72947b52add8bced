// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickView>

namespace TorvoEditor
{

/// The home window: frameless, showing "qrc:/qmls/main.qml", offering to the title bar in the screens what a
/// system frame would offer. Published to the screens as "rootView". GUI thread.
class CFrameWindow : public QQuickView
{
    Q_OBJECT
    Q_PROPERTY(bool isMaxed READ isMaxed NOTIFY isMaxedChanged)

public:
    /// Loads the screens. A screen that cannot be loaded ends the process with exit code -1.
    explicit CFrameWindow(QWindow* parent = nullptr);

    [[nodiscard]] bool isMaxed() const { return m_isMaxed; }

    /// The window was maximized just before it was minimized.
    [[nodiscard]] bool wasMaxed() const { return m_wasMaxed; }

    /// The window is on its way from maximized to minimized. Until it has arrived, the other states that the
    /// window system reports are stations and no restoring.
    [[nodiscard]] bool isMinimizing() const { return m_isMinimizing; }

    // These three hide the operations of QWindow, which they call: maximized, minimized and normal are also a
    // matter of isMaxed and of the remembered sizes here.
    Q_INVOKABLE void showMaximized();
    Q_INVOKABLE void showMinimized();
    Q_INVOKABLE void showNormal();

    /// Announces the closing, then closes; the event loop ends with the last window.
    Q_INVOKABLE void close(bool bSaveProj);

    /// Moves the window by offsets in pixels; each resulting coordinate is truncated.
    Q_INVOKABLE void move(double xOffset, double yOffset);

    /// Arranges for the host to start again without its automatic login once this process has left, then
    /// closes.
    Q_INVOKABLE void logout(bool bSaveProj);

    /// Leaves the maximized state in the middle of a drag: the normal window appears so that the pointer
    /// stays over the title bar.
    Q_INVOKABLE void changeSize();

signals:
    void beforeClosing(bool bSaveProj);
    void isMaxedChanged();
    void moved();
    void resized();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    void onStatusChanged(QQuickView::Status status);
    void onWindowStateChanged(Qt::WindowState state);
    void setMaxed(bool isMaxed);
    void placeUnderCursor();

    bool m_isMaxed = false;
    bool m_wasMaxed = false;
    bool m_isMinimizing = false;
    bool m_isAskingToMinimize = false; ///< true only inside QWindow::showMinimized
    bool m_restoreToCursor = false;    ///< true only inside changeSize
    QPoint m_cursorPos;                ///< the pointer on the screen when the drag left the maximized state
    int m_maxWidth = 0;                ///< size when first dragged out of the maximized state
    int m_maxHeight = 0;
    int m_normalWidth = 0; ///< size to restore to
    int m_normalHeight = 0;
    bool m_sizeKnown = false; ///< the four sizes are valid; the first drag fixes them for good
    double m_normalWidthRatio = 1360.0 / 1920.0;
    double m_normalHeightRatio = 860.0 / 1024.0;
};

} // namespace TorvoEditor
