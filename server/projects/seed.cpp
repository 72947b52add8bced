// SPDX-License-Identifier: MIT
#include "server/projects/seed.h"

#include "server/accounts/password.h"
#include "server/projects/publish.h"

#include <fstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;

json ReadJson(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return json::parse(stream);
}

/// Seeding names organisations; accounts and projects refer to those names.
std::optional<std::int64_t> OrganisationId(const json& entry,
                                           const std::map<std::string, std::int64_t>& known)
{
    const auto name = entry.value("organisation", std::string());
    if (name.empty())
        return std::nullopt;
    const auto found = known.find(name);
    if (found == known.end())
        throw std::runtime_error("there is no organisation \"" + name + '"');
    return found->second;
}

void SeedAccount(Store& store, const json& entry, std::optional<std::int64_t> organisation, std::ostream& log)
{
    Account account;
    account.name = entry.at("name").get<std::string>();
    if (store.findAccount(account.name))
        return;
    account.loginName = entry.at("loginName").get<std::string>();
    account.organisation = organisation;
    account.password = HashPassword(entry.at("password").get<std::string>());
    if (store.addAccount(account))
        log << "account " << account.name << '\n';
}

json RecordOf(const json& entry)
{
    const auto given = entry.value("record", json::object());
    json record;
    for (const char* key : {"longitude", "latitude", "iotCode", "earthConfig", "proj4"})
        record[key] = given.value(key, std::string());
    record["attributes"] = given.value("attributes", json::object());
    return record;
}

Project ProjectOf(Store& store, const json& entry, std::optional<std::int64_t> organisation)
{
    Project project;
    project.guid = entry.at("guid").get<std::string>();
    project.type = entry.at("type").get<std::string>();
    project.name = entry.at("name").get<std::string>();
    if (project.type != "CIM" && project.type != "BIM" && project.type != "MODEL")
        throw std::runtime_error("project " + project.guid + " is of the unknown type \"" + project.type +
                                 '"');
    project.record = RecordOf(entry).dump();
    project.isDemo = entry.value("isDemo", false);
    project.parent = entry.value("parent", std::string());
    project.organisation = organisation;
    const auto ownerName = entry.at("owner").get<std::string>();
    const auto owner = store.findAccount(ownerName);
    if (!owner)
        throw std::runtime_error("there is no account \"" + ownerName + '"');
    project.owner = owner->id;
    if (!organisation && entry.value("sharedWithOrganisation", false))
        project.organisation = owner->organisation;
    return project;
}

} // namespace

Project ProjectOfEntry(Store& store, const std::string& entryJson)
{
    return ProjectOf(store, json::parse(entryJson), std::nullopt);
}

void Seed(Store& store, const std::filesystem::path& packs, const std::filesystem::path& samples,
          std::ostream& log)
{
    const json seed = ReadJson(samples / "seed.json");
    std::map<std::string, std::int64_t> organisations;
    for (const auto& entry : seed.value("organisations", json::array())) {
        const auto name = entry.at("name").get<std::string>();
        organisations[name] = store.putOrganisation(name, entry.at("tree").dump());
    }
    for (const auto& entry : seed.value("accounts", json::array()))
        SeedAccount(store, entry, OrganisationId(entry, organisations), log);
    for (const auto& entry : seed.value("applications", json::array()))
        store.putApplication(entry.at("id").get<std::string>(), entry.at("mayUpload").get<bool>(),
                             entry.value("reason", std::string()));
    for (const auto& entry : seed.value("projects", json::array())) {
        const auto project = ProjectOf(store, entry, OrganisationId(entry, organisations));
        if (!store.head(project.guid).empty())
            continue;
        store.putProject(project);
        PublishFolder(store, packs, project.guid, samples / entry.at("folder").get<std::string>());
        log << "project " << project.name << '\n';
    }
}

} // namespace server
