// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "configuration_change.h"
#include "failing.h"
#include "platform/orda_exec.h"
#include "private_host.h"

namespace {

/// The file of a change, and whether memory is there.
class WithoutMemory : public testing::Test {
 protected:
  static void begin() { failing::fail(failing::kMemory, failing::kEvery, ENOMEM); }

  ConfigurationChange file_{kBefore};
};

TEST_F(WithoutMemory, AFileIsNotOpened) {
  void *handle = nullptr;
  begin();
  const int result = xmlcfg_open(kWrite, ConfigurationChange::kFile.c_str(), &handle);
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(result, xmlcfg::kNoMemory);
}

TEST_F(WithoutMemory, AValueIsNotSetAndTheCloseStoresNothing) {
  Configuration writer(kWrite, ConfigurationChange::kFile);
  EXPECT_EQ(writer.setNumber("ch0", "exists", 1), xmlcfg::kDone);
  const std::string text(40000, 'x');
  begin();
  const int result = xmlcfg_set_str(writer.handle(), text.c_str(), "velmora", "ch0", "devname", nullptr);
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(result, xmlcfg::kNoMemory);
  EXPECT_EQ(writer.close(), xmlcfg::kNotStored);
  EXPECT_EQ(readFile(ConfigurationChange::kFile), kBefore);
}

TEST_F(WithoutMemory, AProgramIsNotRun) {
  begin();
  const int result = orda_exec(0, 0, 0, "/bin/true", nullptr);
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(result, -1);
}

TEST_F(WithoutMemory, AChangeIsNotStored) {
  Configuration writer(kWrite, ConfigurationChange::kFile);
  EXPECT_EQ(writer.setNumber("ch0", "exists", 1), xmlcfg::kDone);
  begin();
  const int result = writer.close();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(result, xmlcfg::kNotStored);
  EXPECT_EQ(readFile(ConfigurationChange::kFile), kBefore);
}

}  // namespace
