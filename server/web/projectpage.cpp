// SPDX-License-Identifier: MIT
#include "server/web/projectpage.h"

#include "server/projects/revisionfile.h"
#include "server/web/html.h"
#include "server/web/page.h"

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

constexpr const char* none = "<span class=\"none\">未设置</span>";

/// A text of the project's record; empty when it has none. The record of a model is empty.
std::string RecordText(const nlohmann::json& record, const char* key)
{
    if (!record.is_object() || !record.contains(key) || !record[key].is_string())
        return {};
    return record[key].get<std::string>();
}

std::string PositionHtml(const nlohmann::json& record)
{
    const auto longitude = RecordText(record, "longitude");
    const auto latitude = RecordText(record, "latitude");
    if (longitude.empty() || latitude.empty())
        return none;
    return "经度 " + Escaped(longitude) + "，纬度 " + Escaped(latitude);
}

std::string Fact(std::string_view label, std::string_view html)
{
    return "<div><dt>" + std::string(label) + "</dt><dd>" + std::string(html) + "</dd></div>\n";
}

std::string RevisionFacts(const ProjectState& state, const LoadedRevision* revision)
{
    if (revision == nullptr)
        return {};
    std::uint64_t bytes = 0;
    for (const auto& file : revision->manifest.files)
        bytes += file.size;
    return Fact("最近更新", state.revised > 0 ? TimeElement(state.revised) : "—") +
           Fact("文件数", Grouped(revision->manifest.files.size())) + Fact("数据大小", BytesText(bytes));
}

std::string Picture(const Project& project, const LoadedRevision* revision)
{
    if (revision == nullptr || FindFile(*revision, pictureFile) == nullptr)
        return "<p class=\"picture none\">没有图片</p>\n";
    return "<img class=\"picture\" src=\"" + PathName(project.guid) + "/picture\" alt=\"工程图片\">\n";
}

} // namespace

Reply ProjectPage(const Session& session, const Project& project, const ProjectState& state,
                  const LoadedRevision* revision)
{
    const auto record = nlohmann::json::parse(project.record, nullptr, false);
    const auto iotCode = RecordText(record, "iotCode");
    std::string content = "<div class=\"project\">\n" + Picture(project, revision) + "<dl>\n";
    content += Fact("工程类型", TypeText(project.type));
    content += Fact("状态", StateElement(state));
    content += RevisionFacts(state, revision);
    content += Fact("位置", PositionHtml(record));
    content += Fact("物联资产编号", iotCode.empty() ? none : "<bdi>" + Escaped(iotCode) + "</bdi>");
    content += Fact("工程Guid", "<code>" + Escaped(project.guid) + "</code>");
    content += "</dl>\n</div>\n";
    // A scene has no models of its own; those of its buildings are on their pages.
    const bool isScene = project.type == "CIM";
    if (!isScene)
        content += "<section class=\"viewer\" data-models=\"" + PathName(project.guid) +
                   "/models\">\n<h2>模型</h2>\n"
                   "<p class=\"loading\" role=\"status\">请允许脚本运行，才能看到模型。</p>\n</section>\n";
    const PageFrame frame{.title = project.name.empty() ? project.guid : project.name,
                          .loginName = session.loginName,
                          .depth = 1,
                          .isBelowConsole = true,
                          .script = isScene ? std::string_view() : "viewer.js"};
    return PageReply(200, frame, content);
}

} // namespace server
