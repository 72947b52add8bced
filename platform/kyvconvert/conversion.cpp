// SPDX-License-Identifier: MIT
#include "kyvconvert/conversion.h"

#include "gltf/modelreader.h"
#include "kyvconvert/conversioncache.h"
#include "kyvconvert/modelfolder.h"
#include "kyvconvert/picture.h"
#include "kyvconvert/sourcereader.h"

#include <optional>

namespace kyvconvert
{

namespace
{

constexpr QSize pictureSize(930, 501);
constexpr int pictureQuality = 88;
constexpr int readPercent = 80;
constexpr int optimisedPercent = 90;

Outcome Draw(const gltf::Model& model, const std::filesystem::path& file)
{
    const gltf::Model* models[] = {&model};
    if (DrawPicture(models, pictureSize).save(QString::fromStdString(file.string()), "JPG", pictureQuality))
        return {};
    return {Problem::disk, "the picture cannot be written"};
}

Outcome DrawFolder(const std::filesystem::path& folder, const std::filesystem::path& picture)
{
    if (picture.empty())
        return {};
    const auto read = gltf::ReadModel(folder / "model.glb");
    if (const auto* unreadable = std::get_if<gltf::Unreadable>(&read))
        return {Problem::disk, unreadable->reason};
    return Draw(std::get<gltf::Model>(read), picture);
}

Outcome ConvertAnew(const Order& order, const OnPercent& onPercent)
{
    auto read = ReadSource(order.source, [&](int percent) { onPercent(percent * readPercent / 100); });
    if (const auto* failure = std::get_if<Failure>(&read))
        return {Problem::source, failure->reason};
    auto& source = std::get<SourceModel>(read);
    if (!order.only.empty() && !KeepOnly(source.model, order.only))
        return {Problem::source, "the model has no node with this name and a surface"};
    Optimise(source, order.mode);
    if (source.model.parts.empty())
        return {Problem::source, "the file has no surfaces"};
    onPercent(optimisedPercent);
    auto problem = WriteModelFolder(source, order.name, order.source.filename().string(), order.folder);
    if (!problem.empty())
        return {Problem::disk, std::move(problem)};
    return order.picture.empty() ? Outcome() : Draw(source.model, order.picture);
}

} // namespace

Outcome Convert(const Order& order, const OnPercent& onPercent)
{
    // The digest of one file says nothing of those that it names.
    if (order.cache.empty() || !IsWhole(order.source))
        return ConvertAnew(order, onPercent);
    const ConversionCache cache(order.cache, order.cacheLimit);
    const auto key = ConversionKey(order.source, order.mode, order.only);
    if (!key)
        return {Problem::source, "there is no file " + order.source.string()};
    if (cache.fetch(*key, order.folder) &&
        RenameModel(order.folder, order.name, order.source.filename().string()))
        return DrawFolder(order.folder, order.picture);
    auto outcome = ConvertAnew(order, onPercent);
    if (outcome.problem == Problem::none)
        cache.keep(*key, order.folder);
    return outcome;
}

} // namespace kyvconvert
