// SPDX-License-Identifier: MIT
#include "server/worker/storedesk.h"

#include <ctime>

namespace server
{

StoreDesk::StoreDesk(Store& store, const std::filesystem::path& data, std::string name,
                     std::chrono::seconds lease)
    : m_store(store)
    , m_name(std::move(name))
    , m_lease(lease)
    , m_archives(data / "archives")
    , m_publisher(store, data / "packs")
{
}

std::optional<Job> StoreDesk::take()
{
    return m_store.takeJob(m_name, std::time(nullptr) + m_lease.count());
}

bool StoreDesk::keep(const Job& job, double percent)
{
    return m_store.keepJob(job.id, m_name, percent, std::time(nullptr) + m_lease.count());
}

std::filesystem::path StoreDesk::archive(const Job& job, const std::filesystem::path& /*folder*/)
{
    return m_archives.file(job.archive);
}

void StoreDesk::publish(const Job& job, const std::filesystem::path& folder, const std::string& model)
{
    const auto isKept = [&] { return keep(job, publishingPercent); };
    if (!m_publisher.publish(job, m_name, folder, model, isKept))
        throw JobLost("the job is not this worker's any more");
    m_archives.remove(job.archive);
}

void StoreDesk::fail(const Job& job, const std::string& reason)
{
    m_store.failJob(job.id, m_name, reason, std::time(nullptr));
}

/// A lease that has run out is the way on which jobs go back into the queue.
void StoreDesk::giveBack(const Job& job)
{
    (void)m_store.keepJob(job.id, m_name, 0.0, 0);
}

} // namespace server
