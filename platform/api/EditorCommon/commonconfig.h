// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

namespace EditorCommon
{

/// Settings that all programs of the editor share: the texts of one JSON object in the file
/// "commonConfig.json" beside the program, read at first use. GUI thread.
class CommonConfig
{
public:
    [[nodiscard]] static CommonConfig& getInstance();

    /// The text at `key`; empty when the file or the key is missing or the value is no text.
    [[nodiscard]] QString getConfigInfo(const QString& key) const;

private:
    CommonConfig();

    QHash<QString, QString> m_values;
};

} // namespace EditorCommon
