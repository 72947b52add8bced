// SPDX-License-Identifier: MIT
#include "kyvconvert/archive.h"
#include "kyvconvert/job.h"
#include "kyvconvert/optimise.h"
#include "kyvconvert/sourcereader.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <CLI/CLI.hpp>

namespace
{

namespace fs = std::filesystem;
using namespace kyvconvert;

int Pack(const std::string& source, const std::string& archive, const std::string& name)
{
    auto read = ReadSource(source, [](int percent) { TellPercent(std::min(percent * 9 / 10, 99)); });
    if (const auto* failure = std::get_if<Failure>(&read))
        return TellError(badSource, failure->reason);
    auto& model = std::get<SourceModel>(read);
    Optimise(model, Mode::staticModel);
    if (model.model.parts.empty())
        return TellError(badSource, "the file has no surfaces");
    const auto problem = WriteArchive(model, name, archive);
    return problem.empty() ? int{done} : TellError(cannotWrite, problem);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    CLI::App parser("Makes a model archive of a model file (IFC, FBX, glTF, GLB or OBJ).");
    std::string source;
    std::string archive;
    std::string name;
    parser.add_option("INPUT", source, "the model file")->required();
    parser.add_option("ARCHIVE", archive, "the archive, *.kyv")->required();
    parser.add_option("--name", name, "name of the model; the file's own without it");
    try {
        parser.parse(argumentCount, arguments);
    } catch (const CLI::Success& success) {
        return parser.exit(success);
    } catch (const CLI::Error& error) {
        return TellError(badArguments, std::string(error.what()) + "; see --help");
    }
    if (name.empty())
        name = fs::path(source).stem().string();
    std::error_code error;
    const fs::path scratch = archive + ".scratch";
    fs::remove_all(scratch, error);
    if (!fs::create_directories(scratch, error))
        return TellError(cannotWrite, "the archive " + archive + " cannot be made: " + error.message());
    // What a job that is ended leaves behind lies in one place.
    setenv("TMPDIR", scratch.c_str(), 1);
    const auto half = (scratch / "archive").string();
    int code = RunJob({}, [&] { return Pack(source, half, name); });
    if (code == done) {
        fs::rename(half, archive, error);
        if (error)
            code = TellError(cannotWrite, "the archive " + archive + " cannot be made: " + error.message());
        else
            TellPercent(100);
    }
    fs::remove_all(scratch, error);
    return code;
}
