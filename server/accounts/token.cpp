// SPDX-License-Identifier: MIT
#include "server/accounts/token.h"

#include <stdexcept>

#include <openssl/rand.h>

namespace server
{

std::string MakeToken()
{
    wire::Digest random;
    if (RAND_bytes(random.bytes.data(), static_cast<int>(random.bytes.size())) != 1)
        throw std::runtime_error("no random numbers can be had");
    return wire::ToHex(random);
}

wire::Digest TokenName(std::string_view token)
{
    return wire::DigestOf(token);
}

} // namespace server
