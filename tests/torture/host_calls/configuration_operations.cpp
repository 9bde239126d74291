// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>

#include "configuration_change.h"
#include "operation.h"
#include "private_host.h"

namespace {

const std::string kSmall = "<velmora><ch0><exists>0</exists></ch0></velmora>";
const std::string kLarge = "<velmora>" + std::string(900000, ' ') + "<ch0><exists>0</exists></ch0></velmora>";

/// What a reader was given.
struct Reading {
  int opened = 0;
  int exists = -1;
};

bool read(Reading &reading) {
  void *handle = nullptr;
  reading = {};
  reading.opened = xmlcfg_open(kRead, ConfigurationChange::kFile.c_str(), &handle);
  if (reading.opened != xmlcfg::kOpened) return false;
  reading.exists = xmlcfg_get_int(handle, -1, "velmora", "ch0", "exists", nullptr);
  xmlcfg_close(handle, 0);
  return true;
}

Operation readingA(const std::string &kind, const std::string &content) {
  const auto reading = std::make_shared<Reading>();
  const auto file = std::make_shared<std::unique_ptr<ConfigurationChange>>();
  return {"ReadA" + kind + "Configuration", [=] { *file = std::make_unique<ConfigurationChange>(content); },
          [=] { return read(*reading); },
          [=](Result result) {
            const bool opened = result.succeeded;
            EXPECT_TRUE(opened || reading->opened < 0);
            EXPECT_NE(reading->opened, content.empty() ? xmlcfg::kOpened : xmlcfg::kMissing);
            EXPECT_NE(reading->opened, xmlcfg::kDamaged);
            EXPECT_EQ(reading->exists, opened ? 0 : -1);
            (*file)->expectRules();
          },
          !content.empty()};
}

Operation changingA(const std::string &kind, const std::string &content) {
  const auto change = std::make_shared<std::unique_ptr<ConfigurationChange>>();
  return {"ChangeA" + kind + "Configuration", [=] { *change = std::make_unique<ConfigurationChange>(content); },
          [=] {
            (*change)->run();
            return (*change)->stored();
          },
          [=](Result result) {
            EXPECT_NE((*change)->openResult(), xmlcfg::kDamaged);
            (*change)->expectRules(!result.everything_failed);
          }};
}

Operation settingWhatIsThereAlready() {
  const auto set = [] {
    Configuration file(kWrite, ConfigurationChange::kFile);
    return file.openResult() == xmlcfg::kOpened && file.setNumber("ch0", "exists", 0) == xmlcfg::kDone &&
           file.close() == xmlcfg::kDone;
  };
  return {"SetWhatIsThereAlready", [] { ConfigurationChange change(kSmall); }, set,
          [](Result) { EXPECT_EQ(readFile(ConfigurationChange::kFile), kSmall); }};
}

}  // namespace

std::vector<Operation> configurationOperations() {
  return {readingA("Small", kSmall),  readingA("Large", kLarge), readingA("Missing", ""),    changingA("Small", kSmall),
          changingA("Large", kLarge), changingA("Missing", ""),  settingWhatIsThereAlready()};
}
