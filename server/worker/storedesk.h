// SPDX-License-Identifier: MIT
#pragma once

#include "server/conversions/archivefolder.h"
#include "server/conversions/modelpublisher.h"
#include "server/storage/store.h"
#include "server/worker/jobdesk.h"

#include <chrono>

namespace server
{

/// The jobs of a server on this machine, in its own database.
class StoreDesk : public JobDesk
{
public:
    /// `data` is the server's folder; no two workers have one `name`. A job is the worker's for `lease` after
    /// a sign of life.
    StoreDesk(Store& store, const std::filesystem::path& data, std::string name, std::chrono::seconds lease);

    [[nodiscard]] std::optional<Job> take() override;
    [[nodiscard]] bool keep(const Job& job, double percent) override;
    [[nodiscard]] std::filesystem::path archive(const Job& job, const std::filesystem::path& folder) override;
    void publish(const Job& job, const std::filesystem::path& folder, const std::string& model) override;
    void fail(const Job& job, const std::string& reason) override;
    void giveBack(const Job& job) override;

private:
    Store& m_store;
    std::string m_name;
    std::chrono::seconds m_lease;
    ArchiveFolder m_archives;
    ModelPublisher m_publisher;
};

} // namespace server
