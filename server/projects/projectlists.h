// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/store.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace server
{

/// An encoded answer and the tag that names it.
struct TaggedAnswer {
    std::string tag; ///< with its quotes, as it stands in the ETag header
    std::string body;
};

/// The two long answers that every client asks for again and again: what an account sees, and the states of
/// it. Each is encoded once per change. Any thread.
class ProjectLists
{
public:
    explicit ProjectLists(Store& store)
        : m_store(store)
    {
    }

    [[nodiscard]] std::shared_ptr<const TaggedAnswer> projects(std::int64_t account);
    [[nodiscard]] std::shared_ptr<const TaggedAnswer> states(std::int64_t account);

private:
    using Answers = std::unordered_map<std::int64_t, std::shared_ptr<const TaggedAnswer>>;

    template<class Encode>
    std::shared_ptr<const TaggedAnswer> answer(Answers& known, std::int64_t account, Encode&& encode);

    Store& m_store;
    std::mutex m_mutex; ///< protects the known answers
    Answers m_projects;
    Answers m_states;
};

} // namespace server
