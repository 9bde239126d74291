/*
 * The files of a host that only the running test program sees: before the first case, empty folders in memory are
 * mounted over the absolute paths which the libraries and commands use, in a mount namespace of its own.
 */
#ifndef TESTS_HOST_PRIVATE_HOST_H
#define TESTS_HOST_PRIVATE_HOST_H

#include <string>
#include <vector>

constexpr char kWorkFolder[] = "/mnt";

/* Mounts an empty folder in memory; the size is "" or as the mount option size= takes it. */
void mount_memory(const std::string &folder, const std::string &size = "");
void make_read_only(const std::string &folder);

/* Both make the folders above too; the second one empties a folder that exists. */
void make_folder(const std::string &path);
void make_empty_folder(const std::string &path);
void write_file(const std::string &path, const std::string &content);
std::string read_file(const std::string &path);
std::vector<std::string> names_in(const std::string &folder);

#endif
