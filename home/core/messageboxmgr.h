// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostmessageservice.h"
#include "core/mgrobj.h"

#include <QEventLoop>
#include <QObject>

namespace TorvoEditor
{

class CTabMgr;

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
    /// meanwhile takes the question's place, and its button answers yes. While a question is open a second
    /// one is not asked and gives false: its answer could not be told from the first one's. The end of the
    /// program answers no.
    [[nodiscard]] bool ShowCheckBox(const QString& title, const QString& text);

    /// The user has pressed a button of the message box: true for yes.
    Q_INVOKABLE void callResultCallBack(bool bResult);

signals:
    /// Shows a tip with one button. Emitted by whoever has something to tell.
    void sigShowTip(const QString& title, const QString& text);
    void sigCheckBox(const QString& title, const QString& text);

private:
    using SendToTab = void (CTabMgr::*)(const QString& text, const QString& tabName);

    /// Where the user is looking: a tip on the home screen, else a message to the current tab's child.
    void tell(const QString& title, const QString& text, SendToTab send);

    QEventLoop m_loop;
    bool m_result = false;
};

} // namespace TorvoEditor
