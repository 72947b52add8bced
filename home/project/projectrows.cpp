// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

namespace TorvoEditor
{

bool IsEmptyOrgNode(const TorvoSDK::SOrgNode& node)
{
    return node.id.empty() && node.name.empty() && node.children.empty();
}

QVariantMap CProjectMgr::MakeOrgRow(const TorvoSDK::SOrgNode& node)
{
    return {
        {QStringLiteral("text1"), QString::fromStdWString(node.name)},
        {QStringLiteral("text2"), QString::fromStdWString(node.id)},
        {QStringLiteral("type"), QStringLiteral("orgType")},
        {QStringLiteral("image1"), node.canSelect ? QStringLiteral("qrc:/images/ic_project.png")
                                                  : QStringLiteral("qrc:/images/ic_company.png")},
        {QStringLiteral("image2"), QString(QLatin1String(""))},
        {QStringLiteral("isDemo"), false},
    };
}

QVariantMap CProjectMgr::MakeProjectRow(const TorvoSDK::SServerProjectRecord& record)
{
    QVariantMap row{
        {QStringLiteral("text1"), QString::fromStdWString(record.name)},
        {QStringLiteral("text2"), QString::fromStdWString(record.guid)},
        {QStringLiteral("image2"), QString(QLatin1String(""))},
        {QStringLiteral("isDemo"), record.isDemo},
    };
    if (record.type == 1)
        row.insert(QStringLiteral("image1"), QStringLiteral("qrc:/images/bar_ic_bim.png"));
    else if (record.type == 0)
        row.insert(QStringLiteral("image1"), QStringLiteral("qrc:/images/bar_ic_scene.png"));
    return row;
}

} // namespace TorvoEditor
