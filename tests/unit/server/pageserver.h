// SPDX-License-Identifier: MIT
#pragma once

#include "answeringserver.h"

#include <utility>

#include <QByteArray>
#include <QStringList>

/// The names of a page's path, behind /web.
using Path = std::vector<std::string>;

/// The project server as a browser meets it.
class PageServer : public AnsweringServer
{
public:
    /// What the program gets for a browser of its own.
    std::string ticketFor(const std::string& token);

    [[nodiscard]] server::Reply open(const Path& path, const std::string& query,
                                     const std::string& cookie = {}, const std::string& method = "GET");
    /// A browser that has been let in; the result is its cookie.
    std::string browserOf(const std::string& token);
    /// What a browser of the session sees at an address.
    [[nodiscard]] server::Reply see(const Path& path, const std::string& token);

    /// Makes these files, names and bytes, the newest revision of a project.
    void publish(const std::string& guid, const std::vector<std::pair<std::string, std::string>>& files);
};

[[nodiscard]] QByteArray HeaderOf(const server::Reply& reply, const std::string& name);
[[nodiscard]] QByteArray BodyOf(const server::Reply& reply);
/// The name and value of the cookie that an answer sets.
[[nodiscard]] std::string CookieOf(const server::Reply& reply);
[[nodiscard]] Path PathOf(const QStringList& names);
