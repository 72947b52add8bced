// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/conversionrecords.h"

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

namespace server
{

/// Why a request about an archive or a job is refused.
class ConversionRefused : public std::runtime_error
{
public:
    ConversionRefused(unsigned status, int code, const std::string& words)
        : std::runtime_error(words)
        , m_status(status)
        , m_code(code)
    {
    }

    [[nodiscard]] unsigned status() const { return m_status; }
    [[nodiscard]] int code() const { return m_code; }

private:
    unsigned m_status;
    int m_code;
};

// What clients say in the bodies of their requests. Everything throws ConversionRefused for a body that does
// not say it.

/// Path and size of an archive that begins.
[[nodiscard]] Archive ArchiveOf(const std::string& body, const std::string& guid);

[[nodiscard]] std::string Md5Of(const std::string& body);

/// A job and the digest of its archive.
[[nodiscard]] std::pair<Job, std::string> JobOf(const std::string& body, const std::string& guid);

/// How far a worker says that its job is.
[[nodiscard]] double PercentOf(const std::string& body);

/// Why a worker says that its job has come to nothing.
[[nodiscard]] std::string ReasonOf(const std::string& body);

/// The files of a model, by path and size.
[[nodiscard]] std::map<std::string, std::uint64_t> FilesOf(const std::string& body);

/// An offset in a path.
[[nodiscard]] std::uint64_t OffsetOf(const std::string& text);

} // namespace server
