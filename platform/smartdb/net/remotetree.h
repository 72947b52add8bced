// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "wire/manifest.h"

#include <filesystem>
#include <optional>
#include <string>

namespace ZRSmartDB
{

/// The path of a project's requests, without a slash at its end.
[[nodiscard]] std::string ProjectPath(const std::string& guid);

/// The path of the requests for one revision.
[[nodiscard]] std::string RevisionPath(const std::string& guid, const wire::Digest& root);

/// What the server has of a project: its newest revision and the files of one. Operations wait for the server
/// and throw Failure. Any thread.
class RemoteTree
{
public:
    RemoteTree(http::Client& client, std::string guid)
        : m_client(client)
        , m_guid(std::move(guid))
    {
    }

    /// The name of the newest revision; nothing when the server has no content of the project yet, or does
    /// not know it at all.
    [[nodiscard]] std::optional<wire::Digest> head() const;

    /// The same for a project that must be there.
    [[nodiscard]] wire::Digest existingHead() const;

    /// The files of a revision. `known` is a revision of the same project whose files are here already; the
    /// answer is short then when both are alike.
    [[nodiscard]] wire::Manifest files(const wire::Digest& root, const wire::Manifest* known = nullptr) const;

private:
    [[nodiscard]] std::optional<wire::Manifest> filesFrom(const wire::Digest& root,
                                                          const wire::Manifest& known) const;

    http::Client& m_client;
    const std::string m_guid;
};

/// Sends a request and throws what went wrong.
http::Reply SendOrThrow(http::Client& client, const http::Request& request);

} // namespace ZRSmartDB
