// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace kyvconvert
{

/// What a running converter says on its standard output. Whatever else stands there is dropped.
class ConverterWords
{
public:
    /// Takes the next bytes, wherever they were cut.
    void take(std::string_view bytes);

    /// The last percentage.
    [[nodiscard]] double percent() const { return m_percent; }
    /// Why the conversion has failed; empty as long as nothing was said of it.
    [[nodiscard]] const std::string& reason() const { return m_reason; }

private:
    void takeLine(std::string_view line);

    std::string m_begun; ///< a line whose end has not come yet
    std::string m_reason;
    double m_percent = 0.0;
};

} // namespace kyvconvert
