// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace http
{

/// Why something went wrong, as a program and as a person need it.
struct Fault {
    int code = 0;    ///< 0: nothing went wrong
    std::string msg; ///< UTF-8, what happened and what to do

    [[nodiscard]] explicit operator bool() const { return code != 0; }
};

/// The codes that this side of the wire adds to those of the server.
namespace faultcode
{
inline constexpr int loginExpired = 40014;
inline constexpr int badReply = 50200;
inline constexpr int unreachable = 50300;
inline constexpr int timedOut = 50400;
inline constexpr int cancelled = 50900;
} // namespace faultcode

/// A JSON object with the integer "code" and the text "msg"; the empty text when there is no fault.
[[nodiscard]] std::string ToJson(const Fault& fault);

/// The fault that an error answer of the server tells of. An answer that is not in the server's form, for
/// example the page of a proxy, gives badReply with the status in its words; 401 without a code counts as an
/// expired login.
[[nodiscard]] Fault FaultOfAnswer(unsigned status, std::string_view body);

} // namespace http
