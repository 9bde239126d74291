// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "scenario.h"

#include <sys/socket.h>
#include <unistd.h>

namespace calls {

World::World() {
  host.clock.stopAt("2024-03-05 10:00:00");
  host.chance.random = 4711;
}

World::~World() {
  if (sock >= 0) close(sock);
  if (peer_ >= 0) close(peer_);
}

void World::serve(int port, const std::vector<std::string> &replies) {
  std::vector<contract::Answer> script;
  // Replies come unasked, so that a request of which a part is missing keeps nobody waiting.
  for (const std::string &reply : replies) script.push_back({reply, contract::Answer::End::close, ""});
  server_.emplace(script);
  host.network.serve(port, server_->port());
}

void World::connection(const std::string &received) {
  int ends[2] = {-1, -1};
  EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  sock = ends[0];
  peer_ = ends[1];
  EXPECT_EQ(write(peer_, received.data(), received.size()), static_cast<ssize_t>(received.size()));
  shutdown(peer_, SHUT_WR);
}

char *Outputs::text(const std::string &content) {
  std::array<char, 256> bytes;
  bytes.fill('Z');
  if (!content.empty()) memcpy(bytes.data(), content.c_str(), content.size() + 1);
  return record(bytes).data();
}

std::string Outputs::now() const {
  std::string all;
  for (const std::vector<char> &record : kept_) all.append(record.data(), record.size());
  return all;
}

Scenarios operator+(Scenarios all, const Scenarios &more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

}  // namespace calls
