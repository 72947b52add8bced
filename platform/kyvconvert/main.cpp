// SPDX-License-Identifier: MIT
#include "kyvconvert/conversion.h"
#include "kyvconvert/job.h"

#include <cstdlib>
#include <filesystem>

#include <CLI/CLI.hpp>

#include <QCoreApplication>

namespace
{

namespace fs = std::filesystem;
using namespace kyvconvert;

struct Arguments {
    std::string source;
    std::string folder;
    std::string name;
    std::string only;
    std::string picture;
    std::string cache;
    std::uint64_t cacheMebibytes = 4096;
    std::uint64_t memoryMebibytes = 0;
    double seconds = 0.0;
    int mode = 0;
};

constexpr std::uint64_t mebibyte = 1U << 20U;

/// The place where a model is made before it is moved to where it belongs. Whatever a killed conversion has
/// left there goes.
class Workshop
{
public:
    explicit Workshop(const fs::path& target)
        : m_folder(target.string() + ".half")
    {
    }
    ~Workshop()
    {
        std::error_code error;
        fs::remove_all(m_folder, error);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    /// Gives the reason when it cannot be made.
    [[nodiscard]] std::string make() const
    {
        std::error_code error;
        fs::remove_all(m_folder, error);
        fs::create_directories(scratch(), error);
        return error ? error.message() : std::string();
    }

    [[nodiscard]] fs::path model() const { return m_folder / "model"; }
    [[nodiscard]] fs::path picture() const { return m_folder / "picture.jpg"; }
    [[nodiscard]] fs::path scratch() const { return m_folder / "scratch"; }

private:
    fs::path m_folder;
};

int RunConversion(const Order& order, const Workshop& workshop, int argumentCount, char** arguments)
{
    setenv("TMPDIR", workshop.scratch().c_str(), 1);
    const QCoreApplication app(argumentCount, arguments);
    const auto outcome = Convert(order, [](int percent) { TellPercent(std::min(percent, 99)); });
    switch (outcome.problem) {
    case Problem::source:
        return TellError(badSource, outcome.reason);
    case Problem::disk:
        return TellError(cannotWrite, outcome.reason);
    case Problem::none:
        break;
    }
    return done;
}

int Deliver(const Arguments& given, const Workshop& workshop)
{
    std::error_code error;
    if (!given.picture.empty()) {
        // The picture may belong on another disk.
        const fs::path half = given.picture + ".half";
        fs::copy_file(workshop.picture(), half, fs::copy_options::overwrite_existing, error);
        if (!error)
            fs::rename(half, given.picture, error);
        if (error) {
            fs::remove(half, error);
            return TellError(cannotWrite, "the picture " + given.picture + " cannot be written");
        }
    }
    fs::rename(workshop.model(), given.folder, error);
    if (error) {
        const auto reason = "the folder " + given.folder + " cannot be made: " + error.message();
        if (!given.picture.empty())
            fs::remove(given.picture, error);
        return TellError(cannotWrite, reason);
    }
    TellPercent(100);
    return done;
}

} // namespace

int main(int argumentCount, char** argumentValues)
{
    CLI::App parser(
        "Converts a model file (IFC, DWG, FBX, glTF, GLB, OBJ or a model archive) into a model folder.");
    Arguments given;
    parser.add_option("INPUT", given.source, "the model file")->required();
    parser.add_option("FOLDER", given.folder, "folder of the converted model; made, or empty")->required();
    parser.add_option("--name", given.name, "name of the model; the file's own without it");
    parser.add_option("--only", given.only, "keep only what stands at or below the nodes of this name");
    parser.add_option("--picture", given.picture, "draw the model into this file");
    parser
        .add_option("--mode", given.mode,
                    "0 static model, 1 levels with quality first, 3 with performance first")
        ->check(CLI::IsMember({0, 1, 3}));
    parser.add_option("--memory", given.memoryMebibytes, "MiB that the conversion may occupy");
    parser.add_option("--time", given.seconds, "seconds that it may take");
    parser.add_option("--cache", given.cache, "folder of models that were converted before");
    parser.add_option("--cache-limit", given.cacheMebibytes, "MiB that the cache may hold");
    try {
        parser.parse(argumentCount, argumentValues);
    } catch (const CLI::Success& success) {
        return parser.exit(success);
    } catch (const CLI::Error& error) {
        return TellError(badArguments, std::string(error.what()) + "; see --help");
    }

    std::error_code error;
    while (given.folder.size() > 1 && given.folder.back() == '/')
        given.folder.pop_back();
    if (fs::exists(given.folder, error) &&
        !(fs::is_directory(given.folder, error) && fs::is_empty(given.folder, error)))
        return TellError(cannotWrite, "the folder " + given.folder + " is there already");
    const Workshop workshop(given.folder);
    if (const auto problem = workshop.make(); !problem.empty())
        return TellError(cannotWrite, "the folder " + given.folder + " cannot be made: " + problem);

    Order order;
    order.source = given.source;
    order.folder = workshop.model();
    order.name = given.name.empty() ? order.source.stem().string() : given.name;
    order.only = given.only;
    order.picture = given.picture.empty() ? fs::path() : workshop.picture();
    order.cache = given.cache;
    order.cacheLimit = given.cacheMebibytes * mebibyte;
    order.mode = static_cast<Mode>(given.mode);
    const int code = RunJob({given.memoryMebibytes * mebibyte, given.seconds},
                            [&] { return RunConversion(order, workshop, argumentCount, argumentValues); });
    return code == done ? Deliver(given, workshop) : code;
}
