/// \file
/// What a store's file looks like, how one is made, and how a stranger's is told from it. Inside of the
/// store.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "zul/kernel/string.h"
#include "zul/store/database.h"

namespace zul {

/// \returns the path in UTF-8 with slashes; nothing for null, an empty path, and what is not valid UTF-16.
std::optional<std::string> ToStorePath(const char16_t* path);

bool DoesFileExist(const std::string& path);

/// Whether a writer that is at work, or was killed, left changes beside the file.
bool HasUnfinishedChanges(const std::string& path);

/// Lays the tables of an empty store.
bool LayTables(CDatabase& database);

/// Makes a file with an empty store, whole or not at all. One that another process makes at the same time is
/// left to it. Reports what goes wrong.
bool MakeStoreFile(const std::string& path);

/// Looks at the file's first bytes without touching it otherwise. \returns an empty text for a store of a
/// known format, else what keeps it from being opened.
CString FindObjection(const std::string& path);

/// Whether the tables are those of a store, each as it was laid, and nothing else is there.
bool HasStoreTables(CDatabase& database);

}  // namespace zul
