// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The credentials of a request to a camera's or a recorder's web service.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

std::string authorization(const std::string &user, const std::string &password) {
  std::string out(256, '#');
  EXPECT_EQ(getNVR_AUTH(user.c_str(), password.c_str(), out.data()), 0);
  return out[0] == '#' ? "(untouched)" : out.c_str();
}

TEST(AnAuthorization, IsTheEncodingOfUserAndPassword) {
  EXPECT_EQ(authorization("Aladdin", "open sesame"), "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
  EXPECT_EQ(authorization("", ""), "Basic Og==");
}

TEST(AnAuthorization, OfTheLongestCredentialsIsComplete) {
  const std::string text = authorization(std::string(64, '\xff'), std::string(64, 'p'));
  EXPECT_EQ(text.size(), 6U + 172U);
  char decoded[132] = "";
  EXPECT_EQ(Base64decs(text.c_str() + 6, decoded), std::string(64, '\xff') + ":" + std::string(64, 'p'));
}

TEST(AnAuthorization, OfNothingIsNotMade) {
  char out[] = "before";
  EXPECT_EQ(getNVR_AUTH(nullptr, "p", out), 0);
  EXPECT_EQ(getNVR_AUTH("u", nullptr, out), 0);
  EXPECT_EQ(getNVR_AUTH("u", "p", nullptr), 0);
  EXPECT_STREQ(out, "before");
}

TEST(AnAuthorization, IsMadeOfAnyCredentialsOf129BytesTogether) {
  EXPECT_EQ(authorization(std::string(128, 'u'), "").size(), 6U + 172U);
  EXPECT_EQ(authorization("", std::string(128, 'p')).size(), 6U + 172U);
  EXPECT_EQ(authorization(std::string(100, 'u'), std::string(28, 'p')).size(), 6U + 172U);
}

TEST(AnAuthorization, OfMoreThan129BytesTogetherIsNotMade) {
  EXPECT_EQ(authorization(std::string(129, 'u'), ""), "(untouched)");
  EXPECT_EQ(authorization("", std::string(129, 'p')), "(untouched)");
  EXPECT_EQ(authorization(std::string(100, 'u'), std::string(29, 'p')), "(untouched)");
}

}  // namespace
}  // namespace contract
