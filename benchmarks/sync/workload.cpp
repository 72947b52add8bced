// SPDX-License-Identifier: MIT
#include "workload.h"

#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace workload
{

namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t megabyte = 1'000'000;
constexpr std::uint64_t binaryBytes = 512 * megabyte;
constexpr std::uint64_t renamedBytes = 16 * megabyte;
constexpr std::uint64_t databaseBytes = 121 * megabyte;
constexpr std::uint64_t allBytes = 913 * megabyte;
constexpr int smallFiles = 2000;
constexpr int rowBytes = 1000;

std::string RandomBytes(std::mt19937_64& random, std::uint64_t count)
{
    std::string bytes;
    bytes.reserve(count + 8);
    while (bytes.size() < count) {
        const auto word = random();
        bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
    }
    bytes.resize(count);
    return bytes;
}

void WriteRandomFile(const fs::path& file, std::mt19937_64& random, std::uint64_t bytes)
{
    std::ofstream stream(file, std::ios::binary);
    for (; bytes > 0; bytes -= std::min(bytes, megabyte))
        stream << RandomBytes(random, std::min(bytes, megabyte));
}

class Rows
{
public:
    explicit Rows(const fs::path& file)
    {
        if (sqlite3_open(file.c_str(), &m_database) != SQLITE_OK)
            throw std::runtime_error("the database cannot be opened");
    }
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    ~Rows() { sqlite3_close(m_database); }

    void run(const char* text)
    {
        if (sqlite3_exec(m_database, text, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_database));
    }

    void write(const char* text, sqlite3_int64 id, const std::string& value)
    {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(m_database, text, -1, &statement, nullptr);
        sqlite3_bind_int64(statement, 1, id);
        sqlite3_bind_blob(statement, 2, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
        const int result = sqlite3_step(statement);
        sqlite3_finalize(statement);
        if (result != SQLITE_DONE)
            throw std::runtime_error(sqlite3_errmsg(m_database));
    }

private:
    sqlite3* m_database = nullptr;
};

constexpr const char* put = "INSERT OR REPLACE INTO rows(id, value) VALUES(?, ?)";
constexpr auto rowCount = static_cast<sqlite3_int64>(databaseBytes / 1024);

} // namespace

void Make(const fs::path& folder)
{
    std::mt19937_64 random(20261121);
    WriteRandomFile(folder / "survey.bin", random, binaryBytes);
    WriteRandomFile(folder / "before.bin", random, renamedBytes);
    Rows rows(folder / "objects.db");
    rows.run("CREATE TABLE rows(id INTEGER PRIMARY KEY, value BLOB); BEGIN");
    for (sqlite3_int64 id = 0; id < rowCount; ++id)
        rows.write(put, id, RandomBytes(random, rowBytes));
    rows.run("COMMIT");
    const auto left = allBytes - binaryBytes - renamedBytes - databaseBytes;
    for (int i = 0; i < smallFiles; ++i) {
        const auto name = "tile" + std::to_string(i);
        const auto sub = folder / ("tiles" + std::to_string(i % 20));
        fs::create_directories(sub);
        WriteRandomFile(sub / name, random, left / smallFiles);
    }
}

void Change(const fs::path& folder)
{
    std::mt19937_64 random(20261122);
    {
        Rows rows(folder / "objects.db");
        rows.run("BEGIN");
        for (int i = 0; i < 400; ++i)
            rows.write(put, static_cast<sqlite3_int64>(random() % static_cast<std::uint64_t>(rowCount)),
                       RandomBytes(random, rowBytes));
        for (int i = 0; i < 100; ++i)
            rows.write(put, rowCount + i, RandomBytes(random, rowBytes));
        rows.run("COMMIT");
    }
    {
        // Splices move everything behind them.
        std::ifstream input(folder / "survey.bin", std::ios::binary);
        std::ofstream output(folder / "survey.new", std::ios::binary);
        std::vector<char> part(binaryBytes / 8);
        for (int i = 0; i < 8; ++i) {
            input.read(part.data(), static_cast<std::streamsize>(part.size()));
            output.write(part.data(), static_cast<std::streamsize>(part.size()));
            output << RandomBytes(random, 1000 + random() % 5000);
        }
    }
    fs::rename(folder / "survey.new", folder / "survey.bin");
    fs::rename(folder / "before.bin", folder / "after.bin");
    std::ofstream(folder / "tiles0" / "tile0", std::ios::app | std::ios::binary) << "edited";
}

} // namespace workload
