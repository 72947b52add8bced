// SPDX-License-Identifier: MIT
#pragma once

#include "http/fault.h"

#include <stdexcept>
#include <string>
#include <utility>

/// Why things fail, and where the library ends: inside it a failure is thrown, at its border it becomes false
/// or null, and its reason is kept for GetLastError.
namespace ZRSmartDB
{

/// The codes of failures on this machine.
namespace localcode
{
inline constexpr int badInput = 40010;   ///< the caller gave something that cannot be used
inline constexpr int notHere = 40410;    ///< the project, model or file is not on this machine
inline constexpr int exists = 40910;     ///< the project or the model is there already
inline constexpr int damaged = 42200;    ///< what stands in the folder is no readable project
inline constexpr int older = 42210;      ///< the project must be upgraded first
inline constexpr int newer = 42220;      ///< the project was written by a later version of this program
inline constexpr int notOffered = 50100; ///< not part of this version, or not allowed to this account
inline constexpr int cannotWrite = 50700;
inline constexpr int diskFull = 50710;
} // namespace localcode

/// The words are for a person; never a password or a token.
class Failure : public std::runtime_error
{
public:
    Failure(int code, const std::string& message)
        : std::runtime_error(message)
        , m_code(code)
    {
    }
    explicit Failure(const http::Fault& fault)
        : Failure(fault.code, fault.msg)
    {
    }

    [[nodiscard]] int code() const { return m_code; }
    [[nodiscard]] http::Fault fault() const { return {m_code, what()}; }

private:
    int m_code;
};

/// Keeps a reason for the calling thread: a worker's failure must not be replaced by what the GUI thread
/// looks for in vain meanwhile.
void RememberFailure(const http::Fault& fault) noexcept;

/// The JSON text of the last reason kept for the calling thread; empty when there is none.
[[nodiscard]] std::string RememberedFailure();

/// Drops the reasons of all threads.
void ForgetFailures() noexcept;

/// Runs `work`; when it throws, remembers why and gives `onFailure`.
template<class Result, class Work>
Result AtBorder(Result onFailure, Work&& work) noexcept
{
    try {
        return std::forward<Work>(work)();
    } catch (const Failure& failure) {
        RememberFailure(failure.fault());
    } catch (const std::exception& exception) {
        RememberFailure({localcode::badInput, exception.what()});
    }
    return onFailure;
}

/// The same for work that gives nothing.
template<class Work>
void AtBorder(Work&& work) noexcept
{
    AtBorder(0, [&] {
        std::forward<Work>(work)();
        return 0;
    });
}

} // namespace ZRSmartDB
