// SPDX-License-Identifier: MIT
#include "prepareddatabase.h"

namespace
{

PreparedDatabase::Task EndedTask(const std::wstring& error)
{
    const Concurrency::task_completion_event<std::wstring> event;
    event.set(error);
    return PreparedDatabase::Task(event);
}

} // namespace

PreparedDatabase::PreparedDatabase()
    : m_done(EndedTask(L""))
    , m_failed(EndedTask(L"not prepared"))
{
}

PreparedDatabase& PreparedDatabase::instance()
{
    static PreparedDatabase database;
    return database;
}

void PreparedDatabase::add(const Text& guid, const Text& name, const Text& type)
{
    const auto key = ZRSmartFormat::GuidFromText(guid);
    m_projects.try_emplace(key, key, name, type);
}

ZRSmartDB::IZRProject* PreparedDatabase::OpenProject(const Guid& guid, const Text& /*dataFolder*/)
{
    const auto found = m_projects.find(guid);
    return found != m_projects.end() ? &found->second : nullptr;
}

ZRSmartDB::IZRProject* PreparedDatabase::CreateProj(const Guid& /*guid*/, const Text& /*name*/,
                                                    const Text& /*type*/,
                                                    const ZRIMGeometryModel::CZRIMPosition& /*position*/,
                                                    const Text& /*dataFolder*/)
{
    return nullptr;
}

bool PreparedDatabase::GetProjStatus(const Guid& guid, const Text& /*dataFolder*/, int& state)
{
    if (!m_projects.contains(guid))
        return false;
    state = 1;
    return true;
}

PreparedDatabase::Task PreparedDatabase::GetStatusByProjId(const Guid& guid, std::shared_ptr<Text> reply)
{
    if (!m_projects.contains(guid))
        return m_failed;
    *reply = L"1";
    return m_done;
}

namespace ZRSmartDB
{

IZRDBDirector* GetIDBDirector()
{
    return &PreparedDatabase::instance();
}

void FreeIDBDirector() {}

} // namespace ZRSmartDB
