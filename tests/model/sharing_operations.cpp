// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Streams are shared by link, and viewers come with what they were given.
#include <usbdev/usbdev.h>

#include "operations.h"
#include "record_text.h"
#include "text.h"

namespace model {

namespace {

ShareLinkInfo linkOf(int profile) {
  ShareLinkInfo info = contract::zeroed<ShareLinkInfo>();
  info.profile = profile;
  return info;
}

void share(TwinWorlds &worlds, Choices &choose) {
  ShareLinkInfo library = linkOf(choose.profile());
  library.shrenable = choose.rarely(3) ? 0 : 1;
  library.pwdenable = choose.below(2);
  copy(library.shrpwd, choose.of<std::string>({"", "secret", "other", std::string(31, 'p')}));
  ShareLinkInfo model = library;
  worlds.call("vl_set_share_link", library.profile, library.shrenable, library.pwdenable, library.shrpwd);
  worlds.returned(vl_set_share_link(&library), worlds.world.vl_set_share_link(&model));
  worlds.wroteRecord(library, model);
}

// Both find a profile's link and write all of it.
template <typename InLibrary, typename InModel>
void callWithLink(TwinWorlds &worlds, int profile, const char *name, InLibrary in_library, InModel in_model) {
  ShareLinkInfo library = linkOf(profile);
  ShareLinkInfo model = library;
  worlds.call(name, profile);
  worlds.returned(in_library(&library), (worlds.world.*in_model)(&model));
  worlds.wroteRecord(library, model);
}

void read(TwinWorlds &worlds, Choices &choose) {
  callWithLink(worlds, choose.profile(), "vl_get_share_link", vl_get_share_link, &World::vl_get_share_link);
}

void renew(TwinWorlds &worlds, Choices &choose) {
  callWithLink(worlds, choose.profile(), "vl_renew_share_link", vl_renew_share_link, &World::vl_renew_share_link);
}

void remove(TwinWorlds &worlds, Choices &choose) {
  const std::string section = "ch" + std::to_string(choose.below(11));
  worlds.call("remove_hash_link", section);
  worlds.returned(remove_hash_link(section.c_str()), worlds.world.remove_hash_link(section.c_str()));
}

// The id and the token of a channel's link, or one that nobody was given.
void visit(TwinWorlds &worlds, Choices &choose) {
  const Channel &channel = worlds.world.channels[choose.channel()];
  const std::string ssid = choose.rarely(8) ? "87654321" : channel.text("sharelink/ssid");
  const std::string token = choose.rarely(8) ? "wrong" : channel.text("sharelink/token");
  int library[2] = {77, 77};
  int model[2] = {77, 77};
  worlds.call("vl_ssid_auth", ssid, token);
  worlds.returned(vl_ssid_auth(ssid.c_str(), token.c_str(), &library[0], &library[1]),
                  worlds.world.vl_ssid_auth(ssid.c_str(), token.c_str(), &model[0], &model[1]));
  worlds.wroteRecord(library, model);
  worlds.call("vl_check_share_link_ssid", ssid);
  worlds.returned(vl_check_share_link_ssid(ssid.c_str()), worlds.world.vl_check_share_link_ssid(ssid.c_str()));
}

void view(TwinWorlds &worlds, Choices &choose) {
  const int profile = choose.profile();
  int library = 77;
  int model = 77;
  worlds.call("vl_validate_chliveview", profile);
  worlds.returned(vl_validate_chliveview(profile, &library), worlds.world.vl_validate_chliveview(profile, &model));
  worlds.wroteRecord(library, model);
}

}  // namespace

const std::vector<Happening> &sharingHappenings() {
  static const std::vector<Happening> all = {{8, share}, {3, read}, {4, renew}, {2, remove}, {6, visit}, {3, view}};
  return all;
}

}  // namespace model
