// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/store.h"

#include <string_view>

namespace server
{

/// Hashes a password with a fresh salt: scrypt (RFC 7914) with N = 2^15, r = 8, p = 1, 32 bytes. Takes about
/// a tenth of a second of one core and 32 MiB, on purpose. Any thread. Throws std::runtime_error without a
/// source of randomness.
[[nodiscard]] PasswordHash HashPassword(std::string_view password);

/// Whether this is the password, in the same time and in a time that does not depend on where it differs.
[[nodiscard]] bool IsPassword(std::string_view password, const PasswordHash& known);

/// The hash of no password: to be compared when there is no such account, so that the time does not tell.
[[nodiscard]] const PasswordHash& HashOfNobody();

} // namespace server
