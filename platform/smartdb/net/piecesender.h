// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/net/localtree.h"
#include "smartdb/net/progress.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// Sends a request that may be sent again without harm, a few times when the connection breaks.
[[nodiscard]] http::Reply SendUntilAnswered(http::Client& client, const http::Request& request);

/// How the sending of pieces ended, when it did not simply succeed or fail.
enum class Sending {
    done,
    uploadIsGone,   ///< the server has ended the upload: it is to be begun anew
    fileHasChanged, ///< the project was edited meanwhile: it is to be described anew
};

/// Sends pieces to the server, packed into large bodies, by a few threads at once. A connection that breaks
/// is tried again with the body that was under way.
class PieceSender
{
public:
    /// `path` is that of the upload. Everything must outlive the sender.
    PieceSender(http::Client& client, std::string path, const LocalTree& tree,
                std::span<const PiecePlace> pieces, Progress& progress);

    /// Waits for the end. Throws Failure.
    [[nodiscard]] Sending run();

private:
    void work();
    void sendBatches();
    [[nodiscard]] std::span<const PiecePlace> takeBatch();
    void stopWith(Sending end, const http::Fault& fault);

    http::Client& m_client;
    const std::string m_path;
    const LocalTree& m_tree;
    const std::span<const PiecePlace> m_pieces;
    Progress& m_progress;
    std::atomic<bool> m_isGivenUp = false;

    std::mutex m_mutex; ///< protects what follows
    std::size_t m_next = 0;
    Sending m_end = Sending::done;
    http::Fault m_fault;
};

} // namespace ZRSmartDB
