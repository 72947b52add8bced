// SPDX-License-Identifier: MIT
#include "person.h"

#include "ZRSmartDB/zrdbnetaccess.h"

#include <fstream>
#include <random>
#include <stdexcept>

#include <QJsonDocument>
#include <QJsonObject>
#include <sqlite3.h>

using namespace ZRSmartDB;

ZRSmartFormat::SZRFTGuid Key(const std::string& guid)
{
    return ZRSmartFormat::GuidFromText(std::wstring(guid.begin(), guid.end()));
}

std::string RandomBytes(std::size_t count, unsigned seed)
{
    std::mt19937_64 random(seed);
    std::string bytes;
    while (bytes.size() < count) {
        const auto word = random();
        bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
    }
    bytes.resize(count);
    return bytes;
}

Person::Person(const RealServer& server, const std::shared_ptr<Disk>& disk)
    : m_server(server)
    , m_disk(disk)
{
    restart();
}

void Person::restart()
{
    m_database = std::make_unique<Database>(m_disk);
    if (!m_database->setServer(m_server.address()))
        throw std::runtime_error("no server");
    m_database->SetUp(0);
    const auto token = m_server.newToken("wang", "secret");
    m_database->GetNetAccess()->LoginByToken(std::wstring(token.begin(), token.end()));
}

bool Person::upload(const std::string& guid, bool isForced)
{
    return m_database->UploadProj(Key(guid), dataFolderText(), isForced, false);
}

bool Person::download(const std::string& guid)
{
    return m_database->DownLoadProj(Key(guid), dataFolderText());
}

bool Person::update(const std::string& guid)
{
    return m_database->UpdateProj(Key(guid), dataFolderText());
}

int Person::state(const std::string& guid)
{
    m_database->expireStates();
    int state = -1;
    return m_database->GetProjStatus(Key(guid), dataFolderText(), state) ? state : -1;
}

int Person::lastCode()
{
    std::wstring reason;
    m_database->GetLastError(reason);
    const auto told = QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object();
    return told.value("code").toInt();
}

QString Person::lastWords()
{
    std::wstring reason;
    m_database->GetLastError(reason);
    return QString::fromStdWString(reason);
}

void Person::create(const std::string& guid, const std::string& type)
{
    ProjectHead head;
    head.guid = guid;
    head.name = "工程";
    head.type = type;
    ProjectFile::create(folder(guid), head);
    write(guid, "projimage.jpg", "picture");
}

void Person::edit(const std::string& guid, const std::string& note)
{
    const ProjectHead before = ProjectFile(folder(guid)).readHead();
    ProjectHead after = before;
    after.note = note;
    ProjectChange change;
    change.head = &after;
    change.headBefore = &before;
    ProjectFile(folder(guid)).write(change);
}

std::string Person::note(const std::string& guid) const
{
    return ProjectFile(folder(guid)).readHead().note;
}

void Person::addModel(const std::string& guid, const std::string& model, unsigned seed)
{
    ProjectHead head;
    head.guid = model;
    head.type = "MODEL";
    ProjectFile::create(folder(model), head);
    write(model, "model.glb", RandomBytes(2'000'000, seed));
    ProjectChange change;
    change.putModels = {{model, "m", "MODEL", {}}};
    ProjectFile(folder(guid)).write(change);
}

void Person::write(const std::string& guid, const std::string& file, const std::string& bytes) const
{
    std::ofstream(folder(guid) / file, std::ios::binary) << bytes;
}

std::string Person::read(const std::string& guid, const std::string& file) const
{
    std::ifstream stream(folder(guid) / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::filesystem::path Person::folder(const std::string& guid) const
{
    return ProjectFolder(dataFolder(), guid);
}

std::string Person::integrity(const std::string& guid) const
{
    sqlite3* database = nullptr;
    std::string answer = "cannot be opened";
    const auto take = [](void* context, int, char** columns, char**) {
        *static_cast<std::string*>(context) = columns[0];
        return 0;
    };
    if (sqlite3_open(DatabaseIn(folder(guid)).c_str(), &database) == SQLITE_OK)
        sqlite3_exec(database, "PRAGMA integrity_check", take, &answer, nullptr);
    sqlite3_close(database);
    return answer;
}
