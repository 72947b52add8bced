// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/layout.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace server
{

/// A request, taken apart as far as the API needs it.
struct Request {
    std::string method;
    std::vector<std::string> path; ///< the decoded names behind /api/v1, or behind /web
    bool isForPage = false;        ///< it went to /web: a person reads the answer
    std::string query;             ///< behind the "?", as it came
    std::string cookie;
    std::string guard;        ///< what only a page of this server knows, from the header X-Torvo-Guard
    bool isEncrypted = false; ///< between browser and proxy
    std::string authorization;
    std::string ifNoneMatch;
    std::string acceptEncoding;

    std::string body;
};

/// A body that is made while it is sent. One thread at a time.
class BodySource
{
public:
    virtual ~BodySource() = default;
    /// All its bytes.
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// The next ones, none at the end. May wait for the disk. Throws std::exception.
    [[nodiscard]] virtual std::string next() = 0;
};

/// An answer: a body in memory, one that is made while it is sent, or stretches of pack files that are pumped
/// straight into the connection.
struct Reply {
    unsigned status = 200;
    std::string contentType;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    std::shared_ptr<const std::string> sharedBody; ///< takes the place of `body` when it is set
    std::shared_ptr<BodySource> source;            ///< takes the place of both when it is set
    std::vector<PackRange> ranges;                 ///< take the place of all when there are any

    [[nodiscard]] std::uint64_t contentLength() const;
};

/// The codes of the error answers.
namespace code
{
inline constexpr int badRequest = 40001;
inline constexpr int loginExpired = 40014;
inline constexpr int wrongPassword = 40101;
inline constexpr int wrongKey = 40102;
inline constexpr int notAllowed = 40300;
inline constexpr int missing = 40400;
inline constexpr int uploadGone = 40410;
inline constexpr int archiveMissing = 40411;
inline constexpr int jobMissing = 40412;
inline constexpr int modelMissing = 40413;
inline constexpr int wrongMethod = 40500;
inline constexpr int conflict = 40900;
inline constexpr int busy = 40901;
inline constexpr int converting = 40902;
inline constexpr int unknownBase = 40903;
inline constexpr int incomplete = 40904;
inline constexpr int wrongOffset = 40910;
inline constexpr int archiveIncomplete = 40911;
inline constexpr int otherDigest = 40912;
inline constexpr int archiveFinished = 40913;
inline constexpr int tooLarge = 41300;
inline constexpr int tooMany = 42900;
inline constexpr int serverError = 50000;
inline constexpr int diskFull = 50700;
} // namespace code

/// An answer without a body.
[[nodiscard]] Reply EmptyReply(unsigned status);
[[nodiscard]] Reply JsonReply(unsigned status, std::string body);
[[nodiscard]] Reply ErrorReply(unsigned status, int code, std::string_view msg);

/// Splits and decodes what stands behind `prefix` in the path of a request target; nothing when it is
/// malformed or does not start with that. The prefix ends with a slash.
[[nodiscard]] std::vector<std::string> PathBehind(std::string_view prefix, std::string_view target,
                                                  bool& isValid);

/// The decoded value of `name` in a query; nothing when it is missing or malformed.
[[nodiscard]] std::optional<std::string> QueryValue(std::string_view query, std::string_view name);

} // namespace server
