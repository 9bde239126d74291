// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Connections: the HTTP client and its helpers, encodings, logins.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

constexpr char kPortCommand[] = "/sbin/readcfg System InnerWebAccessPort -d 58080";
constexpr char kSession[] = "<authSid><![CDATA[a1]]></authSid>";
constexpr char kPassed[] = "<authPassed><![CDATA[1]]>";
constexpr char kHead[] = "HTTP/1.0 200 OK\nA: b\n\n\n";

NasServer server() {
  NasServer record = contract::zeroed<NasServer>();
  strcpy(record.host, "127.0.0.1");
  record.port = 8080;
  strcpy(record.user, "admin");
  strcpy(record.password, "secret");
  return record;
}

Scenarios client() {
  return {
      {"connect_host", "a byte at a time, with credentials", [](World &w) { w.serve(8080, {"reply"}); },
       [](World &, Outputs &out) {
         const NasServer record = server();
         return connect_host(&record, out.text(), 256, 1, 1);
       }},
      {"connect_host", "a reply that is cut", [](World &w) { w.serve(8080, {"a longer reply"}); },
       [](World &, Outputs &out) {
         const NasServer record = server();
         return connect_host(&record, out.text(), 8, 64, 0);
       }},
      {"getNVR_AUTH", "", emptyHost, [](World &, Outputs &out) { return getNVR_AUTH("a", "b", out.text()); }},
      {"get_next_line", "", emptyHost, [](World &, Outputs &out) { return get_next_line("ab\nc", out.text()); }},
  };
}

Scenarios helpers() {
  return {
      {"socket_read", "", [](World &w) { w.connection("abc"); },
       [](World &w, Outputs &out) { return socket_read(w.sock, out.text(), 3); }},
      {"socket_write", "", [](World &w) { w.connection(""); },
       [](World &w, Outputs &) { return socket_write(w.sock, "abc"); }},
      {"http_open", "", [](World &w) { w.serve(80, {""}); },
       [](World &w, Outputs &) {
         const int result = http_open(&w.sock, "127.0.0.1");
         if (result == 0) w.host.network.closed(w.sock);  // it is the caller's
         return result;
       }},
      {"http_read_line", "", [](World &w) { w.connection("abc\n"); },
       [](World &w, Outputs &out) { return http_read_line(w.sock, out.text(), 16); }},
      {"http_skip_nvr_http_header", "", [](World &w) { w.connection(kHead); },
       [](World &w, Outputs &) { return http_skip_nvr_http_header(w.sock); }, 0},
      {"http_send_cmd", "", [](World &w) { w.connection(""); },
       [](World &w, Outputs &) { return http_send_cmd(w.sock, "127.0.0.1", "/", "admin", "secret"); }},
      {"http_close", "", [](World &w) { w.connection(""); },
       [](World &w, Outputs &) {
         const int result = http_close(w.sock);
         w.sock = -1;
         return result;
       }},
      {"vl_StreamNotify", "", [](World &w) { w.serve(10170, {""}); },
       [](World &, Outputs &) { return vl_StreamNotify("0123456789abcdef0123456789abcdef"); }},
  };
}

Scenarios encodings() {
  const auto bytes = [](char *text) { return reinterpret_cast<unsigned char *>(text); };
  return {
      {"Base64enc", "", emptyHost,
       [bytes](World &, Outputs &out) { return Base64enc(bytes(out.text("ab")), 2, out.text()); }},
      {"Base64encs", "", emptyHost,
       [](World &, Outputs &out) { return Base64encs("ab", out.text()) == nullptr ? -1 : 0; }},
      {"Base64dec", "", emptyHost, [bytes](World &, Outputs &out) { return Base64dec("YWI=", bytes(out.text())); }},
      {"Base64decs", "", emptyHost,
       [](World &, Outputs &out) { return Base64decs("YWI=", out.text()) == nullptr ? -1 : 0; }},
      {"url_encode", "", emptyHost, [](World &, Outputs &out) { return url_encode(out.text(), "/a?b c", 6); }},
  };
}

Scenarios sessions() {
  return {
      {"nas_auth", "", [](World &w) { w.serve(8080, {kSession}); },
       [](World &, Outputs &out) {
         const NasServer record = server();
         return nas_auth(&record, out.text());
       }},
      {"nas_logout", "", [](World &w) { w.serve(8080, {"bye"}); },
       [](World &, Outputs &) {
         const NasServer record = server();
         return nas_logout(&record, "a1");
       }},
      {"nas_sid_auth", "", [](World &w) { w.serve(8080, {kPassed}); },
       [](World &, Outputs &) {
         const NasServer record = server();
         return nas_sid_auth(&record, "a1");
       }},
      {"write_sid", "", emptyHost, [](World &, Outputs &out) { return write_sid(kSession, out.text()); }},
      {"vl_auth", "",
       [](World &w) {
         w.serve(8080, {kSession, "bye"});
         w.host.commands.prints(kPortCommand, "8080\n");
       },
       [](World &, Outputs &) { return vl_auth("admin", "secret"); }},
      {"vl_sid_auth", "",
       [](World &w) {
         w.serve(8080, {kPassed});
         w.host.commands.prints(kPortCommand, "8080\n");
       },
       [](World &, Outputs &) { return vl_sid_auth("a1"); }},
  };
}

}  // namespace

Scenarios connectionScenarios() { return client() + helpers() + encodings() + sessions(); }

}  // namespace calls
