// SPDX-License-Identifier: MIT
#include "EditorCommon/zip.h"

#include "editorcommonlog.h"
#include "zip/pack.h"
#include "zip/unpack.h"

#include <exception>

namespace EditorCommon
{

bool CZip::unZip(const QString& archive, const QString& folder)
try {
    Zip::Unpack(archive, folder, Zip::Limits());
    return true;
} catch (const std::exception& reason) {
    qCWarning(editorCommonLog) << "unpacking" << archive << "failed:" << reason.what();
    return false;
}

bool CZip::zip(const QString& folder, const QString& archive)
try {
    Zip::Pack(folder, archive);
    return true;
} catch (const std::exception& reason) {
    qCWarning(editorCommonLog) << "packing" << archive << "failed:" << reason.what();
    return false;
}

} // namespace EditorCommon
