// SPDX-License-Identifier: MIT
#include "tabs/prop.h"

#include "core/homeapp.h"
#include "view/context/editorcontrol/infocardcontroller.h"
#include "view/context/editorcontrol/projectinfo.h"

namespace TorvoEditor
{

namespace
{

/// Null when a page still asks while the managers go.
CProjectInfo* CardInfo()
{
    auto* card = CHomeApp::instance().GetMgr<CInfoCardController>();
    return card != nullptr ? card->projectInfo() : nullptr;
}

} // namespace

Prop::Prop(QObject* parent)
    : QObject(parent)
{
}

QString Prop::getProp() const
{
    const auto* info = CardInfo();
    return info != nullptr ? info->templateContent() : QString();
}

void Prop::setProp(const QString& prop)
{
    if (auto* info = CardInfo())
        info->setTemplateContent(prop);
}

} // namespace TorvoEditor
