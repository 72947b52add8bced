// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

#include <chrono>

#include <QCryptographicHash>
#include <QFile>
#include <QString>

namespace EditorCommon
{

/// How an archive is sent.
struct SendPatience {
    qint64 portion = 4 << 20;                  ///< bytes in one request, at most what the server takes
    std::chrono::milliseconds firstWait{1000}; ///< after a fault; each further one doubles it
    int barrenFaults = 3;                      ///< so many without a byte moving in between end it
};

/// Sends one archive in portions, each from where the server says that it stands, so that a broken
/// connection, or an earlier run of the program, costs what was under way and nothing more. Takes the digest
/// of the archive as it reads it. docs/conversion-api.md tells the requests. Any thread.
class ArchiveSender
{
public:
    ArchiveSender(http::Client& client, QString project, QString remotePath, const SendPatience& patience);

    /// Waits until the server has the archive, for as long as bytes move. `md5` takes its digest, untouched
    /// by a failure.
    [[nodiscard]] http::Fault send(const QString& filePath, QString& md5);

private:
    /// What the server holds.
    struct Standing {
        std::string archive;
        qint64 received = 0;
    };

    [[nodiscard]] http::Fault sendWhole();
    [[nodiscard]] http::Fault sendRest();
    [[nodiscard]] http::Fault begin(Standing& standing);
    [[nodiscard]] http::Fault sendPortion(Standing& standing);
    [[nodiscard]] http::Fault finish(const Standing& standing);
    [[nodiscard]] http::Fault ask(const http::Request& request, std::string* body = nullptr);
    [[nodiscard]] bool read(qint64 offset, QByteArray& portion);
    [[nodiscard]] bool takeDigestUpTo(qint64 offset);

    http::Client& m_client;
    QString m_project;
    QString m_remotePath;
    SendPatience m_patience;
    QFile m_file;
    QCryptographicHash m_digest{QCryptographicHash::Md5};
    qint64 m_digested = 0;         ///< bytes from the beginning that the digest knows
    qint64 m_furthest = 0;         ///< the most that the server has said to hold
    bool m_isWorthAnother = false; ///< the last fault may be gone at the next attempt
};

} // namespace EditorCommon
