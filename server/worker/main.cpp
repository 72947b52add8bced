// SPDX-License-Identifier: MIT
#include "server/storage/sqlitestore.h"
#include "server/worker/storedesk.h"
#include "server/worker/worker.h"

#include <atomic>
#include <csignal>
#include <exception>
#include <iostream>
#include <random>
#include <thread>

#include <CLI/CLI.hpp>

#include <unistd.h>

namespace
{

constexpr std::chrono::milliseconds rest(500);

std::atomic<bool> isToEnd = false;
static_assert(std::atomic<bool>::is_always_lock_free);

int Work(server::Worker::Settings settings, std::chrono::seconds lease)
{
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    if (settings.converter.empty())
        settings.converter = program.parent_path() / "../../editor/bin/kyv-convert";
    const auto name = std::to_string(getpid()) + '-' + std::to_string(std::random_device()());
    server::SqliteStore store(settings.folder / "server.db");
    server::StoreDesk desk(store, settings.folder, name, lease);
    server::Worker worker(desk, settings, [] { return isToEnd.load(); });
    while (!isToEnd) {
        if (!worker.doNext())
            std::this_thread::sleep_for(rest);
    }
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    CLI::App app("Converts archives for a project server, which starts it.", "torvo-worker");
    server::Worker::Settings settings;
    std::string data;
    std::string converter;
    std::int64_t lease = 15;
    std::int64_t seconds = settings.jobTime.count();
    app.add_option("--data", data, "folder of the server's data")->required();
    app.add_option("--converter", converter, "the program kyv-convert");
    app.add_option("--lease-seconds", lease, "a worker that is not heard of for so long has lost its job");
    app.add_option("--job-seconds", seconds, "how long a conversion may take");
    app.add_option("--job-memory", settings.jobMebibytes, "MiB that a conversion may occupy");
    CLI11_PARSE(app, argumentCount, arguments);
    settings.folder = data;
    settings.converter = converter;
    settings.jobTime = std::chrono::seconds(seconds);
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { isToEnd = true; });
    try {
        return Work(settings, std::chrono::seconds(lease));
    } catch (const std::exception& exception) {
        std::cerr << "torvo-worker: " << exception.what() << '\n';
        return 1;
    }
}
