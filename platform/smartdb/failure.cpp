// SPDX-License-Identifier: MIT
#include "smartdb/failure.h"

#include "smartdb/log.h"

#include <atomic>
#include <cstdint>

namespace ZRSmartDB
{

namespace
{

struct Remembered {
    std::uint64_t generation = 0;
    http::Fault fault;
};

// The reasons of other threads cannot be reached from here, so their number makes them void.
std::atomic<std::uint64_t> generation = 1;
thread_local Remembered remembered;

} // namespace

void RememberFailure(const http::Fault& fault) noexcept
{
    try {
        qCInfo(smartdbLog) << "failed with code" << fault.code << fault.msg.c_str();
        remembered = {generation, fault};
    } catch (const std::exception&) {
        remembered.generation = 0;
    }
}

std::string RememberedFailure()
{
    return remembered.generation == generation ? http::ToJson(remembered.fault) : std::string();
}

void ForgetFailures() noexcept
{
    ++generation;
}

} // namespace ZRSmartDB
