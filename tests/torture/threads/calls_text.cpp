// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/usbdev.h>

#include <cstring>

#include "calls.h"

namespace torture {

namespace {

const unsigned char *bytesOf(const char *text) { return reinterpret_cast<const unsigned char *>(text); }

}  // namespace

Calls textCalls() {
  return {
      {"trim",
       [] {
         char text[] = " \"a b\" \n";
         return std::string(trim(text));
       }},
      {"trimdatetime",
       [] {
         char text[] = "08:15:00";
         return std::string(trimdatetime(text, ":"));
       }},
      {"get_two_params",
       [] {
         char line[16] = "a = b";
         char left[16] = "";
         char right[16] = "";
         return seen(get_two_params(line, "=", left, right), left, right);
       }},
      {"process_json_string",
       [] {
         char text[64] = "\"a\\b\"";
         return seen(process_json_string(text, sizeof text), text);
       }},
      {"Base64enc",
       [] {
         char out[64] = "";
         return seen(Base64enc(bytesOf("open sesame"), 11, out), out);
       }},
      {"Base64encs",
       [] {
         char out[64] = "";
         return std::string(Base64encs("open sesame", out));
       }},
      {"Base64dec",
       [] {
         unsigned char out[64] = "";
         return seen(Base64dec("b3BlbiBzZXNhbWU=", out), out);
       }},
      {"Base64decs",
       [] {
         char out[64] = "";
         return std::string(Base64decs("b3BlbiBzZXNhbWU=", out));
       }},
      {"url_encode",
       [] {
         char out[64] = "";
         return seen(url_encode(out, "/a?b c/~", 8), out);
       }},
      {"get_next_line",
       [] {
         char out[64] = "";
         return seen(get_next_line("first\nsecond\n", out), out);
       }},
      {"getNVR_AUTH",
       [] {
         char out[256] = "";
         return seen(getNVR_AUTH("admin", "secret", out), out);
       }},
      {"write_sid",
       [] {
         char sid[128] = "";
         return seen(write_sid("<authSid><![CDATA[a1b2]]></authSid>", sid), sid);
       }},
      {"strip",
       [] {
         char in[64] = "1b4e28ba-2fa1 \n";
         char out[64] = "";
         return seen(strip(in, out), in, out);
       }},
      {"isElderPf", [] { return seen(isElderPf("2024-03-05 08:15:00", "2024-03-05 08:14:59")); }},
  };
}

}  // namespace torture
