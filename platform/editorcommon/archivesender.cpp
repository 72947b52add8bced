// SPDX-License-Identifier: MIT
#include "archivesender.h"

#include "serverclient.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

#include <QJsonDocument>

namespace EditorCommon
{

namespace
{

// Of the server's codes.
constexpr int archiveGone = 40411;
constexpr int wrongOffset = 40910;
constexpr int bytesMissing = 40911;
constexpr int otherDigest = 40912;
constexpr int alreadyFinished = 40913;
constexpr unsigned diskFullStatus = 507;

constexpr int unreadable = 1; ///< the file on this machine; no server has this code

/// Whether beginning again may help: it tells where the server stands.
bool IsWorthAnother(const http::Reply& reply)
{
    constexpr std::array codes = {http::faultcode::unreachable,
                                  http::faultcode::timedOut,
                                  archiveGone,
                                  wrongOffset,
                                  bytesMissing,
                                  alreadyFinished};
    const bool isServersTrouble = reply.status >= 500 && reply.status != diskFullStatus;
    return isServersTrouble || std::find(codes.begin(), codes.end(), reply.fault.code) != codes.end();
}

http::Fault BadReply()
{
    return {http::faultcode::badReply, "the project server's answer is not what was asked for"};
}

} // namespace

ArchiveSender::ArchiveSender(http::Client& client, QString project, QString remotePath,
                             const SendPatience& patience)
    : m_client(client)
    , m_project(std::move(project))
    , m_remotePath(std::move(remotePath))
    , m_patience(patience)
{
}

http::Fault ArchiveSender::send(const QString& filePath, QString& md5)
{
    m_file.setFileName(filePath);
    if (!m_file.open(QIODevice::ReadOnly) || m_file.size() == 0)
        return {unreadable, "the archive cannot be read, or is empty"};
    auto fault = sendWhole();
    if (fault.code == otherDigest) // damaged on the way, or another file than at an earlier attempt
        fault = sendWhole();
    if (!fault)
        md5 = QString::fromLatin1(m_digest.result().toHex());
    m_file.close();
    return fault;
}

http::Fault ArchiveSender::sendWhole()
{
    m_digest.reset();
    m_digested = 0;
    m_furthest = 0;
    auto wait = m_patience.firstWait;
    for (int barren = 0;;) {
        const auto before = m_furthest;
        const auto fault = sendRest();
        if (!fault || !m_isWorthAnother)
            return fault;
        const bool hasMoved = m_furthest > before;
        barren = hasMoved ? 1 : barren + 1;
        wait = hasMoved ? m_patience.firstWait : wait;
        if (barren >= m_patience.barrenFaults)
            return fault;
        std::this_thread::sleep_for(wait);
        wait *= 2;
    }
}

http::Fault ArchiveSender::sendRest()
{
    Standing standing;
    auto fault = begin(standing);
    while (!fault && standing.received < m_file.size())
        fault = sendPortion(standing);
    return fault ? fault : finish(standing);
}

http::Fault ArchiveSender::ask(const http::Request& request, std::string* body)
{
    auto reply = m_client.send(request);
    m_isWorthAnother = reply.fault && IsWorthAnother(reply);
    if (body != nullptr)
        *body = std::move(reply.body);
    return reply.fault;
}

http::Fault ArchiveSender::begin(Standing& standing)
{
    std::string body;
    auto request = JsonPost(ProjectPath(m_project, "/archives"), {{QStringLiteral("path"), m_remotePath},
                                                                  {QStringLiteral("size"), m_file.size()}});
    if (auto fault = ask(request, &body))
        return fault;
    const auto answer = QJsonDocument::fromJson(QByteArray::fromStdString(body)).object();
    standing.archive = answer.value(QStringLiteral("archive")).toString().toStdString();
    standing.received = static_cast<qint64>(answer.value(QStringLiteral("received")).toDouble(-1));
    if (standing.archive.empty() || standing.received < 0 || standing.received > m_file.size())
        return BadReply();
    m_furthest = std::max(m_furthest, standing.received);
    return {};
}

http::Fault ArchiveSender::sendPortion(Standing& standing)
{
    QByteArray portion;
    if (!takeDigestUpTo(standing.received) || !read(standing.received, portion)) {
        m_isWorthAnother = false;
        return {unreadable, "the archive cannot be read, or has become shorter"};
    }
    std::string body;
    const auto path = ProjectPath(m_project, "/archives/" + http::EncodedName(standing.archive) + "/bytes/" +
                                                 std::to_string(standing.received));
    const http::Request request{.method = "PUT",
                                .path = path,
                                .contentType = "application/octet-stream",
                                .body = portion.toStdString(),
                                .timeout = std::chrono::milliseconds(0)};
    if (auto fault = ask(request, &body))
        return fault;
    const auto answer = QJsonDocument::fromJson(QByteArray::fromStdString(body)).object();
    const auto received = static_cast<qint64>(answer.value(QStringLiteral("received")).toDouble(-1));
    if (received != standing.received + portion.size())
        return BadReply();
    standing.received = received;
    m_furthest = std::max(m_furthest, received);
    return {};
}

http::Fault ArchiveSender::finish(const Standing& standing)
{
    if (!takeDigestUpTo(m_file.size())) {
        m_isWorthAnother = false;
        return {unreadable, "the archive cannot be read, or has become shorter"};
    }
    const auto md5 = QString::fromLatin1(m_digest.result().toHex());
    return ask(
        JsonPost(ProjectPath(m_project, "/archives/" + http::EncodedName(standing.archive) + "/finish"),
                 {{QStringLiteral("md5"), md5}}));
}

/// Reads a portion; the digest takes what it does not know yet.
bool ArchiveSender::read(qint64 offset, QByteArray& portion)
{
    const auto wanted = std::min(m_patience.portion, m_file.size() - offset);
    if (wanted <= 0 || !m_file.seek(offset))
        return false;
    portion = m_file.read(wanted);
    if (portion.size() != wanted)
        return false;
    const auto known = static_cast<int>(std::clamp<qint64>(m_digested - offset, 0, wanted));
    m_digest.addData(portion.constData() + known, portion.size() - known);
    m_digested = std::max(m_digested, offset + wanted);
    return true;
}

bool ArchiveSender::takeDigestUpTo(qint64 offset)
{
    QByteArray portion;
    while (m_digested < offset) {
        if (!read(m_digested, portion))
            return false;
    }
    return true;
}

} // namespace EditorCommon
