// SPDX-License-Identifier: MIT
#include "kyvconvert/modelfolder.h"
#include "kyvconvert/picture.h"
#include "kyvconvert/sourcereader.h"

#include <cstdio>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

namespace
{

constexpr int badArguments = 2;
constexpr int badSource = 3;
constexpr int cannotWrite = 4;
constexpr QSize pictureSize(930, 501);
constexpr int pictureQuality = 88;

void ShowPercent(int percent)
{
    static int shown = -1;
    if (percent <= shown)
        return;
    shown = percent;
    std::printf("percent %d\n", percent);
    std::fflush(stdout);
}

int Fail(int code, const std::string& reason)
{
    std::fprintf(stderr, "kyv-convert: %s\n", reason.c_str());
    return code;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication app(argumentCount, arguments);
    const QCommandLineOption name(QStringLiteral("name"), QStringLiteral("name of the model"),
                                  QStringLiteral("NAME"));
    const QCommandLineOption only(QStringLiteral("only"),
                                  QStringLiteral("keep only what stands at or below this node"),
                                  QStringLiteral("NODE"));
    const QCommandLineOption picture(QStringLiteral("picture"),
                                     QStringLiteral("draw the model into this file"), QStringLiteral("FILE"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Converts a model file into a model folder."));
    parser.addHelpOption();
    parser.addOptions({name, only, picture});
    parser.addPositionalArgument(QStringLiteral("INPUT"), QStringLiteral("FBX, IFC, glTF, GLB or OBJ file"));
    parser.addPositionalArgument(QStringLiteral("FOLDER"), QStringLiteral("folder of the converted model"));
    parser.process(app);
    const auto given = parser.positionalArguments();
    if (given.size() != 2)
        return Fail(badArguments, "an input file and a folder are needed; see --help");

    const QFileInfo input(given[0]);
    auto read = kyvconvert::ReadSource(input.filePath().toStdString(), ShowPercent);
    if (const auto* failure = std::get_if<kyvconvert::Failure>(&read))
        return Fail(badSource, failure->reason);
    auto& source = std::get<kyvconvert::SourceModel>(read);
    if (parser.isSet(only) && !kyvconvert::KeepOnly(source.model, parser.value(only).toStdString()))
        return Fail(badSource, "the model has no node with this name and a surface");

    const QString modelName = parser.isSet(name) ? parser.value(name) : input.completeBaseName();
    const auto problem = kyvconvert::WriteModelFolder(source, modelName.toStdString(),
                                                      input.fileName().toStdString(), given[1].toStdString());
    if (!problem.empty())
        return Fail(cannotWrite, problem);
    if (parser.isSet(picture)) {
        const gltf::Model* models[] = {&source.model};
        if (!kyvconvert::DrawPicture(models, pictureSize)
                 .save(parser.value(picture), nullptr, pictureQuality))
            return Fail(cannotWrite, "the picture cannot be written");
    }
    ShowPercent(100);
    return 0;
}
