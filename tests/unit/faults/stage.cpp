// SPDX-License-Identifier: MIT
#include "stage.h"

#include "wire/digest.h"
#include "wire/projectfolder.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include <sqlite3.h>

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t tilesBytes = 1'300'000;
constexpr std::size_t noteBytes = 60'000;
constexpr int looks = 10;

enum State { notHere = -1, onlyHere = 0, same = 1, changedHere = 2, changedThere = 3 };

constexpr int missingCode = 40400;
constexpr int noContentCode = 40410;
constexpr std::size_t nameLetters = 120;

/// Long enough to lie on many pages of the database.
std::string NoteOf(unsigned revision)
{
    std::string note = "revision " + std::to_string(revision) + ' ';
    for (const char byte : RandomBytes(noteBytes, revision))
        note += static_cast<char>('a' + (static_cast<unsigned char>(byte) % 26));
    return note;
}

bool HasSides(Person& person)
{
    for (const auto& entry : fs::directory_iterator(person.dataFolder())) {
        if (entry.path().filename().string().starts_with(".side-"))
            return true;
    }
    return false;
}

std::string Name(const Content& content)
{
    return content.empty() ? "nothing" : '"' + content.substr(0, nameLetters) + "...\"";
}

/// Whether the server has nothing of a project yet.
bool IsMissing(int code)
{
    return code == missingCode || code == noContentCode;
}

} // namespace

const char* NameOf(Operation operation)
{
    switch (operation) {
    case Operation::firstUpload:
        return "first upload";
    case Operation::upload:
        return "upload";
    case Operation::download:
        return "download";
    case Operation::update:
        break;
    }
    return "update";
}

Stage::Stage(const QStringList& serverOptions)
    : m_server(TORVO_SERVER, serverOptions)
    , m_anna(m_server)
    , m_ben(m_server)
    , m_annasToken(m_server.newToken("wang", "secret"))
    , m_bensToken(m_server.newToken("wang", "secret"))
{
    prepare(Operation::firstUpload);
    if (!run(Operation::firstUpload).isDone || look() != m_after)
        throw std::runtime_error("no first revision");
}

void Stage::makeProject()
{
    for (Person* person : {&m_anna, &m_ben}) {
        if (!m_guid.empty())
            fs::remove_all(person->folder(m_guid));
    }
    char guid[64];
    std::snprintf(guid, sizeof guid, "11111111-0d52-4a67-8f10-2b9a5e4d%04d", ++m_projects);
    m_guid = guid;
    m_anna.create(m_guid, "CIM");
    m_anna.write(m_guid, "terrain.bin", RandomBytes(tilesBytes, static_cast<unsigned>(m_projects)));
}

void Stage::makeRevision()
{
    ++m_revision;
    m_anna.edit(m_guid, NoteOf(m_revision));
    m_anna.write(m_guid, "tiles.bin", RandomBytes(tilesBytes, 1000 + m_revision));
    m_after = contentOf(m_anna);
}

void Stage::prepare(Operation operation)
{
    m_before = m_after;
    if (operation == Operation::firstUpload) {
        m_before.clear();
        makeProject();
    }
    if (operation == Operation::download)
        fs::remove_all(m_ben.folder(m_guid));
    else
        makeRevision();
    if (operation != Operation::update)
        return;
    if (const auto outcome = run(Operation::upload); !outcome.isDone)
        throw std::runtime_error("no upload for an update: " + outcome.words.toStdString());
}

QStringList Stage::commandOf(Operation operation, const std::string& address) const
{
    const bool isUpload = operation == Operation::firstUpload || operation == Operation::upload;
    const auto& person = isUpload ? m_anna : m_ben;
    const QString command = isUpload ? "upload" : NameOf(operation);
    return {QString::fromStdString(address.empty() ? m_server.address() : address),
            QString::fromStdString(isUpload ? m_annasToken : m_bensToken),
            QString::fromStdString(person.dataFolder().string()), command, QString::fromStdString(m_guid)};
}

Outcome Stage::run(Operation operation, const QStringList& limit) const
{
    Client client;
    client.start(commandOf(operation) + limit);
    return client.wait();
}

Outcome Stage::measure(Operation operation)
{
    Outcome longest;
    for (int i = 0; i < 2; ++i) {
        prepare(operation);
        const auto outcome = run(operation);
        if (!outcome.isDone || look() != m_after)
            throw std::runtime_error(std::string("no undisturbed ") + NameOf(operation) + ": " +
                                     outcome.words.toStdString());
        if (outcome.length > longest.length)
            longest = outcome;
    }
    return longest;
}

