// SPDX-License-Identifier: MIT
#include "EditorCommon/commonconfig.h"

#include "settingsfile.h"

#include <QCoreApplication>

namespace EditorCommon
{

CommonConfig& CommonConfig::getInstance()
{
    static CommonConfig config;
    return config;
}

CommonConfig::CommonConfig()
    : m_values(
          ReadSettingsFile(QCoreApplication::applicationDirPath() + QStringLiteral("/commonConfig.json")))
{
}

QString CommonConfig::getConfigInfo(const QString& key) const
{
    return m_values.value(key);
}

} // namespace EditorCommon
