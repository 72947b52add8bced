// SPDX-License-Identifier: MIT
#include "editortab/document/modelloader.h"

#include "gltf/modelreader.h"

#include <utility>

namespace editortab
{

ModelLoader::ModelLoader(QStringList files, QObject* parent)
    : QThread(parent)
    , m_files(std::move(files))
{
    qRegisterMetaType<SharedModel>("editortab::SharedModel");
}

ModelLoader::~ModelLoader()
{
    m_isStopped = true;
    wait();
}

void ModelLoader::run()
{
    for (int i = 0; i < m_files.size() && !m_isStopped; ++i) {
        auto read = gltf::ReadModel(m_files.at(i).toStdString());
        if (const auto* unreadable = std::get_if<gltf::Unreadable>(&read))
            emit failed(i, QString::fromStdString(unreadable->reason));
        else
            emit loaded(i, std::make_shared<const gltf::Model>(std::get<gltf::Model>(std::move(read))));
    }
}

} // namespace editortab
