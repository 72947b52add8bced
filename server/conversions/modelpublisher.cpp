// SPDX-License-Identifier: MIT
#include "server/conversions/modelpublisher.h"

#include "server/accounts/token.h"
#include "server/projects/publish.h"
#include "server/projects/revisioncache.h"
#include "server/projects/revisionfile.h"
#include "smartdb/data/modelfolder.h"
#include "smartdb/data/projectfile.h"
#include "wire/projectfolder.h"

#include <ctime>
#include <fstream>
#include <stdexcept>

namespace server
{

namespace
{

constexpr int mostTries = 5; ///< while others change the project

std::shared_ptr<const LoadedRevision> Newest(Store& store, const std::string& guid)
{
    const auto root = wire::DigestFromHex(store.head(guid));
    auto revision = root ? RevisionCache(store).find(guid, *root) : nullptr;
    if (!revision)
        throw std::runtime_error("the project has no data on the server that a model could belong to");
    return revision;
}

void Unpack(PackReader& packs, const LoadedRevision& revision, const std::filesystem::path& folder)
{
    const auto* entry = FindFile(revision, std::string(wire::projectDatabaseName));
    if (entry == nullptr)
        throw std::runtime_error("the project on the server has no database");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::ofstream stream(folder / wire::projectDatabaseName, std::ios::binary);
    if (!(stream << FileBytes(packs, revision, *entry)).flush())
        throw std::runtime_error("the project's database cannot be unpacked");
}

} // namespace

/// As other programs make the keys of projects.
std::string MakeGuid()
{
    auto text = MakeToken().substr(0, 32);
    for (const std::size_t place : {8, 13, 18, 23})
        text.insert(place, 1, '-');
    text[14] = '4';
    text[19] = 'a';
    return text;
}

ModelPublisher::ModelPublisher(Store& store, std::filesystem::path packs)
    : m_store(store)
    , m_packs(std::move(packs))
    , m_reader(m_packs)
{
}

bool ModelPublisher::publish(const Job& job, const std::string& worker, const std::filesystem::path& folder,
                             const std::string& model, const std::function<bool()>& isKept)
{
    for (int tries = 0; tries < mostTries; ++tries) {
        if (!isKept())
            return false;
        const auto answer = tryOnce(job, worker, folder, model);
        if (answer != PublishAnswer::conflict)
            return answer == PublishAnswer::published;
    }
    throw std::runtime_error("the project is changed too often");
}

PublishAnswer ModelPublisher::tryOnce(const Job& job, const std::string& worker,
                                      const std::filesystem::path& folder, const std::string& model)
{
    const auto newest = Newest(m_store, job.guid);
    const auto building = ZRSmartDB::ProjectFolder(folder, job.guid);
    Unpack(m_reader, *newest, building);
    ZRSmartDB::ProjectChange change;
    change.putModels = {ZRSmartDB::AdoptModel(folder, model)};
    if (!job.oldModel.empty())
        change.removedModels = {job.oldModel};
    ZRSmartDB::ProjectFile(building).write(change);

    auto modelRevision = PrepareRevision(m_store, m_packs, ZRSmartDB::ProjectFolder(folder, model));
    auto buildingRevision = PrepareRevision(m_store, m_packs, building, newest.get());
    Publication publication;
    publication.model.guid = model;
    publication.model.name = job.name;
    publication.model.parent = job.guid;
    publication.modelRevision = std::move(modelRevision.revision);
    publication.buildingBase = wire::ToHex(wire::RootOf(newest->manifest));
    publication.buildingRevision = std::move(buildingRevision.revision);
    publication.newPieces = std::move(modelRevision.newPieces);
    publication.newPieces.insert(publication.newPieces.end(), buildingRevision.newPieces.begin(),
                                 buildingRevision.newPieces.end());
    return m_store.publishModel(job, worker, publication, std::time(nullptr));
}

} // namespace server
