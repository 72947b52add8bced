// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

#include <QJsonObject>

namespace EditorCommon
{

/// The client through which all calls of KYVApi go: it keeps the address and the token, and its connections
/// stay open between calls. Any thread.
[[nodiscard]] http::Client& ServerClient();

/// Sends a request and logs what goes wrong, under the name of the call. The log has no addresses in it: they
/// can carry tickets.
[[nodiscard]] http::Reply Ask(const char* what, http::Request request);

/// The object in an answer's body; empty when there is none.
[[nodiscard]] QJsonObject ObjectOf(const http::Reply& reply);

/// The path of a project's requests, with what follows behind the project.
[[nodiscard]] std::string ProjectPath(const QString& guid, const std::string& rest);

/// A request with a JSON object as its body.
[[nodiscard]] http::Request JsonPost(const std::string& path, const QJsonObject& body);

} // namespace EditorCommon
