// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostmessageservice.h"
#include "core/mgrobj.h"

#include <QEventLoop>
#include <QObject>

namespace TorvoEditor
{

/// The one way to put a message in front of the user. Published as "messageBoxMgr". GUI thread.
///
/// The host's messages come in here too and go to where the user is looking: to the home screen, or to the
/// child of the current tab.
class CMessageBoxMgr : public QObject, public IMgrObj, public TorvoSDK::IMessageObserver
{
    Q_OBJECT

public:
    explicit CMessageBoxMgr(QObject* parent = nullptr);

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    void OnInfo(QString text) override;
    void OnWarn(QString text) override;
    void OnError(QString text) override;

    /// Asks a question with two buttons and waits in a nested event loop. True for yes. A tip that comes
    /// meanwhile takes the question's place, and its button answers yes.
    [[nodiscard]] bool ShowCheckBox(const QString& title, const QString& text);

    /// The user has pressed a button of the message box: true for yes.
    Q_INVOKABLE void callResultCallBack(bool bResult);

signals:
    /// Shows a tip with one button. Emitted by whoever has something to tell.
    void sigShowTip(const QString& title, const QString& text);
    void sigCheckBox(const QString& title, const QString& text);

private:
    QEventLoop m_loop;
    bool m_result = false;
};

} // namespace TorvoEditor
