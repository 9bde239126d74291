// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settled_host.h"

#include "calls.h"
#include "encoding_host.h"
#include "output_capture.h"
#include "stream_links.h"

// Each process that attaches the counters sees them at an address of its own; here each thread does.
extern "C" {
int shmget(key_t, size_t, int) noexcept { return 1; }
void *shmat(int, const void *, int) noexcept {
  thread_local unsigned counters[4];
  return counters;
}
int shmdt(const void *) noexcept { return 0; }
}

namespace torture {

namespace {

constexpr int kSettledCameras = 4;
constexpr char kReply[] =
    "HTTP/1.0 200 OK\r\n\r\n<authSid><![CDATA[a1b2]]></authSid><authPassed><![CDATA[1]]></authPassed>";

}  // namespace

std::string portOf(int channel) { return std::to_string(channel + 1) + "-1"; }
int nodeOf(int channel) { return channel + 1; }

ASettledHost::ASettledHost() : services_({contract::Answer{kReply}}, contract::ScriptedServer::Repeats::for_ever) {
  host.clock.stopAt("2024-03-05 08:15:00");
  host.chance.random = 4711;
  for (const int port : {80, 8080, 58080, 10170}) host.network.serve(port, services_.port());
  describeCameras();
  describeTools();
  describeShareLinks();
  // Otherwise the first call would be the only one with something to do, and the next function would undo it.
  for (const char *key : {"ch3/profile", "ch3/createtime"}) host.config.refuseWritesOf(key);  // profile 3 is assigned
  for (const char *key : {"ch2/profile", "ch2/hlspath"}) host.config.refuseWritesOf(key);     // profile 2 is cleared
  host.config.refuseWritesOf("ch0/profilename");                                              // profile 0 is renamed
  const contract::OutputCapture output(stdout);
  for (int times = 0; times < 2; ++times) {
    for (const Call &call : allCalls()) call.run();
  }
}

void ASettledHost::describeCameras() {
  for (int i = 0; i < kSettledCameras; ++i) {
    camera(portOf(i), nodeOf(i), kName);
    host.camera(nodeOf(i), portOf(i)).ids("046d", "0825");
    host.channel(i).attached(portOf(i), nodeOf(i)).name(kName).streaming(i < 3 ? i : -1);
    host.channel(i).createTime("2024-03-05 08:15:00").set("video/cap", "1").set("video/width", 640);
  }
  card(portOf(1), 1, kName);
  host.channel(1).anode(1).set("audio/acap", "1").set("audio/volume", 80);
}

void ASettledHost::describeTools() {
  contract::allowEncoding(host);
  host.package("Halvane", "Enable", "FALSE");
  host.commands.prints(contract::kUuidCommand, contract::kUuid);
  host.files.write("/etc/config/Tundrel.conf",
                   "Internal Model = TS-873\nVersion = 5.1\nWeb Access Port = 8080\n[NTP]\n");
  host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n");
  host.files.write("/etc/config/.usbnosupportlist.dat", "Some other camera\n");
  host.network.nameHost("nas.local");
}

void ASettledHost::describeShareLinks() {
  for (int i = 0; i < 3; ++i) {
    host.channel(i)
        .set("sharelink/shrenable", 1)
        .set("sharelink/ssid", i == 0 ? kShareId : std::string("0000000") + std::to_string(i))
        .set("sharelink/token", kToken)
        .set("sharelink/shrpwd", kPassword)
        .set("sharelink/hash_string", "shared" + std::to_string(i))
        .set("hlspath", "live" + std::to_string(i));
    for (const char *kind : {"shared", "live"}) {
      host.files.link(contract::kLinkFolder + kind + std::to_string(i), contract::kLinkFolder + "hls/channel1");
    }
  }
}

void ASettledHost::TearDown() {
  for (const std::string &command : host.commands.leftOpen()) {
    if (command.find("\\:1.") != std::string::npos) allowLeftOpen(command);  // the node readers leave theirs open
  }
  AStart::TearDown();
}

}  // namespace torture
