// SPDX-License-Identifier: MIT
#include "server/conversions/workerkey.h"

#include "server/accounts/token.h"

#include <fstream>
#include <stdexcept>

namespace server
{

std::string WorkerKey::renew() const
{
    auto key = MakeToken();
    // A server that is running reads the whole of the old one or the whole of the new one.
    auto half = m_file;
    half += ".tmp";
    std::filesystem::remove(half);
    std::ofstream stream(half);
    std::filesystem::permissions(half,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    stream << wire::ToHex(TokenName(key)) << '\n';
    stream.close();
    if (!stream)
        throw std::runtime_error("the key for workers cannot be written");
    std::filesystem::rename(half, m_file);
    return key;
}

bool WorkerKey::isKey(std::string_view key) const
{
    std::ifstream stream(m_file);
    std::string text;
    stream >> text;
    const auto name = wire::DigestFromHex(text);
    return name && TokenName(key) == *name;
}

} // namespace server
