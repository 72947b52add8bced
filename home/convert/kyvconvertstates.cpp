// SPDX-License-Identifier: MIT
#include "convert/kyvconvertstates.h"

#include <QDebug>
#include <QHash>

namespace TorvoEditor
{

TKyvStateLook KyvStateLook(int state)
{
    static const QString done = QStringLiteral("qrc:/images/pop_bt_ic_prosperity.png");
    static const QString waits = QStringLiteral("qrc:/images/pop_bt_ic_translation.png");
    static const QString sends = QStringLiteral("qrc:/images/pop_bt_ic_update.png");
    static const QString converts = QStringLiteral("qrc:/images/card_ic_transition.png");
    static const QString failed = QStringLiteral("qrc:/images/pop_bt_ic_defeat.png");
    switch (state) {
    case KCS_Converted:
        return {done, QStringLiteral("kyv转换成功")};
    case KCS_WaitRepackage:
        return {waits, QStringLiteral("kyv解包排队中,")};
    case KCS_Repackage:
        return {waits, QStringLiteral("kyv解包中")};
    case KCS_WaitUpload:
        return {waits, QStringLiteral("kyv上传排队中,")};
    case KCS_Upload:
        return {sends, QStringLiteral("kyv上传中")};
    case KCS_WaitConvert:
        return {waits, QStringLiteral("kyv服务器转换排队中,")};
    case KCS_Convert:
        return {converts, QStringLiteral("kyv服务器转换中")};
    case KCS_RepackageFailed:
        return {failed, QStringLiteral("kyv本地解包失败")};
    case KCS_UploadFailed:
        return {failed, QStringLiteral("kyv上传失败")};
    case KCS_ConvertFailed:
        return {failed, QStringLiteral("kyv转换失败")};
    default:
        return {done, QString()};
    }
}

int convertServiceStateToLocal(const QString& status)
{
    static const QHash<QString, int> states = {
        {QStringLiteral("2"), KCS_Converted},
        {QStringLiteral("3"), KCS_Convert},
        {QStringLiteral("4"), KCS_ConvertFailed},
        {QStringLiteral("6"), KCS_WaitConvert},
    };
    const auto known = states.find(status);
    if (known != states.end())
        return *known;
    qDebug() << "convertServiceStateToLocal faild status: " << status;
    return KCS_WaitConvert;
}

} // namespace TorvoEditor
