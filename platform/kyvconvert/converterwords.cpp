// SPDX-License-Identifier: MIT
#include "kyvconvert/converterwords.h"

#include <nlohmann/json.hpp>

namespace kyvconvert
{

namespace
{

constexpr std::size_t longestLine = 65536;

} // namespace

void ConverterWords::take(std::string_view bytes)
{
    m_begun.append(bytes);
    for (auto end = m_begun.find('\n'); end != std::string::npos; end = m_begun.find('\n')) {
        takeLine(std::string_view(m_begun).substr(0, end));
        m_begun.erase(0, end + 1);
    }
    if (m_begun.size() > longestLine)
        m_begun.clear();
}

void ConverterWords::takeLine(std::string_view text)
{
    const auto line = nlohmann::json::parse(text, nullptr, false);
    if (!line.is_object())
        return;
    if (const auto percent = line.find("percent"); percent != line.end() && percent->is_number())
        m_percent = *percent;
    if (const auto error = line.find("error"); error != line.end() && error->is_string())
        m_reason = *error;
}

} // namespace kyvconvert
