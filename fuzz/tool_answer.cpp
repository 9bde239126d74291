// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host's tools and state files answer: packages, GPUs, ports, processes, the processor.
#include <usbdev/usbdev.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "encoding_host.h"
#include "expect.h"
#include "fuzzed_host.h"
#include "input.h"

namespace {

using fuzz::expect;

constexpr std::size_t kLongestPackage = 56;  // the command for a longer one is cut

std::string firstLine(const std::string &text, std::size_t size) {
  const std::vector<std::string> lines = fuzz::linesOf(text, size);
  return lines.empty() ? "" : lines[0];
}

/// Only a GPU whose name is a plain word is asked for its state.
void expectEncoding(fuzz::FuzzedHost &host, const std::string &gpus, const std::string &state) {
  contract::allowEncoding(host);
  host.commands.prints(contract::kGpuListCommand, gpus);
  const std::string line = firstLine(gpus, 256);
  const std::string ask = "gpuinfo_app -s " + line.substr(0, line.find(':'));
  host.commands.prints(ask, state);
  int ready = -1;
  int may_encode = -1;
  expect(check_gpu_status(&ready) == 0 && validate_hwenc(&may_encode) == 0, "the host is asked what it can encode");
  expect(ready == 0 || ready == 1, "a GPU is ready or not");
  expect(may_encode == ready, "only a host with a ready GPU may encode");
  const bool asked = host.journal.count("popen " + ask) > 0;
  const bool says_ready = firstLine(state, 256).find("driver_installed=1") != std::string::npos;
  expect(ready == (asked && says_ready ? 1 : 0), "a GPU is ready when its driver is installed");
}

void expectPackage(fuzz::FuzzedHost &host, const std::string &package, const std::string &answer) {
  char value[129];
  std::memset(value, '!', sizeof value);
  host.commands.prints(contract::packageQuery(package, "Version"), answer);
  const int found = get_bndl_info(package.c_str(), "Version", value);
  expect(value[128] == '!', "a package's field takes at most 128 bytes");
  if (found == 0) {
    expect(fuzz::isTerminated(value) && std::strchr(value, '\n') == nullptr, "a package's field is one line");
  } else {
    expect(value[0] == '!', "a field that is not found is untouched");
  }
  BndlInfo info{};
  host.commands.prints("/sbin/readcfg " + package + " Build -f /etc/config/bndl.conf", answer);
  expect(vl_get_bndl_info(package.c_str(), &info) == 0, "a package is described");
  expect(fuzz::isTerminated(info.version) && fuzz::isTerminated(info.build) && fuzz::isTerminated(info.install_path),
         "a package's texts are terminated");
  expect(answer.rfind(info.build, 0) == 0, "a package's text is the answer, or its beginning");
}

void expectPort(fuzz::FuzzedHost &host, const std::string &port, const std::string &answer) {
  host.commands.prints("hwinfo_app --usb_get_port_id value='" + port + "'", answer);
  const int number = vl_HOS_CLI_usbid(port.c_str());
  const bool asked = port.find_first_of("'\n\r") == std::string::npos && port.size() <= 127;
  if (!asked || answer.empty()) expect(number == -1, "without an answer a port has no number");
}

void expectAddOn(fuzz::FuzzedHost &host, const std::string &state) {
  host.files.write("/tmp/gpuinfo.type", state);
  int supported = -1;
  const int result = vl_check_HOS_halvane_support(&supported);
  expect(supported == 0 || supported == 1, "an add-on is supported or not");
  expect(result == 0 || supported == 0, "without an answer the add-on is not supported");
}

void expectIdentifier(fuzz::FuzzedHost &host, const std::string &random) {
  host.commands.prints("/bin/cat /proc/sys/kernel/random/uuid", random);
  char hash[34];
  std::memset(hash, '!', sizeof hash);
  expect(generate_hash(hash) == 0 && hash[33] == '!', "an identifier takes at most 33 bytes");
  expect(random.empty() ? hash[0] == '!' : fuzz::isTerminated(hash) && std::strchr(hash, '-') == nullptr,
         "an identifier is terminated and has no hyphens");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string answer = input.text();
  const std::string other = input.text();
  const std::string name = std::string(input.text().c_str()).substr(0, 200);
  fuzz::FuzzedHost host;
  expectEncoding(host, answer, other);
  expectPackage(host, name.substr(0, kLongestPackage), answer);
  expectPort(host, name, answer);
  expectAddOn(host, answer);
  expectIdentifier(host, answer);

  host.commands.prints("/bin/ps | /bin/grep \"HDpipe 3\" | /bin/grep -v grep | /bin/awk '{print $1}'", answer);
  const int runs = vl_SourcerStreamingProcess(3, 0);
  expect(runs == 0 || runs == 1, "a process runs or not");
  const bool has_vendor = answer.find("GenuineIntel") != std::string::npos;
  host.commands.does(contract::kProcessorCommand, [&] { host.files.write("/tmp/vl_cpu.info", answer); });
  host.model("TS-K41");
  if (!has_vendor) expect(AMDmodel_oneChannelLimited() == 1, "a host of such a model without that vendor is limited");
  return 0;
}
