// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The files of a host that only the running test program sees: before the first case, empty folders in memory are
// mounted over the absolute paths which the libraries and commands use, in a mount namespace of its own.
#pragma once

#include <string>
#include <vector>

constexpr char kWorkFolder[] = "/mnt";

/// Mounts an empty folder in memory; the size is "" or as the mount option size= takes it.
void mountMemory(const std::string &folder, const std::string &size = "");
void makeReadOnly(const std::string &folder);

/// Both make the folders above too; the second one empties a folder that exists.
void makeFolder(const std::string &path);
void makeEmptyFolder(const std::string &path);
void writeFile(const std::string &path, const std::string &content);
std::string readFile(const std::string &path);
std::vector<std::string> namesIn(const std::string &folder);
