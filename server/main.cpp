// SPDX-License-Identifier: MIT
#include "server/accounts/password.h"
#include "server/conversions/workerkey.h"
#include "server/conversions/workerpool.h"
#include "server/http/server.h"
#include "server/projects/publish.h"
#include "server/projects/seed.h"
#include "server/storage/folderlock.h"
#include "server/storage/sqlitestore.h"
#include "server/worker/remotework.h"

#include <atomic>
#include <charconv>
#include <csignal>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

namespace
{

/// The files of a server's data folder.
struct DataFolder {
    explicit DataFolder(const std::filesystem::path& folder)
        : database(folder / "server.db")
        , packs(folder / "packs")
        , archives(folder / "archives")
        , models(folder / "models")
        , workerKey(folder / "worker.key")
        , lock(folder / "server.lock")
    {
        std::filesystem::create_directories(packs);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    }

    std::filesystem::path database;
    std::filesystem::path packs;
    std::filesystem::path archives;
    std::filesystem::path models;
    std::filesystem::path workerKey;
    std::filesystem::path lock;
};

struct Options {
    std::string data;
    std::string listen = "127.0.0.1:8480";
    std::string portFile;
    int tokenHours = 24 * 14;
    int uploadLeaseSeconds = 90;
    unsigned workers = std::max(1U, std::thread::hardware_concurrency() - 1);
    std::string converter;
    int jobLeaseSeconds = 15;
    int jobSeconds = 3600;
    int jobMebibytes = 4096;
    std::string samples;
    std::string folder;
    std::string record;
    std::string account;
    std::string loginName;
    std::string server;
    std::string keyFile;
};

void WritePortFile(const std::string& file, std::uint16_t port)
{
    // Whoever waits for the file finds it whole.
    const std::string half = file + ".tmp";
    std::ofstream(half) << port << '\n';
    std::filesystem::rename(half, file);
}

std::optional<std::uint16_t> PortOf(const std::string& text)
{
    std::uint16_t port = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return port;
}

/// The processes that convert archives; none when the server was built or put somewhere without them.
std::unique_ptr<server::WorkerPool> StartWorkers(const Options& options)
{
    // What a server that was killed has left behind.
    std::filesystem::remove_all(std::filesystem::path(options.data) / "work");
    const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "torvo-worker";
    if (options.workers == 0)
        return nullptr;
    if (!std::filesystem::exists(program)) {
        std::cerr << "archives are not converted: there is no " << program << '\n';
        return nullptr;
    }
    std::vector<std::string> command = {program.string(),
                                        "--data",
                                        options.data,
                                        "--lease-seconds",
                                        std::to_string(options.jobLeaseSeconds),
                                        "--job-seconds",
                                        std::to_string(options.jobSeconds),
                                        "--job-memory",
                                        std::to_string(options.jobMebibytes)};
    if (!options.converter.empty())
        command.insert(command.end(), {"--converter", options.converter});
    return std::make_unique<server::WorkerPool>(std::move(command), options.workers);
}

int Serve(const Options& options)
{
    const DataFolder data(options.data);
    const server::FolderLock lock(data.lock, false);
    if (!lock.isHeld()) {
        std::cerr << "another server is running on " << options.data << '\n';
        return 1;
    }
    const auto colon = options.listen.rfind(':');
    const auto port = colon != std::string::npos ? PortOf(options.listen.substr(colon + 1)) : std::nullopt;
    if (!port) {
        std::cerr << "--listen wants ADDRESS:PORT, not " << options.listen << '\n';
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);
    // Where files may not grow without limit, a full one is told like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    server::SqliteStore store(data.database);
    server::Api api(store, {data.packs, data.archives, data.models, data.workerKey},
                    {std::chrono::hours(options.tokenHours), std::chrono::seconds(options.uploadLeaseSeconds),
                     std::chrono::seconds(options.jobLeaseSeconds)});
    const auto workers = StartWorkers(options);
    server::Server server(api, options.listen.substr(0, colon), *port,
                          std::max(1U, std::thread::hardware_concurrency()));
    std::cout << "listening on http://" << options.listen.substr(0, colon) << ':' << server.port()
              << std::endl;
    if (!options.portFile.empty())
        WritePortFile(options.portFile, server.port());
    server.run();
    return 0;
}

int Seed(const Options& options)
{
    const DataFolder data(options.data);
    server::SqliteStore store(data.database);
    server::Seed(store, data.packs, options.samples, std::cout);
    return 0;
}

int Publish(const Options& options)
{
    const DataFolder data(options.data);
    server::SqliteStore store(data.database);
    std::ifstream stream(options.record, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + options.record);
    const std::string record((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    const auto project = server::ProjectOfEntry(store, record);
    store.putProject(project);
    std::cout << wire::ToHex(server::PublishFolder(store, data.packs, project.guid, options.folder)) << '\n';
    return 0;
}

/// A password from the standard input, so that it stands neither on the command line nor in the shell's
/// history.
std::string ReadPassword()
{
    std::string password;
    std::getline(std::cin, password);
    if (password.empty())
        throw std::runtime_error(
            "the password is read from the standard input, one line, and must not be empty");
    return password;
}

int AddAccount(const Options& options)
{
    server::SqliteStore store(DataFolder(options.data).database);
    server::Account account;
    account.name = options.account;
    account.loginName = options.loginName.empty() ? options.account : options.loginName;
    account.password = server::HashPassword(ReadPassword());
    if (store.addAccount(account))
        return 0;
    std::cerr << "there is an account " << options.account << " already\n";
    return 1;
}

int SetPassword(const Options& options)
{
    server::SqliteStore store(DataFolder(options.data).database);
    if (store.setPassword(options.account, server::HashPassword(ReadPassword())))
        return 0;
    std::cerr << "there is no account " << options.account << '\n';
    return 1;
}

int ListAccounts(const Options& options)
{
    server::SqliteStore store(DataFolder(options.data).database);
    for (const auto& account : store.accounts())
        std::cout << account.name << '\t' << account.loginName << '\n';
    return 0;
}

/// The key goes to the standard output and nowhere else: the server keeps its digest.
int MakeWorkerKey(const Options& options)
{
    std::cout << server::WorkerKey(DataFolder(options.data).workerKey).renew() << '\n';
    return 0;
}

std::atomic<bool> isToEnd = false;
static_assert(std::atomic<bool>::is_always_lock_free);

int WorkElsewhere(const Options& options)
{
    server::RemoteSettings settings;
    settings.server = options.server;
    settings.keyFile = options.keyFile;
    settings.worker.folder = options.data;
    settings.worker.converter = options.converter;
    if (options.converter.empty())
        settings.worker.converter =
            std::filesystem::read_symlink("/proc/self/exe").parent_path() / "../../editor/bin/kyv-convert";
    settings.worker.jobTime = std::chrono::seconds(options.jobSeconds);
    settings.worker.jobMebibytes = static_cast<std::uint64_t>(options.jobMebibytes);
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { isToEnd = true; });
    server::WorkForServer(settings, [] { return isToEnd.load(); });
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    Options options;
    int (*task)(const Options&) = Serve;
    CLI::App app("The project server of Torvo Home.", "torvo-server");
    app.set_version_flag("--version", TORVO_VERSION);
    app.require_subcommand(0, 1);
    app.add_option("--data", options.data, "folder of the server's data, made when it is missing");
    app.add_option("--listen", options.listen, "ADDRESS:PORT; port 0 takes a free one")
        ->capture_default_str();
    app.add_option("--port-file", options.portFile,
                   "file that the port is written to when the server is ready");
    app.add_option("--token-hours", options.tokenHours, "how long a login lasts")->capture_default_str();

    app.add_option("--upload-lease-seconds", options.uploadLeaseSeconds,
                   "an upload that sends nothing for so long has failed")
        ->capture_default_str();

    app.add_option("--workers", options.workers, "processes that convert archives; 0 for none")
        ->capture_default_str();
    const auto addConverter = [&](CLI::App* command) {
        command->add_option("--converter", options.converter,
                            "the program that converts; the one that comes with the server unless told");
        command->add_option("--job-seconds", options.jobSeconds, "how long a conversion may take")
            ->capture_default_str();
        command->add_option("--job-memory", options.jobMebibytes, "MiB that a conversion may occupy")
            ->capture_default_str();
    };
    addConverter(&app);
    app.add_option("--job-lease-seconds", options.jobLeaseSeconds,
                   "a worker that is not heard of for so long has lost its job")
        ->capture_default_str();

    const auto addData = [&](CLI::App* command) {
        command->add_option("--data", options.data, "folder of the server's data")->required();
        return command;
    };
    auto* seed = addData(app.add_subcommand("seed", "fill the server with sample content"));
    seed->add_option("--samples", options.samples, "folder with seed.json")->required();
    seed->callback([&] { task = Seed; });

    auto* publish = addData(app.add_subcommand("publish", "make a folder the newest revision of a project"));
    publish->add_option("--project-folder", options.folder, "the project's folder")->required();
    publish->add_option("--record", options.record, "the project's entry, as in seed.json")->required();
    publish->callback([&] { task = Publish; });

    addData(app.add_subcommand("worker-key", "make the key by which workers on other machines are known"))
        ->callback([&] { task = MakeWorkerKey; });
    auto* worker = app.add_subcommand("worker", "convert archives for a server on another machine");
    worker->add_option("--server", options.server, "the server's address")->required();
    worker->add_option("--key-file", options.keyFile, "file with the server's key for workers")->required();
    worker->add_option("--data", options.data, "folder that it works in, made when it is missing")
        ->required();
    addConverter(worker);
    worker->callback([&] { task = WorkElsewhere; });

    auto* account = app.add_subcommand("account", "accounts; passwords are read from the standard input");
    account->require_subcommand(1);
    auto* add = addData(account->add_subcommand("add", "make an account"));
    add->add_option("name", options.account)->required();
    add->add_option("--login-name", options.loginName, "the name that is shown");
    add->callback([&] { task = AddAccount; });
    auto* password = addData(account->add_subcommand("password", "replace a password"));
    password->add_option("name", options.account)->required();
    password->callback([&] { task = SetPassword; });
    addData(account->add_subcommand("list", "list the accounts"))->callback([&] { task = ListAccounts; });

    try {
        app.parse(argumentCount, arguments);
        if (options.data.empty())
            throw CLI::RequiredError("--data");
        return task(options);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    } catch (const std::exception& exception) {
        std::cerr << "torvo-server: " << exception.what() << '\n';
        return 1;
    }
}