std::string Stage::findings(Operation operation, bool isDone)
{
    const bool isUpload = operation == Operation::firstUpload || operation == Operation::upload;
    auto words =
        isUpload ? findingsOfUpload(isDone) : findingsOfFetch(isDone, operation == Operation::update);
    if (const auto server = serverIntegrity(); server != "ok")
        words += "the server's database: " + server + "; ";
    return words;
}

std::string Stage::findingsOfUpload(bool isDone)
{
    // What a killed client had sent may still be on its way into the server.
    Content seen;
    int state = notHere;
    int left = looks;
    do {
        seen = look();
        state = m_anna.state(m_guid);
    } while (look() != seen && --left > 0);
    std::string words;
    if (seen != m_before && seen != m_after)
        words += "somebody else sees " + Name(seen) + " of neither revision; ";
    if (isDone && seen != m_after)
        words += "said to be done, but is not on the server; ";
    if (contentOf(m_anna) != m_after)
        words += "the uploaded project is " + Name(contentOf(m_anna)) + ", not what it was; ";
    const int changed = m_before.empty() ? onlyHere : changedHere;
    if (const int expected = seen == m_after ? same : changed; state != expected)
        words += "state " + std::to_string(state) + " instead of " + std::to_string(expected) + "; ";
    if (const auto integrity = m_anna.integrity(m_guid); integrity != "ok")
        words += "the uploaded database: " + integrity + "; ";
    if (!seen.empty() && m_ben.integrity(m_guid) != "ok")
        words += "the database that somebody else gets: " + m_ben.integrity(m_guid) + "; ";
    return words;
}

std::string Stage::findingsOfFetch(bool isDone, bool wasHere)
{
    const auto content = contentOf(m_ben);
    const int state = m_ben.state(m_guid);
    std::string words;
    if (content != m_after && content != (wasHere ? m_before : Content()))
        words += "the folder is " + Name(content) + "; ";
    if (isDone && content != m_after)
        words += "said to be done, but is not there; ";
    const int before = wasHere ? changedThere : notHere;
    if (const int expected = content == m_after ? same : before; state != expected)
        words += "state " + std::to_string(state) + " instead of " + std::to_string(expected) + "; ";
    if (!content.empty() && m_ben.integrity(m_guid) != "ok")
        words += "the database: " + m_ben.integrity(m_guid) + "; ";
    return words;
}

std::string Stage::findingsOfRepetition(Operation operation)
{
    const auto outcome = run(operation);
    std::string words;
    if (!outcome.isDone)
        words = "the repetition fails: " + outcome.words.toStdString() + "; ";
    words += findings(operation, outcome.isDone);
    if (look() != m_after)
        words += "the repetition does not bring the revision; ";
    for (Person* person : {&m_anna, &m_ben}) {
        if (person->state(m_guid) != same)
            words += "after the repetition the state is " + std::to_string(person->state(m_guid)) + "; ";
        if (HasSides(*person))
            words += "side folders are left; ";
    }
    return words;
}

Content Stage::look()
{
    if (fs::exists(m_ben.folder(m_guid))) {
        if (!m_ben.update(m_guid))
            return "no update: " + m_ben.lastWords().toStdString();
    } else if (!m_ben.download(m_guid) && !IsMissing(m_ben.lastCode())) {
        return "no download: " + m_ben.lastWords().toStdString();
    }
    return contentOf(m_ben);
}

Content Stage::contentOf(Person& person) const
{
    const auto folder = person.folder(m_guid);
    if (!fs::exists(folder))
        return {};
    auto content = person.note(m_guid);
    for (const auto& path : wire::ProjectFiles(folder)) {
        content += '\n' + path;
        if (path != wire::projectDatabaseName)
            content += ' ' + wire::ToHex(wire::DigestOf(person.read(m_guid, path)));
    }
    return content;
}

std::string Stage::serverIntegrity() const
{
    sqlite3* database = nullptr;
    std::string answer = "cannot be opened";
    const auto take = [](void* context, int, char** columns, char**) {
        *static_cast<std::string*>(context) = columns[0];
        return 0;
    };
    const auto file = m_server.folder().toStdString() + "/server.db";
    if (sqlite3_open(file.c_str(), &database) == SQLITE_OK)
        sqlite3_exec(database, "PRAGMA integrity_check", take, &answer, nullptr);
    sqlite3_close(database);
    return answer;
}
