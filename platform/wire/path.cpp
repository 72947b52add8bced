// SPDX-License-Identifier: MIT
#include "wire/path.h"

#include "wire/manifest.h"

#include <algorithm>

#include <QString>

namespace wire
{

namespace
{

constexpr std::size_t maximumPathLength = 1024;
constexpr std::size_t maximumNameLength = 255;

bool IsControl(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

std::string NameRefusal(std::string_view name)
{
    if (name.empty() || name.size() > maximumNameLength)
        return "a path with an empty or an overlong name";
    if (name == "." || name == "..")
        return "a path that climbs";
    if (std::any_of(name.begin(), name.end(), IsControl))
        return "a path with a control character";
    if (name.find_first_of("\\:") != std::string_view::npos)
        return "a path with a backslash or a colon";
    if (name.back() == ' ' || name.back() == '.')
        return "a name that ends in a blank or a dot";
    return {};
}

bool IsUtf8(std::string_view text)
{
    const auto decoded = QString::fromUtf8(text.data(), static_cast<int>(text.size()));
    return decoded.toUtf8() == QByteArray::fromRawData(text.data(), static_cast<int>(text.size()));
}

} // namespace

std::string PathRefusal(std::string_view path)
{
    if (path.empty() || path.size() > maximumPathLength)
        return "an empty or an overlong path";
    if (!IsUtf8(path))
        return "a path that is not UTF-8";
    while (true) {
        const auto slash = path.find('/');
        if (auto refusal = NameRefusal(path.substr(0, slash)); !refusal.empty())
            return refusal;
        if (slash == std::string_view::npos)
            return {};
        path.remove_prefix(slash + 1);
    }
}

std::string FoldedPath(std::string_view path)
{
    return QString::fromUtf8(path.data(), static_cast<int>(path.size()))
        .normalized(QString::NormalizationForm_C)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_C)
        .toStdString();
}

} // namespace wire
