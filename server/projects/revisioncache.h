// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/layout.h"
#include "server/storage/store.h"
#include "wire/manifest.h"

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace server
{

/// A revision, taken apart once for all requests that want pieces of it.
struct LoadedRevision {
    std::string encodedManifest;
    wire::Manifest manifest;
    Layout layout;
    std::vector<std::size_t> firstPieces; ///< for each file the number of its first piece in the layout
};

/// Keeps the revisions that were asked for last, up to a bound in memory. Any thread.
class RevisionCache
{
public:
    explicit RevisionCache(Store& store)
        : m_store(store)
    {
    }

    /// The revision, or null when the project has no such one. Throws std::exception when it cannot be read.
    [[nodiscard]] std::shared_ptr<const LoadedRevision> find(const std::string& guid,
                                                             const wire::Digest& root);

private:
    struct Entry {
        std::string key;
        std::shared_ptr<const LoadedRevision> revision;
        std::size_t bytes;
    };

    Store& m_store;
    std::mutex m_mutex;         ///< protects the entries
    std::list<Entry> m_entries; ///< the one asked for last in front
    std::size_t m_bytes = 0;
};

} // namespace server
