// SPDX-License-Identifier: MIT
#include "http/fault.h"

#include <nlohmann/json.hpp>

namespace http
{

using nlohmann::json;

std::string ToJson(const Fault& fault)
{
    if (!fault)
        return {};
    return json{{"code", fault.code}, {"msg", fault.msg}}.dump(-1, ' ', false,
                                                               json::error_handler_t::replace);
}

Fault FaultOfAnswer(unsigned status, std::string_view body)
{
    const auto answer = json::parse(body, nullptr, false);
    if (answer.is_object() && answer.contains("code") && answer["code"].is_number_integer()) {
        const auto msg =
            answer.contains("msg") && answer["msg"].is_string() ? answer["msg"].get<std::string>() : "";
        return {answer["code"].get<int>(), msg};
    }
    if (status == 401)
        return {faultcode::loginExpired, "the login has expired"};
    return {faultcode::badReply,
            "the project server answered with an unexpected status " + std::to_string(status)};
}

} // namespace http
