// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/packs.h"
#include "server/storage/store.h"

#include <filesystem>
#include <string>

namespace server
{

/// Makes a converted model one of a building project: a project of its own, and a new revision of the
/// building project, whose database names the model in place of the old one.
class ModelPublisher
{
public:
    ModelPublisher(Store& store, std::filesystem::path packs);

    /// The model lies in `folder` under the name that its guid has there; the building project's database is
    /// unpacked beside it. Throws std::exception with words that tell what stands in the way.
    [[nodiscard]] PublishAnswer publish(const Job& job, const std::string& worker,
                                        const std::filesystem::path& folder, const std::string& model);

private:
    Store& m_store;
    std::filesystem::path m_packs;
    PackReader m_reader;
};

} // namespace server
