// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Fakes
{

/// What KYVApi::init was given last.
struct KyvApiSession {
    QString serverAddr;
    QString token;
};

[[nodiscard]] KyvApiSession& KyvApi();

/// What the other calls give. GUI thread.
struct KyvApiAnswers {
    QString webConsoleUrl; ///< empty: the call fails
    QString webProjUrl;    ///< empty: the call fails
    bool acceptsNames = true;
};

[[nodiscard]] KyvApiAnswers& KyvAnswers();

} // namespace Fakes
