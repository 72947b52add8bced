// SPDX-License-Identifier: MIT
#pragma once

#include "zip/deflateblock.h"

#include <cstddef>
#include <deque>
#include <future>

#include <QByteArray>
#include <QFile>
#include <QStringList>

namespace EditorCommon::Zip
{

/// The packed blocks of several files, one behind the other, packed by several threads ahead of whoever takes
/// them. Blocks go over the ends of files, so that many small files keep the threads as busy as one large
/// one. One thread uses it; it holds a few blocks, however large the files are.
class BlockLine
{
public:
    /// Files that are read in this order. `threads` is 1 at least.
    BlockLine(QStringList files, unsigned threads);
    BlockLine(const BlockLine&) = delete;
    BlockLine& operator=(const BlockLine&) = delete;
    ~BlockLine();

    /// The next block. Every file gives one block at least, an empty one when it is empty. Throws BadArchive
    /// when a file cannot be read, and behind the last block.
    [[nodiscard]] PackedBlock take();

private:
    void fill();
    bool openNext();

    QStringList m_files;
    std::size_t m_mostAhead;
    QFile m_file;
    QByteArray m_before; ///< what stands before the next block in its file
    std::deque<std::future<PackedBlock>> m_ahead;
};

} // namespace EditorCommon::Zip
