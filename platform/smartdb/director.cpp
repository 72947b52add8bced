// SPDX-License-Identifier: MIT
#include "ZRSmartDB/zrdbdirector.h"

#include "smartdb/database.h"
#include "smartdb/text.h"

#include <memory>
#include <mutex>

namespace ZRSmartDB
{

namespace
{

class Director final : public IZRDBDirector
{
public:
    [[nodiscard]] bool SetServer(const std::wstring& address) override
    {
        auto database = std::make_unique<Database>();
        if (!database->setServer(Utf8Of(address)))
            return false;
        m_database = std::move(database);
        return true;
    }

    [[nodiscard]] IZRDatabase* GetDatabase() override { return m_database.get(); }

private:
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
