// SPDX-License-Identifier: MIT
#include "peers/program.h"
#include "ratio.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QTemporaryDir>

// Sources of 50 MB and more, rows of the models that the samples are made of, are converted to static models:
// FBX is held against Assimp's own program writing binary glTF, IFC against a bare load with the library that
// it is read with, glTF against gltfpack. Three times each, ours and theirs by turns the first; the figures
// are the medians. Then the same source once more, out of the cache.

namespace
{

namespace fs = std::filesystem;
using bench::ProgramCost;
using bench::RunProgram;

constexpr int rounds = 3;
constexpr const char* bytesOfSource = "54000000";

class Bench
{
public:
    [[nodiscard]] std::string tiled(const char* script, const char* sample, const char* name) const
    {
        const auto target = path(name);
        static_cast<void>(RunProgram({"node", std::string(TORVO_BENCHMARKS "/convert/") + script,
                                      std::string(TORVO_SOURCES "/") + sample, target, bytesOfSource}));
        std::fprintf(stderr, "%s: %ju MB\n", name, fs::file_size(target) / 1000000);
        return target;
    }

    /// The model stands in the folder "model" when all is done.
    [[nodiscard]] ProgramCost convert(const std::string& source,
                                      const std::vector<std::string>& options) const
    {
        fs::remove_all(path("model"));
        std::vector<std::string> words{TORVO_CONVERTER, source, path("model")};
        words.insert(words.end(), options.begin(), options.end());
        return RunProgram(words);
    }

    /// Ours and theirs, after each other, the medians of both.
    [[nodiscard]] std::pair<ProgramCost, ProgramCost> compare(const std::string& source,
                                                              const std::vector<std::string>& theirs) const
    {
        std::vector<ProgramCost> our;
        std::vector<ProgramCost> their;
        for (int round = 0; round < rounds; ++round) {
            if (round % 2 == 0)
                our.push_back(convert(source, {}));
            their.push_back(RunProgram(theirs));
            if (round % 2 == 1)
                our.push_back(convert(source, {}));
        }
        const auto medians = std::pair(bench::MedianOf(our), bench::MedianOf(their));
        bench::Tell("  kyv-convert", medians.first);
        bench::Tell(("  " + fs::path(theirs.front()).filename().string()).c_str(), medians.second);
        return medians;
    }

    [[nodiscard]] std::string path(const char* name) const { return m_folder.filePath(name).toStdString(); }

    void runFbx()
    {
        const auto source = tiled("tilefbx.mjs", "spider.fbx", "row.fbx");
        const auto [our, their] = compare(source, {"assimp", "export", source, path("theirs.glb"), "-fglb2"});
        m_report.ratio("FBX, time", our.seconds / their.seconds, 1.1, "assimp export to binary glTF");
        m_report.ratio("FBX, resident memory", our.memory / their.memory, 1.0,
                       "assimp export to binary glTF");
    }

    void runIfc()
    {
        const auto source = tiled("tileifc.mjs", "AC14-FZK-Haus.ifc", "row.ifc");
        const auto [our, their] =
            compare(source, {"node", TORVO_BENCHMARKS "/peers/loadifc.mjs", TORVO_WEB_IFC, source});
        m_report.ratio("IFC, time", our.seconds / their.seconds, 1.3, "a bare load with web-ifc");
        runCache(source);
    }

    void runGltf()
    {
        const auto source = tiled("tileglb.mjs", "2CylinderEngine.glb", "row.glb");
        const auto [our, their] =
            compare(source, {"node", TORVO_GLTFPACK, "-i", source, "-o", path("theirs.glb"), "-cc"});
        m_report.ratio("glTF, time", our.seconds / their.seconds, 1.2, "gltfpack -cc");
        const auto ourBytes = fs::file_size(path("model") + "/model.glb");
        const auto theirBytes = fs::file_size(path("theirs.glb"));
        std::fprintf(stderr, "  %.1f MB, by gltfpack %.1f MB\n", static_cast<double>(ourBytes) / 1e6,
                     static_cast<double>(theirBytes) / 1e6);
        m_report.ratio("glTF, bytes of the model",
                       static_cast<double>(ourBytes) / static_cast<double>(theirBytes), 1.1, "gltfpack -cc");
        runCache(source);
    }

    [[nodiscard]] int exitCode() const { return m_report.exitCode(); }

private:
    void runCache(const std::string& source)
    {
        const std::vector<std::string> options{"--cache", path("cache")};
        const auto first = convert(source, options);
        std::vector<ProgramCost> again;
        for (int round = 0; round < rounds; ++round)
            again.push_back(convert(source, options));
        const auto second = bench::MedianOf(again);
        bench::Tell("  the same source again", second);
        const auto name = fs::path(source).extension().string().substr(1) + ", the same source again";
        m_report.ratio(name.c_str(), second.seconds / first.seconds, 0.05, "the first time");
        fs::remove_all(path("cache"));
    }

    QTemporaryDir m_folder;
    bench::Report m_report;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication app(argumentCount, arguments);
    Bench bench;
    bench.runFbx();
    bench.runIfc();
    bench.runGltf();
    return bench.exitCode();
}
