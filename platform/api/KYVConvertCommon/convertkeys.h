// SPDX-License-Identifier: MIT
#pragma once

namespace KYVConvertCommon
{

// Names in the messages of conversion engines.
inline constexpr const char* keyConverter = "XHConverter";
inline constexpr const char* keyConvertState = "convertState";
inline constexpr const char* keyUid = "uid";
inline constexpr const char* keyId = "id";
inline constexpr const char* keyConvertKyv = "convertKyv";
inline constexpr const char* keyConvertZrg = "convertZrg";
inline constexpr const char* keyConvertDwg = "convertDwg";
inline constexpr const char* keyConvertFbx = "convertFBX";
inline constexpr const char* keyDwgFile = "dwgFile";
inline constexpr const char* keyFbxFile = "fbxFile";
inline constexpr const char* keyKyvFile = "kyvFile";
inline constexpr const char* keyLevelModel = "levelModel";
inline constexpr const char* keyLevelPerformanceFirst = "levelPerformanceFirst";
inline constexpr const char* keyBimGuid = "bimGuid";
inline constexpr const char* keyCompGuid = "compGuid";
inline constexpr const char* keyOutlineModel = "outlineModel";
inline constexpr const char* keyAsComp = "asComp";
inline constexpr const char* keyGltfFile = "gltfFile";

/// Attribute of a model's record: what the model was made of; empty for a model archive.
inline constexpr const wchar_t* attributeImportSourceType = L"editor_import_source_type";

} // namespace KYVConvertCommon
