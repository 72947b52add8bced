// SPDX-License-Identifier: MIT
#include "ZRSmartDB/zrdbnetaccess.h"
#include "ZRSmartDB/zrproject.h"
#include "http/client.h"
#include "smartdb/database.h"

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <nlohmann/json.hpp>

// Somebody else who works on the same projects, on a machine of their own: a data folder and a login. One
// command a run:
//     torvo-colleague SERVER ACCOUNT PASSWORD FOLDER download|update|upload|force GUID
//     torvo-colleague SERVER ACCOUNT PASSWORD FOLDER edit GUID NOTE
//     torvo-colleague SERVER ACCOUNT PASSWORD FOLDER state|note|facts GUID
// The last three print what they have found, the facts as JSON.

namespace
{

using namespace ZRSmartDB;

std::wstring Wide(const std::string& text)
{
    return {text.begin(), text.end()};
}

std::string LogIn(const std::string& server, const std::string& account, const std::string& password)
{
    http::Client client;
    if (!client.setServer(server))
        throw std::runtime_error("no address: " + server);
    http::Request request;
    request.method = "POST";
    request.path = "/api/v1/login";
    request.contentType = "application/json";
    request.body = nlohmann::json{{"account", account}, {"password", password}}.dump();
    const auto reply = client.send(request);
    if (reply.fault)
        throw std::runtime_error(reply.fault.msg);
    return nlohmann::json::parse(reply.body).at("token").get<std::string>();
}

/// Where the editor of a tab keeps the note.
constexpr const wchar_t* noteKey = L"note";

/// What the card of the home window shows and edits.
bool PrintFacts(const IZRProject& project)
{
    const auto text = [](const std::wstring& value) { return QString::fromStdWString(value); };
    const QJsonObject facts{
        {"name", text(project.GetName())},
        {"type", text(project.GetType())},
        {"iotCode", text(project.GetIotCode())},
        {"proj4", text(project.GetProj4())},
        {"template", text(project.GetTemplate())},
        {"longitude", project.GetPosition().GetX()},
        {"latitude", project.GetPosition().GetY()},
        {"region", QJsonDocument::fromJson(text(project.GetAttr(L"Pa_BelongsRegion")).toUtf8()).object()},
    };
    return std::printf("%s\n", QJsonDocument(facts).toJson(QJsonDocument::Compact).constData()) > 0;
}

bool Run(Database& database, const std::string& dataFolder, const std::string& command,
         const std::string& guid, const std::string& text)
{
    const auto key = ZRSmartFormat::GuidFromText(Wide(guid));
    const auto folder = Wide(dataFolder);
    if (command == "download")
        return database.DownLoadProj(key, folder);
    if (command == "update")
        return database.UpdateProj(key, folder);
    if (command == "upload" || command == "force")
        return database.UploadProj(key, folder, command == "force", false);
    if (command == "edit" || command == "note" || command == "facts") {
        auto* project = database.OpenProject(key, folder);
        if (project == nullptr)
            return false;
        if (command == "facts")
            return PrintFacts(*project);
        if (command == "note")
            return std::printf("%ls\n", project->GetAttr(noteKey).c_str()) > 0;
        project->SetAttr(noteKey, Wide(text));
        return database.SaveAll();
    }
    int state = -1;
    if (command != "state" || !database.GetProjStatus(key, folder, state))
        return false;
    std::printf("%d\n", state);
    return true;
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 7)
        return 2;
    const std::vector<std::string> given(arguments + 1, arguments + count);
    try {
        Database database;
        if (!database.setServer(given[0]))
            return 2;
        database.SetUp(0);
        database.GetNetAccess()->LoginByToken(Wide(LogIn(given[0], given[1], given[2])));
        if (Run(database, given[3], given[4], given[5], given.size() > 6 ? given[6] : std::string()))
            return 0;
        std::wstring reason;
        database.GetLastError(reason);
        std::fprintf(stderr, "torvo-colleague: %ls\n", reason.c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "torvo-colleague: %s\n", error.what());
    }
    return 1;
}
