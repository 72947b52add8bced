// SPDX-License-Identifier: MIT
#pragma once

#include "realserver.h"

#include "wire/manifest.h"

#include <filesystem>
#include <string>

#include <QJsonObject>

/// The requests of an upload one by one, as a client sends them that may be anybody. Always of one project.
class RawUpload
{
public:
    RawUpload(const RealServer& server, std::string guid);

    [[nodiscard]] http::Reply send(const std::string& path, const std::string& body) const;
    [[nodiscard]] http::Reply begin(const wire::Manifest& manifest, const QJsonObject& record = sceneRecord(),
                                    const std::string& against = {}) const;
    /// An upload whose files are told later; `delta` should be empty.
    [[nodiscard]] http::Reply beginAhead(const std::string& delta = {}) const;

    /// The path of an upload that has begun; empty when it has not.
    [[nodiscard]] std::string pathOf(const http::Reply& reply) const;
    /// The bits of the answer to a beginning.
    [[nodiscard]] static std::string bitsOf(const http::Reply& reply);

    [[nodiscard]] static QJsonObject sceneRecord();
    /// A revision of one file.
    [[nodiscard]] static wire::Manifest manifestOf(const std::filesystem::path& file,
                                                   const std::string& path);

private:
    [[nodiscard]] http::Reply begin(const QJsonObject& head, const std::string& delta) const;

    const RealServer& m_server;
    const std::string m_guid;
};
