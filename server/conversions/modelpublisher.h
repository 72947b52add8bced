// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/packs.h"
#include "server/storage/store.h"

#include <filesystem>
#include <functional>
#include <string>

namespace server
{

/// How far a job is when nothing but the publication is left.
inline constexpr double publishingPercent = 96.0;

/// A fresh name for a project.
[[nodiscard]] std::string MakeGuid();

/// Makes a converted model one of a building project: a project of its own, and a new revision of the
/// building project, whose database names the model in place of the old one. Any thread.
class ModelPublisher
{
public:
    ModelPublisher(Store& store, std::filesystem::path packs);

    /// The model lies in `folder` under the name that its guid has there; the building project's database is
    /// unpacked beside it. Tried anew when others have changed the project meanwhile, as long as `isKept`
    /// says that the job is the worker's. False when it is not any more. Throws std::exception with words
    /// that tell what stands in the way.
    [[nodiscard]] bool publish(const Job& job, const std::string& worker, const std::filesystem::path& folder,
                               const std::string& model, const std::function<bool()>& isKept);

private:
    [[nodiscard]] PublishAnswer tryOnce(const Job& job, const std::string& worker,
                                        const std::filesystem::path& folder, const std::string& model);

    Store& m_store;
    std::filesystem::path m_packs;
    PackReader m_reader;
};

} // namespace server
