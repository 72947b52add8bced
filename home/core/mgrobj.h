// SPDX-License-Identifier: MIT
#pragma once

class QQmlContext;

namespace TorvoEditor
{

/// A manager: one object of the plugin's logic, owned by CHomeApp and known to the others through it alone.
///
/// CHomeApp walks all managers in four passes, in the order of these operations. In each pass the managers of
/// lower priority numbers come first, also in UnInit. GUI thread.
class IMgrObj
{
public:
    virtual ~IMgrObj() = default;

    /// All managers exist, those of lower priority numbers are initialised.
    virtual void Init() = 0;

    /// The window is gone. Whatever Init made goes here.
    virtual void UnInit() = 0;

    /// Publish to the screens what they need; the screens are not loaded yet.
    virtual void RegisterContext(QQmlContext* context) { static_cast<void>(context); }

    /// The screens are loaded.
    virtual void OnViewReady() {}
};

} // namespace TorvoEditor
