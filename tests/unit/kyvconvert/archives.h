// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/modelwriter.h"

#include <list>
#include <stdexcept>
#include <string>

#include <QByteArray>
#include <QFile>
#include <QString>

#include <zip.h>

/// Makes archives as others might, entry by entry.
class ArchiveMaker
{
public:
    explicit ArchiveMaker(const QString& file)
        : m_archive(zip_open(file.toUtf8().constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr))
    {
        if (m_archive == nullptr)
            throw std::runtime_error("the test cannot make an archive");
    }
    ~ArchiveMaker() { zip_close(m_archive); }
    ArchiveMaker(const ArchiveMaker&) = delete;
    ArchiveMaker& operator=(const ArchiveMaker&) = delete;

    /// Gives the number of the entry.
    zip_uint64_t add(const QByteArray& name, const QByteArray& bytes)
    {
        m_kept.push_back(bytes);
        auto* source = zip_source_buffer(m_archive, m_kept.back().constData(),
                                         static_cast<zip_uint64_t>(bytes.size()), 0);
        return static_cast<zip_uint64_t>(zip_file_add(m_archive, name.constData(), source, ZIP_FL_ENC_GUESS));
    }

    void makeLink(zip_uint64_t entry)
    {
        zip_file_set_external_attributes(m_archive, entry, 0, ZIP_OPSYS_UNIX, 0120777U << 16U);
    }

    void lock(zip_uint64_t entry) { zip_file_set_encryption(m_archive, entry, ZIP_EM_AES_256, "secret"); }

private:
    zip_t* m_archive;
    std::list<QByteArray> m_kept; ///< until the archive is written
};

/// The bytes of a model file.
[[nodiscard]] inline QByteArray GeometryOf(const gltf::Model& model, const QString& folder)
{
    const auto name = folder + "/geometry.glb";
    if (!gltf::WriteModel(model, name.toStdString(), "test"))
        throw std::runtime_error("the test cannot write a model");
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("the test cannot read a model");
    const auto bytes = file.readAll();
    file.remove();
    return bytes;
}
