// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <atomic>
#include <memory>

#include <QStringList>
#include <QThread>

namespace editortab
{

using SharedModel = std::shared_ptr<const gltf::Model>;

/// Reads model files on a thread of its own, one after the other. The signals reach the GUI thread queued.
class ModelLoader : public QThread
{
    Q_OBJECT

public:
    explicit ModelLoader(QStringList files, QObject* parent = nullptr);
    /// Ends after the file that is being read.
    ~ModelLoader() override;

signals:
    /// The file `index` has been read.
    void loaded(int index, const editortab::SharedModel& model);
    /// The file `index` cannot be shown; `reason` is for the user.
    void failed(int index, const QString& reason);

protected:
    void run() override;

private:
    QStringList m_files;
    std::atomic<bool> m_isStopped = false;
};

} // namespace editortab

Q_DECLARE_METATYPE(editortab::SharedModel)
