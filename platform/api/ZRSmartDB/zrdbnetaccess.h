// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"
#include "concurrency/task.h"

#include <memory>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// Queries to the project server.
///
/// Each query starts a request on a thread of the library and gives a task at once. The task's own result is
/// the error text, empty on success: a JSON object with the integer "code" and the text "msg". A reply goes
/// into the shared text before the task completes; it is untouched on failure. FreeIDBDirector ends the
/// tasks that are still under way, with an error or cancelled. Any thread.
class CZRDBNetAccess
{
public:
    /// The state of a project on the server, as bare text: "-1" the last upload failed, "0" an upload runs,
    /// "1" normal, "2" not there, "3" being converted. The answer is at most 500 ms old.
    [[nodiscard]] virtual Concurrency::task<std::wstring>
    GetStatusByProjId(const ZRSmartFormat::SZRFTGuid& guid, std::shared_ptr<std::wstring> reply) = 0;

    /// The type of a project, as bare text: "BIM" or "CIM".
    [[nodiscard]] virtual Concurrency::task<std::wstring>
    GetProjType(const ZRSmartFormat::SZRFTGuid& guid, std::shared_ptr<std::wstring> reply) = 0;

    /// The countries that the server knows: a JSON array of objects with the text "id".
    [[nodiscard]] virtual Concurrency::task<std::wstring>
    GetCountryList(std::shared_ptr<std::wstring> reply) = 0;

    /// The administrative regions below `id`: a JSON array of objects with the texts "id" and "name" and the
    /// numbers "lat" and "lon" (degrees, WGS 84).
    [[nodiscard]] virtual Concurrency::task<std::wstring>
    GetAdministrativeRegion(const std::wstring& id, std::shared_ptr<std::wstring> reply) = 0;

    /// Whether projects of the application `appId` may be uploaded: an empty result says yes, otherwise a
    /// JSON object whose text "msg" is the reason.
    [[nodiscard]] virtual Concurrency::task<std::wstring> CanAppIdUpload(const std::wstring& appId) = 0;

    /// Fetches files of project folders. `serverPaths` are of the form "/proj_<guid>/<file>"; each file is
    /// written to the local path of the same index, whose folder is made when it is missing. A file appears
    /// whole or not at all.
    [[nodiscard]] virtual Concurrency::task<std::wstring>
    DownloadFileAry(const std::vector<std::wstring>& serverPaths,
                    const std::vector<std::wstring>& localPaths) = 0;

    /// Takes the bearer token for all later requests. Sends nothing: a bad token shows in their replies.
    virtual void LoginByToken(const std::wstring& token) = 0;

    /// Takes the text of the Cookie header for all later requests; empty sends none.
    virtual void SetCookie(const std::wstring& cookies) = 0;

protected:
    ~CZRDBNetAccess() = default;
};

} // namespace ZRSmartDB
