// SPDX-License-Identifier: MIT
#include "filesizelimit.h"
#include "smalldisk.h"

#include "ZRSmartDB/zrdbnetaccess.h"
#include "smartdb/database.h"

#include <clocale>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// One transfer of one project, in a process that can be killed:
//     torvo-transfer SERVER TOKEN FOLDER upload|download|update GUID [disk|file BYTES]
// "disk": the disk is full after so many bytes of it all; "file": no file may become larger.
// Prints the bytes that were written to the disk, and why a transfer has failed.

namespace
{

using namespace ZRSmartDB;

std::wstring Wide(const std::string& text)
{
    return {text.begin(), text.end()};
}

bool Transfer(Database& database, const std::string& folder, const std::string& what, const std::string& guid)
{
    const auto key = ZRSmartFormat::GuidFromText(Wide(guid));
    if (what == "upload")
        return database.UploadProj(key, Wide(folder), false, false);
    return what == "update" ? database.UpdateProj(key, Wide(folder))
                            : database.DownLoadProj(key, Wide(folder));
}

} // namespace

int main(int count, char** arguments)
{
    std::setlocale(LC_ALL, "");
    const std::vector<std::string> given(arguments + 1, arguments + count);
    if (given.size() != 5 && given.size() != 7)
        return 2;
    const std::string limited = given.size() == 7 ? given[5] : std::string();
    const auto bytes = limited.empty() ? 0ULL : std::stoull(given[6]);
    const std::uint64_t room = limited == "disk" ? bytes : std::numeric_limits<std::uint64_t>::max();
    std::optional<FileSizeLimit> limit;
    if (limited == "file")
        limit.emplace(bytes);

    const auto disk = std::make_shared<SmallDisk>(room);
    Database database(disk);
    if (!database.setServer(given[0]))
        return 2;
    database.SetUp(0);
    database.GetNetAccess()->LoginByToken(Wide(given[1]));
    const bool isDone = Transfer(database, given[2], given[3], given[4]);
    std::printf("%llu\n", static_cast<unsigned long long>(room - disk->left()));
    if (isDone)
        return 0;
    std::wstring reason;
    database.GetLastError(reason);
    std::printf("%ls\n", reason.c_str());
    return 1;
}
