// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostwebservice.h"
#include "core/mgrobj.h"

#include <QObject>

namespace TorvoEditor
{

class Prop;

/// Ties the host's web views to the plugin: the host gets the screens' context for its own objects, and each
/// web view the one object that its pages work on. Published as "webSdkMgr". GUI thread.
///
/// A host without web views is no error; the screens then have no "webViewMgr" to call.
class CWebSDKMgr : public QObject, public IMgrObj, public TorvoSDK::IWebObserver
{
    Q_OBJECT

public:
    explicit CWebSDKMgr(QObject* parent = nullptr);
    ~CWebSDKMgr() override;

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    void OnWebChannel(QWebChannel* channel) override;

private:
    Prop* m_prop = nullptr; ///< owned, from Init to UnInit
};

} // namespace TorvoEditor
