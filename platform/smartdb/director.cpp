// SPDX-License-Identifier: MIT
#include "ZRSmartDB/zrdbdirector.h"

#include "smartdb/database.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"

#include <memory>
#include <mutex>
#include <vector>

namespace ZRSmartDB
{

namespace
{

/// Databases that have ended. They stay, a few bytes each, since a worker that nobody waits for may still
/// come to one.
std::vector<std::unique_ptr<Database>>& EndedDatabases()
{
    static std::vector<std::unique_ptr<Database>> databases;
    return databases;
}

class Director final : public IZRDBDirector
{
public:
    Director() = default;
    Director(const Director&) = delete;
    Director& operator=(const Director&) = delete;
    ~Director() { endDatabase(); }

    [[nodiscard]] bool SetServer(const std::wstring& address) override
    {
        auto database = std::make_unique<Database>();
        if (!database->setServer(Utf8Of(address)))
            return false;
        endDatabase();
        m_database = std::move(database);
        return true;
    }

    [[nodiscard]] IZRDatabase* GetDatabase() override { return m_database.get(); }

private:
    void endDatabase()
    {
        if (!m_database)
            return;
        m_database->end();
        EndedDatabases().push_back(std::move(m_database));
        ForgetFailures();
    }

    std::unique_ptr<Database> m_database;
};

std::mutex directorMutex; ///< protects the one director
std::unique_ptr<Director> theDirector;

} // namespace

IZRDBDirector* GetIDBDirector()
{
    const std::lock_guard lock(directorMutex);
    if (!theDirector)
        theDirector = std::make_unique<Director>();
    return theDirector.get();
}

void FreeIDBDirector()
{
    std::unique_ptr<Director> ended;
    {
        const std::lock_guard lock(directorMutex);
        ended = std::move(theDirector);
    }
}

} // namespace ZRSmartDB
