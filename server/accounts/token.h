// SPDX-License-Identifier: MIT
#pragma once

#include "wire/digest.h"

#include <string>
#include <string_view>

namespace server
{

/// A fresh bearer token: 256 random bits as 64 hexadecimal digits. Throws std::runtime_error without a source
/// of randomness.
[[nodiscard]] std::string MakeToken();

/// Under which name a token is kept: the server does not remember tokens themselves.
[[nodiscard]] wire::Digest TokenName(std::string_view token);

} // namespace server
