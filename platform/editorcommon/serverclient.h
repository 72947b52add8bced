// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

namespace EditorCommon
{

/// The client through which all calls of KYVApi go: it keeps the address and the token, and its connections
/// stay open between calls. Any thread.
[[nodiscard]] http::Client& ServerClient();

} // namespace EditorCommon
