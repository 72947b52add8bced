// SPDX-License-Identifier: MIT
#pragma once

#if defined(TORVOHOME_LIBRARY)
#if defined(_WIN32)
#define TORVOHOME_EXPORT __declspec(dllexport)
#else
#define TORVOHOME_EXPORT __attribute__((visibility("default")))
#endif
#elif defined(_WIN32)
#define TORVOHOME_EXPORT __declspec(dllimport)
#else
#define TORVOHOME_EXPORT
#endif

namespace TorvoSDK
{
class ITorvoSDKPlugin;
struct CTorvoSession;
} // namespace TorvoSDK

namespace TorvoEditor
{

struct TorvoHomePluginPrivate;

/// The home window as a plugin of the host: everything that the library exports. GUI thread.
class TORVOHOME_EXPORT TorvoHomePlugin
{
public:
    TorvoHomePlugin();
    ~TorvoHomePlugin();
    TorvoHomePlugin(const TorvoHomePlugin&) = delete;

    /// Copies the pointer to the private record as it stands. Two objects then share one record, and the
    /// first destructor frees it; the host's binary interface has it so.
    TorvoHomePlugin& operator=(const TorvoHomePlugin& other);

    /// Opens the home window, maximized. `plugin` must outlive UnInit; `session` is read during the call
    /// only. Needs a QGuiApplication. When the session's server address cannot be used no window opens.
    void Init(TorvoSDK::ITorvoSDKPlugin* plugin, const TorvoSDK::CTorvoSession& session);

    /// Closes the window and ends everything that Init started; to be called when the event loop has ended.
    /// Harmless without a successful Init.
    void UnInit();

private:
    TorvoHomePluginPrivate* m_private = nullptr;
};

} // namespace TorvoEditor
