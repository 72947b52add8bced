// SPDX-License-Identifier: MIT
#include "fakes/fakefloorinfo.h"

#include "fakes/calls.h"
#include "fakes/floortexts.h"

namespace Fakes
{

namespace
{

QMap<QString, Floors>& AllFloors()
{
    static QMap<QString, Floors> floors;
    return floors;
}

} // namespace

Floors& FloorsOf(const QString& bimGuid)
{
    return AllFloors()[bimGuid];
}

void ForgetFloors()
{
    AllFloors().clear();
}

} // namespace Fakes

namespace BIZCOMMON::FLOORINFO
{

class CFloorInfo::Storage
{
public:
    explicit Storage(const QString& bimGuid)
        : m_bimGuid(bimGuid)
    {
    }

    void called(const char* operation, const QStringList& arguments = {}) const
    {
        const auto all = QStringList(m_bimGuid) + arguments;
        Fakes::Called(QStringLiteral("%1(%2)").arg(QLatin1String(operation), all.join(QLatin1Char(','))));
    }
    [[nodiscard]] Fakes::Floors& floors() const { return Fakes::FloorsOf(m_bimGuid); }

private:
    QString m_bimGuid;
};

CFloorInfo::CFloorInfo(const QString& bimGuid, const QString& dataDir)
    : m_storage(std::make_unique<Storage>(bimGuid))
{
    m_storage->called("CFloorInfo", {dataDir});
}

CFloorInfo::~CFloorInfo()
{
    m_storage->called("~CFloorInfo");
}

void CFloorInfo::LoadFloors(const QStringList& bimGuids)
{
    m_storage->called("LoadFloors", {QStringLiteral("[%1]").arg(bimGuids.join(QLatin1Char(',')))});
}

QList<TFloorRec> CFloorInfo::GetDefaultFloors()
{
    m_storage->called("GetDefaultFloors");
    return m_storage->floors().defaults;
}

QMap<QString, QStringList> CFloorInfo::GetProjFloors()
{
    m_storage->called("GetProjFloors");
    return m_storage->floors().ofModels;
}

void CFloorInfo::SaveFloors(const QList<TFloorRec>& floors)
{
    m_storage->called("SaveFloors", Fakes::TextsOf(floors));
    m_storage->floors().stored = floors;
}

QList<TFloorRec> CFloorInfo::GetFloors()
{
    m_storage->called("GetFloors");
    return m_storage->floors().stored;
}

QList<TFloorRec> CFloorInfo::GetResetFloors()
{
    m_storage->called("GetResetFloors");
    return m_storage->floors().reset;
}

void CFloorInfo::AddKyvProj(const QString& model)
{
    m_storage->called("AddKyvProj", {model});
}

void CFloorInfo::RemoveKyvProj(const QString& model)
{
    m_storage->called("RemoveKyvProj", {model});
}

void CFloorInfo::UpdateKyvProj(const QString& oldModel, const QString& newModel)
{
    m_storage->called("UpdateKyvProj", {oldModel, newModel});
}

} // namespace BIZCOMMON::FLOORINFO
