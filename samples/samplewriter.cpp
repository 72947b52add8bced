// SPDX-License-Identifier: MIT
#include "samples/samplewriter.h"

#include "kyvconvert/modelfolder.h"
#include "kyvconvert/optimise.h"
#include "kyvconvert/picture.h"
#include "kyvconvert/sourcereader.h"
#include "samples/oldproject.h"
#include "smartdb/data/projectfile.h"

#include <cmath>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace samples
{

namespace
{

using nlohmann::json;
using ZRSmartDB::ModelData;
using ZRSmartDB::ProjectFile;
using ZRSmartDB::ProjectFolder;
using ZRSmartDB::ProjectHead;

constexpr QSize pictureSize(930, 501);
constexpr int pictureQuality = 88;
constexpr double metresPerDegree = 111320.0;

std::string NumberText(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", number);
    return text;
}

std::string ExtendedAttributes(const SampleProject& project)
{
    return json{{"deptId", project.department}, {"deptName", DepartmentName(project.department)}}.dump();
}

class Writer
{
public:
    Writer(std::filesystem::path sources, std::filesystem::path folder, std::ostream& log)
        : m_sources(std::move(sources))
        , m_folder(std::move(folder))
        , m_log(log)
    {
    }

    void write()
    {
        std::filesystem::create_directories(m_folder);
        for (const auto& project : Projects()) {
            m_log << project.name << std::endl;
            writeProject(project);
        }
        std::ofstream stream(m_folder / "seed.json", std::ios::binary);
        stream << seed().dump(2) << '\n';
        if (!stream.flush())
            throw std::runtime_error("seed.json cannot be written");
    }

private:
    void writeProject(const SampleProject& project)
    {
        ProjectHead head;
        head.guid = project.guid;
        head.name = project.name;
        head.type = project.type;
        head.longitude = project.longitude;
        head.latitude = project.latitude;
        if (!project.department.empty())
            head.attributes["Pa_ExtendedAttr"] = ExtendedAttributes(project);
        std::vector<ModelData> models;
        for (const auto& model : project.models) {
            writeModel(model, project);
            models.push_back({model.guid, model.name, "MODEL", {}});
        }
        const auto folder = ProjectFolder(m_folder, project.guid);
        if (project.isOldFormat) {
            WriteOldProject(folder, head, models);
        } else {
            ProjectFile::create(folder, head);
            ZRSmartDB::ProjectChange change;
            change.putModels = models;
            const auto objects = objectsOf(project);
            change.objects = &objects;
            ProjectFile(folder).write(change);
        }
        drawPicture(project, folder);
        m_entries.push_back(entryOf(project));
    }

    void writeModel(const SampleModel& model, const SampleProject& project)
    {
        auto read = kyvconvert::ReadSource(m_sources / model.source, [](int) {});
        if (const auto* failure = std::get_if<kyvconvert::Failure>(&read))
            throw std::runtime_error(model.source + ": " + failure->reason);
        auto& source = std::get<kyvconvert::SourceModel>(read);
        if (!model.only.empty() && !kyvconvert::KeepOnly(source.model, model.only))
            throw std::runtime_error(model.source + " has no node " + model.only);
        kyvconvert::Optimise(source, kyvconvert::Mode::staticModel);

        if (model.size > 0.0)
            setOnGround(source.model, model.size);
        ProjectHead head;
        head.guid = model.guid;
        head.name = model.name;
        head.type = "MODEL";
        const auto folder = ProjectFolder(m_folder, model.guid);
        ProjectFile::create(folder, head);
        if (const auto problem = kyvconvert::WriteModelFolder(source, model.name, model.source, folder);
            !problem.empty())
            throw std::runtime_error(problem);
        m_models[model.guid] = std::make_shared<gltf::Model>(std::move(source.model));
        m_entries.push_back({{"guid", model.guid},
                             {"type", "MODEL"},
                             {"name", model.name},
                             {"owner", project.owner},
                             {"parent", project.guid},
                             {"folder", "proj_" + model.guid}});
    }

    /// Some sources are drawn in units of their own, far from the origin.
    static void setOnGround(gltf::Model& model, double size)
    {
        const auto bounds = model.bounds;
        double longest = 0.0;
        for (std::size_t axis = 0; axis < 3; ++axis)
            longest = std::max(longest, static_cast<double>(bounds.high[axis]) - bounds.low[axis]);
        const auto scale = static_cast<float>(size / longest);
        model.bounds = {};
        for (auto& vertex : model.vertices) {
            auto& at = vertex.position;
            at[0] = (at[0] - (bounds.low[0] + bounds.high[0]) / 2.0F) * scale;
            at[1] = (at[1] - bounds.low[1]) * scale;
            at[2] = (at[2] - (bounds.low[2] + bounds.high[2]) / 2.0F) * scale;
            model.bounds.include(at);
        }
    }

    [[nodiscard]] static std::vector<ZRSmartDB::ObjectData> objectsOf(const SampleProject& project)
    {
        std::vector<ZRSmartDB::ObjectData> objects;
        for (const auto& guid : project.linked) {
            ZRSmartDB::ObjectData object;
            object.guid = project.guid.substr(0, 24) + guid.substr(24);
            object.name = nameOf(guid);
            object.link = guid;
            objects.push_back(std::move(object));
        }
        return objects;
    }

    [[nodiscard]] static const SampleProject& find(const std::string& guid)
    {
        for (const auto& project : Projects()) {
            if (project.guid == guid)
                return project;
        }
        throw std::runtime_error("a scene links to the unknown project " + guid);
    }

    [[nodiscard]] static std::string nameOf(const std::string& guid) { return find(guid).name; }

    void drawPicture(const SampleProject& project, const std::filesystem::path& folder)
    {
        std::vector<std::shared_ptr<gltf::Model>> placed;
        for (const auto& model : project.models)
            placed.push_back(m_models.at(model.guid));
        for (const auto& guid : project.linked) {
            for (const auto& model : find(guid).models)
                placed.push_back(moved(*m_models.at(model.guid), find(guid), project));
        }
        std::vector<const gltf::Model*> models;
        for (const auto& model : placed)
            models.push_back(model.get());
        const auto file = QString::fromStdString((folder / "projimage.jpg").string());
        if (!kyvconvert::DrawPicture(models, pictureSize).save(file, "JPG", pictureQuality))
            throw std::runtime_error("a picture cannot be written");
    }

    /// The model where its building stands in the scene.
    [[nodiscard]] static std::shared_ptr<gltf::Model>
    moved(const gltf::Model& model, const SampleProject& building, const SampleProject& scene)
    {
        const double narrowing = std::cos(scene.latitude * 3.14159265358979323846 / 180.0);
        const auto east =
            static_cast<float>((building.longitude - scene.longitude) * metresPerDegree * narrowing);
        const auto north = static_cast<float>((building.latitude - scene.latitude) * metresPerDegree);
        auto copy = std::make_shared<gltf::Model>(model);
        for (auto& vertex : copy->vertices) {
            vertex.position[0] += east;
            vertex.position[2] -= north;
        }
        return copy;
    }

    [[nodiscard]] static json entryOf(const SampleProject& project)
    {
        json attributes = json::object();
        if (!project.department.empty())
            attributes = {{"deptId", project.department}, {"deptName", DepartmentName(project.department)}};
        json entry{{"guid", project.guid},
                   {"type", project.type},
                   {"name", project.name},
                   {"owner", project.owner},
                   {"folder", "proj_" + project.guid},
                   {"isDemo", project.isDemo},
                   {"record",
                    {{"longitude", NumberText(project.longitude)},
                     {"latitude", NumberText(project.latitude)},
                     {"attributes", attributes}}}};
        if (!project.department.empty())
            entry["organisation"] = Organisation().name;
        return entry;
    }

    [[nodiscard]] static json treeOf(const Department& department)
    {
        json children = json::array();
        for (const auto& child : department.children)
            children.push_back(treeOf(child));
        return {{"id", department.id},
                {"name", department.name},
                {"canSelect", department.canSelect},
                {"children", std::move(children)}};
    }

    [[nodiscard]] json seed() const
    {
        json accounts = json::array();
        for (const auto& account : Accounts()) {
            json entry{
                {"name", account.name}, {"loginName", account.loginName}, {"password", account.password}};
            if (account.hasOrganisation)
                entry["organisation"] = Organisation().name;
            accounts.push_back(std::move(entry));
        }
        return {{"organisations", {{{"name", Organisation().name}, {"tree", treeOf(Organisation())}}}},
                {"accounts", std::move(accounts)},
                {"applications",
                 {{{"id", "app-open"}, {"mayUpload", true}},
                  {{"id", "app-closed"}, {"mayUpload", false}, {"reason", "该应用未开通上传权限"}}}},
                {"projects", m_entries}};
    }

    std::filesystem::path m_sources;
    std::filesystem::path m_folder;
    std::ostream& m_log;
    std::map<std::string, std::shared_ptr<gltf::Model>> m_models;
    json m_entries = json::array();
};

} // namespace

void WriteSamples(const std::filesystem::path& sources, const std::filesystem::path& folder,
                  std::ostream& log)
{
    Writer(sources, folder, log).write();
}

} // namespace samples
