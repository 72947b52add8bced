// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/disk/disk.h"
#include "smartdb/failure.h"

#include <cstdint>
#include <filesystem>
#include <memory>

/// A disk that is full after some bytes.
class SmallDisk final : public ZRSmartDB::Disk
{
public:
    explicit SmallDisk(std::uint64_t bytes)
        : m_bytes(bytes)
    {
    }

    [[nodiscard]] std::uint64_t left() const { return m_bytes; }

    void makeFolder(const std::filesystem::path& folder) override { m_disk->makeFolder(folder); }
    std::unique_ptr<ZRSmartDB::OutputFile> create(const std::filesystem::path& file,
                                                  std::uint32_t mode) override
    {
        return std::make_unique<File>(m_disk->create(file, mode), m_bytes);
    }
    void move(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        m_disk->move(from, to);
    }
    void exchange(const std::filesystem::path& one, const std::filesystem::path& other) override
    {
        m_disk->exchange(one, other);
    }
    void link(const std::filesystem::path& file, const std::filesystem::path& to) override
    {
        m_disk->link(file, to);
    }
    void remove(const std::filesystem::path& path) override { m_disk->remove(path); }
    std::uint64_t room(const std::filesystem::path& folder) override { return m_disk->room(folder); }
    std::unique_ptr<ZRSmartDB::FolderLock> tryLock(const std::filesystem::path& folder) override
    {
        return m_disk->tryLock(folder);
    }

private:
    class File final : public ZRSmartDB::OutputFile
    {
    public:
        File(std::unique_ptr<ZRSmartDB::OutputFile> file, std::uint64_t& bytes)
            : m_file(std::move(file))
            , m_bytes(bytes)
        {
        }
        void write(std::span<const std::byte> bytes) override
        {
            if (bytes.size() > m_bytes)
                throw ZRSmartDB::Failure(ZRSmartDB::localcode::diskFull, "the disk is full");
            m_bytes -= bytes.size();
            m_file->write(bytes);
        }
        void close() override { m_file->close(); }

    private:
        std::unique_ptr<ZRSmartDB::OutputFile> m_file;
        std::uint64_t& m_bytes;
    };

    std::shared_ptr<ZRSmartDB::Disk> m_disk = ZRSmartDB::LocalDisk();
    std::uint64_t m_bytes;
};
