// SPDX-License-Identifier: MIT
#include "fakes/fakecommonconfig.h"

#include "EditorCommon/commonconfig.h"

namespace Fakes
{

QMap<QString, QString>& Settings()
{
    static QMap<QString, QString> settings;
    return settings;
}

} // namespace Fakes

namespace EditorCommon
{

CommonConfig::CommonConfig() = default;

CommonConfig& CommonConfig::getInstance()
{
    static CommonConfig config;
    return config;
}

QString CommonConfig::getConfigInfo(const QString& key) const
{
    return Fakes::Settings().value(key);
}

} // namespace EditorCommon
