// SPDX-License-Identifier: MIT
#include "server/projects/revisionfile.h"

#include "server/projects/filestream.h"

#include <algorithm>

namespace server
{

const wire::FileEntry* FindFile(const LoadedRevision& revision, const std::string& path)
{
    const auto& files = revision.manifest.files;
    const auto file =
        std::find_if(files.begin(), files.end(), [&](const auto& entry) { return entry.path == path; });
    return file != files.end() ? &*file : nullptr;
}

std::string FileBytes(PackReader& packs, const LoadedRevision& revision, const wire::FileEntry& entry)
{
    // The caller keeps the revision longer than the stream lasts.
    FileStream stream(packs, {std::shared_ptr<const LoadedRevision>(), &revision}, entry);
    std::string bytes;
    bytes.reserve(entry.size);
    for (auto step = stream.next(); !step.empty(); step = stream.next())
        bytes += step;
    return bytes;
}

} // namespace server
