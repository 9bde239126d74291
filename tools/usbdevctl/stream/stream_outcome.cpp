// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_outcome.h"

#include "events/event_text.h"
#include "output/printable.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

std::string chosenRate(float chosen, const std::optional<float> &asked) {
  const std::string rate = rateText(chosen);
  return !asked || *asked == chosen ? rate : rate + " (" + rateText(*asked) + " was asked for)";
}

Json eventList(const std::vector<Event> &events) {
  Json list = Json::array();
  for (const Event &event : events) list.append(addEvent(Json::object(), event));
  return list;
}

Json textList(const std::vector<std::string> &texts) {
  Json list = Json::array();
  for (const std::string &text : texts) list.append(text);
  return list;
}

}  // namespace

Fields outcomeFields(const StreamOutcome &outcome, const StreamChange &change) {
  Fields fields;
  fields.add(forPeople("fps", {chosenRate(outcome.stored.framerate, change.rate)}))
      .add(forPrograms("fps", rateJson(outcome.stored.framerate)))
      .add(forPrograms("asked_fps", change.rate ? rateJson(*change.rate) : Json()));
  for (const Event &event : outcome.events) fields.add(forPeople("logged", {printable(event.text)}));
  if (outcome.events.empty()) fields.add(forPeople("logged", {}));
  return fields.add(forPrograms("events", eventList(outcome.events)))
      .add(forPrograms("not_stored", textList(notStored(outcome.stored, change))));
}

}  // namespace usbdevctl
