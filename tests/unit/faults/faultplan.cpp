// SPDX-License-Identifier: MIT
#include "faultplan.h"

#include <algorithm>

#include <QString>

namespace
{

constexpr int usualFaults = 200;

unsigned Seed()
{
    bool isGiven = false;
    const auto given = qEnvironmentVariable("TORVO_SEED").toUInt(&isGiven);
    return isGiven ? given : std::random_device()();
}

int Faults()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("TORVO_FAULTS", &isGiven);
    return isGiven ? given : usualFaults;
}

} // namespace

FaultPlan::FaultPlan(int share)
    : m_count(std::max(1, share * Faults() / usualFaults))
    , m_seed(Seed())
    , m_random(m_seed)
{
    qInfo("%d faults, TORVO_SEED=%u", m_count, m_seed);
}

std::uint64_t FaultPlan::below(std::uint64_t limit)
{
    return std::uniform_int_distribution<std::uint64_t>(0, limit - 1)(m_random);
}

std::string FaultPlan::told(int number, const std::string& moment, const std::string& findings) const
{
    return "fault " + std::to_string(number) + ' ' + moment + ", TORVO_SEED=" + std::to_string(m_seed) +
           ": " + findings;
}
