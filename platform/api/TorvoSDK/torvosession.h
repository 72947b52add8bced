// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace TorvoSDK
{

/// The login session that the host hands to the plugin.
///
/// Owned by the host, valid only during TorvoHomePlugin::Init. Host and plugin share this layout, so the
/// order of the fields must not change. Texts are UTF-16 on Windows and UTF-32 elsewhere, as std::wstring has
/// it.
struct CTorvoSession {
    std::wstring token;      ///< bearer token of the login, opaque
    std::wstring cookies;    ///< text for the Cookie header of server requests, may be empty
    std::wstring serverAddr; ///< base address of the project server, for example "http://127.0.0.1:8080"
    std::wstring sdkAddr;    ///< address of the SDK service that the children use
    std::wstring loginName;  ///< the name that the title bar shows
    std::wstring appVer;     ///< variant of the host: "Lite", "Normal" or anything else
    std::wstring reserved;   ///< present for the layout only; the plugin never reads it
    bool isBimSdk =
        false; ///< one byte; selects the variant with a logout button and without a console button
};

} // namespace TorvoSDK
