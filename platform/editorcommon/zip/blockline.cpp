// SPDX-License-Identifier: MIT
#include "zip/blockline.h"

#include "zip/badarchive.h"

#include <utility>

namespace EditorCommon::Zip
{

namespace
{

constexpr qint64 blockSize = 1 << 20;

} // namespace

BlockLine::BlockLine(QStringList files, unsigned threads)
    : m_files(std::move(files))
    , m_mostAhead(threads)
{
}

BlockLine::~BlockLine() = default;

PackedBlock BlockLine::take()
{
    fill();
    if (m_ahead.empty())
        throw BadArchive("more is packed than there are files");
    auto block = m_ahead.front().get();
    m_ahead.pop_front();
    return block;
}

bool BlockLine::openNext()
{
    if (m_files.isEmpty())
        return false;
    m_before.clear();
    m_file.setFileName(m_files.takeFirst());
    if (!m_file.open(QIODevice::ReadOnly))
        throw BadArchive("a file cannot be read: " + m_file.errorString().toStdString());
    return true;
}

void BlockLine::fill()
{
    while (m_ahead.size() < m_mostAhead) {
        if (!m_file.isOpen() && !openNext())
            return;
        const auto block = m_file.read(blockSize);
        if (m_file.error() != QFileDevice::NoError)
            throw BadArchive("a file cannot be read: " + m_file.errorString().toStdString());
        const bool isLast = m_file.atEnd();
        m_ahead.push_back(std::async(std::launch::async, PackBlock, m_before, block, isLast));
        m_before = block;
        if (isLast)
            m_file.close();
    }
}

} // namespace EditorCommon::Zip
