// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/net/progress.h"
#include "wire/manifest.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace ZRSmartDB
{

/// Sends the pieces of a project that the server has nothing of while the project is still being described,
/// so that it is read once. The server is asked for each batch which of its pieces it lacks.
///
/// It may end early without a word, when the server has ended the upload: what is missing is asked for again
/// when the files are told. Memory: a few batches; take() waits when the network is slower than the disk.
class AheadSender
{
public:
    /// Begins an upload whose files are told later and gives the path of its requests. Throws Failure. Called
    /// until it has succeeded once, when there is something to be sent.
    using Begin = std::function<std::string()>;

    /// Client and progress must outlive the sender.
    AheadSender(http::Client& client, Begin begin, Progress& progress);
    AheadSender(const AheadSender&) = delete;
    AheadSender& operator=(const AheadSender&) = delete;
    /// Gives up what has not been sent.
    ~AheadSender();

    /// Any thread. Throws Failure when an earlier piece could not be sent.
    void take(const wire::Piece& piece, std::span<const std::byte> bytes);

    /// Waits until what was taken is sent. Throws Failure. To be called once, behind the last piece. A
    /// project of less than a batch is not begun at all.
    void finish();

    /// Gives up what has not been sent, and waits for what is under way.
    void giveUp();

    /// The path of the upload's requests; empty when none was begun. After finish() or giveUp().
    [[nodiscard]] const std::string& path() const { return m_path; }

private:
    struct Batch {
        std::vector<wire::Piece> pieces;
        std::string bytes;
    };

    void work() noexcept;
    [[nodiscard]] bool next(Batch& batch);
    [[nodiscard]] std::string pathOfUpload();
    /// False when the upload has ended.
    [[nodiscard]] bool send(const Batch& batch, http::Request& request);
    void stopWith(const http::Fault& fault);
    void throwFault();
    void join();

    http::Client& m_client;
    const Begin m_begin;
    Progress& m_progress;
    std::atomic<bool> m_isGivenUp = false;

    std::mutex m_beginning; ///< protects the path
    std::string m_path;

    std::mutex m_mutex; ///< protects what follows
    std::condition_variable m_hasChanged;
    Batch m_filling;
    std::deque<Batch> m_full;
    std::vector<Batch> m_spare; ///< fresh memory costs as much as filling it
    bool m_hasBatches = false;  ///< or had
    bool m_isComplete = false;
    http::Fault m_fault;

    std::vector<std::thread> m_threads; // last: they use all of the above
};

} // namespace ZRSmartDB
