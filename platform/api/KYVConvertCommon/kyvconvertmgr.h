// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>
#include <QString>

namespace KYVConvertCommon
{

/// The conversion engine of this machine. GUI thread; conversions run in child processes.
///
/// A finished model stands under its uid in the data folder, ready for IZRModelStore::ImportModelProj.
class CKYVConvertMgr : public QObject
{
    Q_OBJECT

public:
    explicit CKYVConvertMgr(QObject* parent = nullptr);
    ~CKYVConvertMgr() override;

    /// Makes the engine ready; before any conversion.
    void Init();

    /// Ends all conversions as CancleAllConvert does. The engine may be made ready again.
    void UnInit();

    /// Queues the conversion of a model archive and returns at once. `mode` 0: static model; 1: level
    /// loading, quality first; 3: level loading, performance first.
    void ConvertKyv(const QString& uid, const QString& absoluteFilePath, int mode);

    /// Queues the conversion of a DWG drawing and returns at once.
    void ConvertDwg(const QString& uid, const QString& absoluteFilePath);

    /// Queues the conversion of an FBX file and returns at once.
    void ConvertFBX(const QString& uid, const QString& absoluteFilePath);

    /// Drops the queue and kills the running conversions; no signal comes for them, and no file is left.
    void CancleAllConvert();

signals:
    /// A conversion has entered `state`, a number of CKYVConvertState::ConvertState.
    void sigConvertKyvStateNty(const QString& uid, const QString& file, int state);

private:
    class Engine;
    std::unique_ptr<Engine> m_engine;
};

} // namespace KYVConvertCommon
