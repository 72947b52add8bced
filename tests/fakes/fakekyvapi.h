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

} // namespace Fakes
