// SPDX-License-Identifier: MIT
#include "convert/bimmgr.h"

#include "KYVConvertCommon/convertkeys.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "convert/floorinfomgr.h"
#include "convert/modelfile.h"
#include "convert/modelrecords.h"
#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "project/guidtext.h"

#include <algorithm>

#include <QDebug>
#include <QFileInfo>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSet>
#include <QUuid>

namespace TorvoEditor
{

using KYVConvertCommon::CKYVConvertMgr;
using KYVConvertCommon::CKYVConvertState;

namespace
{

QString NewUid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

int ModeOf(bool isLevelModel, bool levelPerformanceFirst)
{
    return isLevelModel ? static_cast<int>(levelPerformanceFirst) * 2 + 1 : 0;
}

void SetLevelModel(CKYVConvertState& state, bool isLevelModel)
{
    if (state.isLevelModel == isLevelModel)
        return;
    state.isLevelModel = isLevelModel;
    emit state.isLevelModelChanged();
}

CKYVConvertState* StateAt(const QMap<QString, QObject*>& models, const QString& uid)
{
    return qobject_cast<CKYVConvertState*>(models.value(uid));
}

bool IsPending(QObject* object)
{
    const auto* state = qobject_cast<CKYVConvertState*>(object);
    return state != nullptr && state->pendingOp != CKYVConvertState::OpNone;
}

bool IsFromArchive(const ZRSmartDB::IZRModelRecord& record)
{
    return record.GetAttribute(KYVConvertCommon::attributeImportSourceType).empty() &&
           record.GetType() != L"DWG";
}

/// Tells the floors of a project, where there are any.
template<class Tell>
void TellFloors(Tell tell)
{
    if (auto* floors = CHomeApp::instance().GetMgr<CFloorInfoMgr>())
        tell(*floors);
}

} // namespace

CBimMgr::CBimMgr(QObject* parent)
    : QObject(parent)
{
}

void CBimMgr::Init()
{
    connect(&m_convertMgr, &CKYVConvertMgr::sigConvertKyvStateNty, this, &CBimMgr::onReadyConvertKyv);
    m_convertMgr.Init();
}

void CBimMgr::UnInit()
{
    m_bimProjs.clear();
    m_convertMgr.UnInit();
}

void CBimMgr::RegisterContext(QQmlContext* context)
{
    qmlRegisterType<CKYVConvertState>("CKYVConvertState", 1, 0, "KYVConvertState");
    context->setContextProperty(QStringLiteral("bimMgr"), this);
}

void CBimMgr::setCurrentBimGuid(const QString& bimGuid)
{
    if (m_currentBimGuid == bimGuid)
        return;
    m_currentBimGuid = bimGuid;
    emit currentBimGuidChanged();
}

QList<QObject*> CBimMgr::projList() const
{
    return m_bimProjs.value(m_currentBimGuid).values();
}

void CBimMgr::add(const QString& bimGuid, const QUrl& file, bool isLevelModel, bool levelPerformanceFirst)
{
    if (file.isEmpty())
        return;
    const QString path = ModelFilePath(file);
    const auto* state = addEntry(bimGuid, path, true, isLevelModel);
    m_convertMgr.ConvertKyv(state->uid, path, ModeOf(isLevelModel, levelPerformanceFirst));
    checkConverting();
}

void CBimMgr::addDwgProj(const QUrl& file)
{
    if (file.isEmpty())
        return;
    const QString path = ModelFilePath(file);
    const auto* state = addEntry(m_currentBimGuid, path, false, false);
    m_convertMgr.ConvertDwg(state->uid, path);
    checkConverting();
}

void CBimMgr::addFBXProj(const QUrl& file)
{
    if (file.isEmpty())
        return;
    const QString path = ModelFilePath(file);
    const auto* state = addEntry(m_currentBimGuid, path, false, false);
    m_convertMgr.ConvertFBX(state->uid, path);
    checkConverting();
}

CBimMgr::State* CBimMgr::addEntry(const QString& bimGuid, const QString& path, bool isKyvModel,
                                  bool isLevelModel)
{
    auto* state = new CKYVConvertState(this);
    state->uid = NewUid();
    state->setName(QFileInfo(path).baseName());
    state->isKyvModel = isKyvModel;
    state->setConvertState(CKYVConvertState::Waiting);
    state->bimGuid = bimGuid;
    state->pendingOp = CKYVConvertState::OpAdd;
    SetLevelModel(*state, isLevelModel);
    m_bimProjs[bimGuid].insert(state->uid, state);
    emit projListChanged();
    return state;
}

void CBimMgr::update(const QString& bimGuid, const QUrl& file, const QString& kyvGuid, bool isLevelModel,
                     bool levelPerformanceFirst)
{
    if (file.isEmpty()) {
        qInfo() << "file not exist " << file.toString();
        return;
    }
    const auto models = m_bimProjs.find(bimGuid);
    if (models == m_bimProjs.end()) {
        qInfo() << "bim proj not exist" << bimGuid;
        return;
    }
    auto* state = StateAt(*models, kyvGuid);
    if (state == nullptr) {
        qInfo() << "kyv proj not exist" << kyvGuid;
        return;
    }
    const QString path = ModelFilePath(file);
    state->setConvertState(CKYVConvertState::Waiting);
    state->oldUid = state->uid;
    state->oldName = state->name();
    state->pendingOp = CKYVConvertState::OpUpdate;
    SetLevelModel(*state, isLevelModel);
    state->uid = NewUid();
    state->setName(QFileInfo(path).baseName());
    models->remove(kyvGuid);
    models->insert(state->uid, state);
    emit projListChanged();
    m_convertMgr.ConvertKyv(state->uid, path, ModeOf(isLevelModel, levelPerformanceFirst));
    checkConverting();
}

void CBimMgr::onReadyConvertKyv(const QString& uid, const QString& /*file*/, int convertState)
{
    const auto models = std::find_if(m_bimProjs.cbegin(), m_bimProjs.cend(),
                                     [&](const Models& each) { return StateAt(each, uid) != nullptr; });
    if (models == m_bimProjs.cend()) {
        qWarning() << "not found state with " << uid;
        return;
    }
    auto* state = StateAt(*models, uid);
    if (state->pendingOp == CKYVConvertState::OpAdd || state->pendingOp == CKYVConvertState::OpUpdate) {
        state->setConvertState(static_cast<CKYVConvertState::ConvertState>(convertState));
        if (convertState == CKYVConvertState::ConvertFinished)
            takeFinished(QString(models.key()), *state);
        else if (convertState == CKYVConvertState::ConvertFailed)
            state->pendingOp = CKYVConvertState::OpNone;
    }
    checkConverting();
}

void CBimMgr::takeFinished(const QString& bimGuid, State& state)
{
    const bool isUpdate = state.pendingOp == CKYVConvertState::OpUpdate;
    state.pendingOp = CKYVConvertState::OpNone;
    if (isUpdate)
        updateModel(bimGuid, state.oldUid, state.uid);
    else
        importModel(bimGuid, state.uid);
}

void CBimMgr::updateModel(const QString& bimGuid, const QString& oldUid, const QString& uid)
{
    auto* store = OpenedModelStore(bimGuid);
    if (store == nullptr || !store->UpdateModelProj(KeyOf(oldUid), KeyOf(uid), DataDir().toStdWString())) {
        qWarning() << "UpdateModelProj failed " << oldUid << uid;
        return;
    }
    TellFloors([&](CFloorInfoMgr& floors) { floors.UpdateKyvProj(bimGuid, oldUid, uid); });
}

void CBimMgr::importModel(const QString& bimGuid, const QString& uid)
{
    auto* store = OpenedModelStore(bimGuid);
    if (store == nullptr || !store->ImportModelProj(KeyOf(uid), DataDir().toStdWString())) {
        qWarning() << "ImportModelProj failed " << uid;
        return;
    }
    showImported(bimGuid, uid);
}

void CBimMgr::showImported(const QString& bimGuid, const QString& uid)
{
    auto* store = ModelStoreOnDisk(bimGuid);
    if (store == nullptr || !store->HasModelProj(KeyOf(uid)))
        return;
    const auto* record = store->GetModelProj(KeyOf(uid));
    if (record == nullptr)
        return;
    auto& models = m_bimProjs[bimGuid];
    auto* state = StateAt(models, uid);
    if (state == nullptr) {
        state = new CKYVConvertState(this);
        models.insert(uid, state);
    }
    state->uid = uid;
    state->setName(QString::fromStdWString(record->GetName()));
    state->setConvertState(CKYVConvertState::ConvertFinished);
    emit projListChanged();
    TellFloors([&](CFloorInfoMgr& floors) { floors.AddKyvProj(bimGuid, uid); });
}

void CBimMgr::syncProjList(const QString& bimGuid)
{
    setCurrentBimGuid(bimGuid);
    dropAllBut(bimGuid, takeRecords(bimGuid));
    emit projListChanged();
    TellFloors([&](CFloorInfoMgr& floors) { floors.Create(bimGuid); });
}

QStringList CBimMgr::takeRecords(const QString& bimGuid)
{
    QStringList uids;
    for (const auto* record : ModelRecords(bimGuid)) {
        const QString uid = TextOf(record->GetGuid());
        auto& models = m_bimProjs[bimGuid];
        auto* state = StateAt(models, uid);
        if (state == nullptr) {
            state = new CKYVConvertState(this);
            state->setConvertState(CKYVConvertState::ConvertFinished);
            state->isKyvModel = IsFromArchive(*record);
            models.insert(uid, state);
        }
        state->setName(QString::fromStdWString(record->GetName()));
        state->uid = uid;
        uids.append(uid);
    }
    return uids;
}

void CBimMgr::dropAllBut(const QString& bimGuid, const QStringList& uids)
{
    const QSet<QString> kept(uids.begin(), uids.end());
    const auto keys = m_bimProjs.value(bimGuid).keys();
    for (const auto& uid : keys) {
        auto& models = m_bimProjs[bimGuid];
        const auto* state = StateAt(models, uid);
        if (!kept.contains(uid) || state == nullptr ||
            state->convertState() == CKYVConvertState::ConvertFailed)
            models.remove(uid);
    }
}

void CBimMgr::remove(const QString& bimGuid, const QString& kyvGuid)
{
    auto* store = OpenedModelStore(bimGuid);
    if (store == nullptr)
        return;
    store->RemoveModelProj(KeyOf(kyvGuid));
    const auto models = m_bimProjs.find(bimGuid);
    if (models == m_bimProjs.end() || models->remove(kyvGuid) == 0)
        return;
    emit projListChanged();
    TellFloors([&](CFloorInfoMgr& floors) { floors.RemoveKyvProj(bimGuid, kyvGuid); });
}

void CBimMgr::cancle(const QString& bimGuid)
{
    if (!CloseProject(bimGuid))
        return;
    m_convertMgr.CancleAllConvert();
    m_bimProjs.remove(bimGuid);
    checkConverting();
    TellFloors([&](CFloorInfoMgr& floors) { floors.Remove(bimGuid); });
}

void CBimMgr::removeBimProj(QString bimGuid)
{
    m_convertMgr.CancleAllConvert();
    qDeleteAll(m_bimProjs.take(bimGuid));
    TellFloors([&](CFloorInfoMgr& floors) { floors.Remove(bimGuid); });
}

bool CBimMgr::checkedUpdate(const QString& selectedGuid) const
{
    const auto models = m_bimProjs.value(m_currentBimGuid);
    for (auto* object : models) {
        const auto* state = qobject_cast<CKYVConvertState*>(object);
        if (state != nullptr && state->uid == selectedGuid)
            return state->isKyvModel && state->convertState() == CKYVConvertState::ConvertFinished;
    }
    return false;
}

void CBimMgr::checkConverting()
{
    const auto models = m_bimProjs.value(m_currentBimGuid);
    const bool isConverting = std::any_of(models.cbegin(), models.cend(), IsPending);
    if (m_isConverting == isConverting)
        return;
    m_isConverting = isConverting;
    emit isConvertingChanged(isConverting);
}

} // namespace TorvoEditor
