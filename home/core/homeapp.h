// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

class QQmlContext;

namespace TorvoSDK
{
class ITorvoSDKPlugin;
struct CTorvoSession;
} // namespace TorvoSDK

namespace TorvoEditor
{

class CFrameWindow;

/// The one application object: owns the managers and walks them in their passes.
///
/// The table changes only in Init and UnInit, both on the GUI thread; GetMgr may be called on any thread
/// between the two.
class CHomeApp
{
public:
    /// Where a manager stands in every pass: its priority, then its position within that priority.
    using Place = std::pair<std::uint8_t, std::uint8_t>;

    /// Made on first use, destroyed at process end.
    static CHomeApp& instance();

    CHomeApp(const CHomeApp&) = delete;
    CHomeApp& operator=(const CHomeApp&) = delete;

    /// Stores the session as application properties, checks the server address, logs in at the libraries,
    /// makes the managers and initialises them. False when the address or the server library cannot be used;
    /// no manager exists then. A second call replaces the managers without their UnInit.
    [[nodiscard]] bool Init(const TorvoSDK::CTorvoSession& session);

    /// Publishes "appPath", then lets every manager publish what it has.
    void RegisterContext(QQmlContext* context);

    /// Tells every manager that the screens are loaded.
    void OnViewReady();

    /// Ends every manager, then destroys them, those of the highest priority number first.
    void UnInit();

    /// Calls `visit` on every manager: by ascending priority number, within one in the order of the table.
    void ForEachMgr(const std::function<void(IMgrObj*)>& visit) const;

    /// The manager of exactly the class `Manager`, or null when there is none. Not owned; valid until UnInit.
    template<class Manager>
    [[nodiscard]] Manager* GetMgr() const
    {
        return static_cast<Manager*>(findMgr(typeid(Manager)).get());
    }

    /// The same for work on another thread, which must not lose the manager under its hands when the program
    /// ends.
    template<class Manager>
    [[nodiscard]] std::shared_ptr<Manager> ShareMgr() const
    {
        return std::static_pointer_cast<Manager>(findMgr(typeid(Manager)));
    }

    CFrameWindow* m_frameWindow = nullptr; ///< set by TorvoHomePlugin::Init; not owned, stale after UnInit
    TorvoSDK::ITorvoSDKPlugin* m_plugin = nullptr; ///< the host, set by TorvoHomePlugin::Init; not owned

private:
    struct Entry {
        Place place;
        std::type_index type;
        std::shared_ptr<IMgrObj> mgr;
    };

    CHomeApp() = default;

    [[nodiscard]] std::shared_ptr<IMgrObj> findMgr(std::type_index type) const;
    void createMgrs();
    void putMgr(Entry entry);

    std::vector<Entry> m_mgrs; ///< in the order of visit
};

} // namespace TorvoEditor
