// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A record for people and for programs from one description: lines or the columns of a table, and the members of an
// object in JSON.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "output/json.h"
#include "output/table.h"

namespace usbdevctl {

struct Field {
  std::string heading;  // none: the field is for programs only
  Cell cell;            // without a text there is no value
  Align align = Align::left;
  std::string member = {};  // none: the field is for people only
  Json value = {};
  bool can_shrink = false;  // in a table that is too wide
};

// For people the name's underscores are blanks.
Field numberField(const std::string &name, std::optional<int> number);
Field switchField(const std::string &name, std::optional<bool> on);
Field answerField(const std::string &name, bool yes);
/// A text from a device, which may hold anything. It shrinks in a table that is too wide.
Field textField(const std::string &name, const std::string &text);
/// One of the program's own words.
Field wordField(const std::string &name, const std::string &word, Style style = Style::plain);

Field forPeople(const std::string &heading, Cell cell);
Field forPrograms(const std::string &member, Json value);

/// The field, as one that is not cut in a table, or is.
Field whole(Field field);
Field shrinking(Field field);

/// The field, under another heading.
Field headed(const std::string &heading, Field field);

/// The field, for programs as null where its text is empty.
Field absentIfEmpty(Field field);

class Fields {
 public:
  Fields &add(Field field);
  const std::vector<Field> &all() const { return fields_; }

  /// A line a field.
  std::string text(bool colour) const;

  /// The object with the fields as its next members.
  Json addTo(Json object) const;

 private:
  std::vector<Field> fields_;
};

using FieldRows = std::vector<Fields>;

/// Rows with the same fields, under their headings; nothing for no rows.
std::string tableText(const FieldRows &rows, bool colour, std::size_t width = kEndless);

/// An object a row.
Json listJson(const FieldRows &rows);

/// What a command prints that shows one record.
std::string recordOutput(const Fields &fields, bool json);

/// What a command prints that shows a list; in JSON under the name.
std::string listOutput(const std::string &name, const FieldRows &rows, bool json);

}  // namespace usbdevctl
