// SPDX-License-Identifier: MIT
#include "server/http/conversionbodies.h"

#include "server/http/reply.h"

#include <algorithm>
#include <charconv>

namespace server
{

namespace
{

using nlohmann::json;

constexpr std::uint64_t largestArchive = 16ULL << 30U;
constexpr std::size_t longestTask = 64;
constexpr std::size_t longestName = 200;
constexpr std::size_t longestText = 4096;
constexpr std::size_t md5Length = 32;
constexpr int toBeQueued = 6;

[[noreturn]] void Refuse(const std::string& words)
{
    throw ConversionRefused(400, code::badRequest, words);
}

json ObjectOf(const std::string& body)
{
    auto object = json::parse(body, nullptr, false);
    if (!object.is_object())
        Refuse("the body is no JSON object");
    return object;
}

std::string TextAt(const json& object, const char* key, std::size_t longest = longestText)
{
    const auto value = object.find(key);
    if (value == object.end() || !value->is_string())
        Refuse(std::string("the text \"") + key + "\" is missing");
    auto text = value->get<std::string>();
    if (text.size() > longest)
        Refuse(std::string("the text \"") + key + "\" is too long");
    return text;
}

bool IsTask(const std::string& text)
{
    return !text.empty() && text.size() <= longestTask &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) {
               return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
           });
}

bool IsFileName(const std::string& text)
{
    return !text.empty() && text.size() <= longestName && text != "." && text != ".." &&
           std::none_of(text.begin(), text.end(),
                        [](unsigned char c) { return c < 0x20 || c == 0x7f || c == '/' || c == '\\'; });
}

std::string RemotePathAt(const json& object, const std::string& guid)
{
    auto path = TextAt(object, "path");
    const auto start = guid.size() + 1;
    const auto end = path.find('/', start);
    if (!path.starts_with(guid + '/') || end == std::string::npos ||
        !IsTask(path.substr(start, end - start)) || !IsFileName(path.substr(end + 1)))
        Refuse("a path that is none");
    return path;
}

std::string Md5At(const json& object)
{
    auto md5 = TextAt(object, "md5");
    if (md5.size() != md5Length || md5.find_first_not_of("0123456789abcdef") != std::string::npos)
        Refuse("a digest that is none");
    return md5;
}

/// The converter's mode for what clients call type and option.
int ModeOf(const json& object)
{
    const auto type = TextAt(object, "type");
    const bool hasOption = object.contains("option");
    const auto option = hasOption ? TextAt(object, "option") : std::string();
    if (type == "2" && !hasOption)
        return 0;
    if (type == "1" && option == "1")
        return 1;
    if (type == "1" && option == "3")
        return 3;
    Refuse("a type that is none");
}

} // namespace

Archive ArchiveOf(const std::string& body, const std::string& guid)
{
    const auto object = ObjectOf(body);
    Archive archive;
    archive.guid = guid;
    archive.path = RemotePathAt(object, guid);
    const auto size = object.find("size");
    if (size == object.end() || !size->is_number_integer())
        Refuse("the number \"size\" is missing");
    if (size->is_number_unsigned() && size->get<std::uint64_t>() > largestArchive)
        throw ConversionRefused(413, code::tooLarge, "the archive is larger than the server takes");
    if (size->get<std::int64_t>() < 1)
        Refuse("an archive without bytes");
    archive.size = size->get<std::uint64_t>();
    return archive;
}

std::string Md5Of(const std::string& body)
{
    return Md5At(ObjectOf(body));
}

std::pair<Job, std::string> JobOf(const std::string& body, const std::string& guid)
{
    const auto object = ObjectOf(body);
    Job job;
    job.guid = guid;
    if (TextAt(object, "projectId") != guid)
        Refuse("a job of another project");
    job.path = RemotePathAt(object, guid);
    job.name = TextAt(object, "name", longestName);
    if (job.name.empty())
        Refuse("a model without a name");
    job.oldModel = TextAt(object, "oldModelId");
    const auto status = object.find("status");
    if (status == object.end() || !status->is_number_integer() || *status != toBeQueued)
        Refuse("a job that is not to be queued");
    if (TextAt(object, "origin") != "1")
        Refuse("an origin that is none");
    job.mode = ModeOf(object);
    return {std::move(job), Md5At(object)};
}

double PercentOf(const std::string& body)
{
    const auto object = ObjectOf(body);
    const auto percent = object.find("percent");
    if (percent == object.end() || !percent->is_number())
        Refuse("the number \"percent\" is missing");
    return std::clamp(percent->get<double>(), 0.0, 100.0);
}

std::string ReasonOf(const std::string& body)
{
    return TextAt(ObjectOf(body), "reason");
}

std::map<std::string, std::uint64_t> FilesOf(const std::string& body)
{
    const auto object = ObjectOf(body);
    const auto files = object.find("files");
    if (files == object.end() || !files->is_object() || files->empty())
        Refuse("the object \"files\" is missing");
    std::map<std::string, std::uint64_t> sizes;
    for (const auto& [path, size] : files->items()) {
        if (!size.is_number_unsigned())
            Refuse("a file without a size");
        sizes[path] = size.get<std::uint64_t>();
    }
    return sizes;
}

std::uint64_t OffsetOf(const std::string& text)
{
    std::uint64_t offset = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, offset);
    if (error != std::errc() || stop != end)
        Refuse("an offset that is none");
    return offset;
}

} // namespace server
