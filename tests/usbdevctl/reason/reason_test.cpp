// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "reason/reason.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using usbdevctl::anyHinders;
using usbdevctl::Cause;
using usbdevctl::Reason;
using usbdevctl::reasonFor;
using usbdevctl::reasonJson;
using usbdevctl::sentences;

TEST(AReason, HasTheValuesInItsWords) {
  const Reason reason = reasonFor(Cause::unplugged, {{"channel", "ch4"}, {"port", "3-1"}});
  EXPECT_EQ(reason.why, "it is not attached");
  EXPECT_EQ(reason.remedy, "plug it into port 3-1 again, or 'usbdevctl forget ch4' frees the channel");
}

TEST(AReason, KeepsBracesThatAValueHas) {
  const Reason reason = reasonFor(Cause::failing, {{"failure", "{port} {"}, {"port", "3-1"}});
  EXPECT_EQ(reason.why, "its stream failed: {port} {");
}

TEST(AReason, IsTwoSentences) {
  EXPECT_EQ(sentences(reasonFor(Cause::switched_off, {{"channel", "ch2"}})),
            "Its port is switched off. 'usbdevctl slot on ch2' switches it on.");
}

TEST(AReason, IsForProgramsItsNameAndTheSameWords) {
  const Reason reason = reasonFor(Cause::busy, {{"programs", "motion"}});
  EXPECT_EQ(reasonJson(reason).line(),
            R"({"reason":"busy","why":"another program uses it: motion","remedy":"end that program",)"
            R"("text":"Another program uses it: motion. End that program.","hinders":true,"other_channel":null,)"
            R"("collision":null,"cause":"busy","values":{"programs":"motion"}})"
            "\n");
}

TEST(AReason, ThatIsANoticeDoesNotHinder) {
  EXPECT_FALSE(anyHinders({reasonFor(Cause::twins, {{"other", "3-2"}})}));
  EXPECT_TRUE(anyHinders({reasonFor(Cause::twins), reasonFor(Cause::no_channel)}));
}

}  // namespace
