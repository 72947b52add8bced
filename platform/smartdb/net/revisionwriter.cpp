// SPDX-License-Identifier: MIT
#include "smartdb/net/revisionwriter.h"

#include "http/fault.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"

#include <algorithm>
#include <utility>

namespace ZRSmartDB
{

RevisionWriter::RevisionWriter(Disk& disk, const wire::Manifest& manifest, std::filesystem::path folder)
    : m_disk(disk)
    , m_manifest(manifest)
    , m_folder(std::move(folder))
{
}

void RevisionWriter::begin()
{
    const auto& file = m_manifest.files[m_index];
    const auto path = m_folder / PathOfUtf8(file.path);
    m_disk.makeFolder(path.parent_path());
    m_output = m_disk.create(path, file.mode);
    m_written = 0;
}

void RevisionWriter::end()
{
    m_output->close();
    m_output.reset();
    ++m_index;
}

void RevisionWriter::endWholeFiles()
{
    while (m_index < m_manifest.files.size()) {
        if (!m_output)
            begin();
        if (m_written < m_manifest.files[m_index].size)
            return;
        end();
    }
}

void RevisionWriter::write(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        endWholeFiles();
        if (m_index == m_manifest.files.size())
            throw Failure(http::faultcode::badReply,
                          "the project server sent more data than the project consists of");
        const auto left = m_manifest.files[m_index].size - m_written;
        const auto part = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(left, bytes.size())));
        m_output->write(part);
        m_written += part.size();
        bytes = bytes.subspan(part.size());
    }
}

void RevisionWriter::finish()
{
    endWholeFiles();
    if (m_index < m_manifest.files.size())
        throw Failure(http::faultcode::badReply, "the project server sent less than the file " +
                                                     m_manifest.files[m_index].path + " consists of");
}

} // namespace ZRSmartDB
