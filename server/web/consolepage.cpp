// SPDX-License-Identifier: MIT
#include "server/web/consolepage.h"

#include "server/web/html.h"
#include "server/web/page.h"

#include <algorithm>
#include <unordered_map>

namespace server
{

namespace
{

struct Line {
    const Project* project;
    ProjectState state;
};

std::vector<Line> LinesOf(const std::vector<Project>& projects, const std::vector<ProjectState>& states)
{
    std::unordered_map<std::string, const ProjectState*> byGuid;
    for (const auto& state : states)
        byGuid.emplace(state.guid, &state);
    std::vector<Line> lines;
    for (const auto& project : projects) {
        const auto state = byGuid.find(project.guid);
        // A project that came or went between the two questions to the store is shown the next time.
        if (state != byGuid.end())
            lines.push_back({&project, *state->second});
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Line& left, const Line& right) {
        return left.state.revised > right.state.revised;
    });
    return lines;
}

std::string RowOf(const Line& line)
{
    const auto& [project, state] = line;
    const auto& name = project->name.empty() ? project->guid : project->name;
    std::string row = "<tr><th scope=\"row\"><a href=\"projects/" + PathName(project->guid) + "\"><bdi>" +
                      Escaped(name) + "</bdi></a>";
    if (project->isDemo)
        row += " <span class=\"mark\">示例</span>";
    row += "</th><td>";
    row += TypeText(project->type);
    row += "</td><td>" + StateElement(state) + "</td><td>";
    row += state.revised > 0 ? TimeElement(state.revised) : "—";
    return row + "</td></tr>\n";
}

std::string TableOf(const std::vector<Line>& lines)
{
    const std::string count = "共 " + Grouped(lines.size()) + " 个工程，最近更新的在前";
    // The script shows the field when there is enough to search in.
    std::string table =
        "<p class=\"find\" hidden><label>按名称查找 <input type=\"search\" autocomplete=\"off\">"
        "</label> <output></output></p>\n<table class=\"projects\">\n<caption>" +
        count +
        "</caption>\n<thead><tr><th scope=\"col\">工程名称</th><th scope=\"col\">工程类型</th>"
        "<th scope=\"col\">状态</th><th scope=\"col\">最近更新</th></tr></thead>\n<tbody>\n";
    for (const auto& line : lines)
        table += RowOf(line);
    return table + "</tbody>\n</table>\n";
}

/// The script fills it and keeps it up to date.
constexpr const char* jobs =
    "<section class=\"jobs\" hidden>\n<h2>模型转换</h2>\n<p class=\"trouble\" role=\"status\"></p>\n"
    "<table>\n<thead><tr><th scope=\"col\">模型</th><th scope=\"col\">工程</th><th scope=\"col\">状态</th>"
    "<th scope=\"col\">操作</th></tr></thead>\n<tbody></tbody>\n</table>\n</section>\n"
    "<noscript><p>请允许脚本运行，才能看到模型转换的进度。</p></noscript>\n";

} // namespace

Reply ConsolePage(const Session& session, const std::string& guard, const std::vector<Project>& projects,
                  const std::vector<ProjectState>& states)
{
    PageFrame frame{.title = "工程", .loginName = session.loginName};
    const auto lines = LinesOf(projects, states);
    if (lines.empty())
        return NoticeReply(200, frame, "这个帐号还没有工程。", "在程序里新建工程并上传，它就会出现在这里。");
    frame.guard = guard;
    frame.script = "jobs.js";
    return PageReply(200, frame, TableOf(lines) + jobs);
}

} // namespace server
