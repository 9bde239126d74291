// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/fields.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kLeastLabelWidth = 12;

std::string asWords(std::string name) {
  std::replace(name.begin(), name.end(), '_', ' ');
  return name;
}

std::string upperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  return text;
}

bool isShown(const Field &field) { return !field.heading.empty(); }

Cell orNone(const Cell &cell, const char *none) { return cell.text.empty() ? Cell{none} : cell; }

std::size_t labelWidth(const std::vector<Field> &fields) {
  std::size_t width = kLeastLabelWidth;
  for (const Field &field : fields) width = std::max(width, field.heading.size() + 2);
  return width;
}

}  // namespace

Field numberField(const std::string &name, std::optional<int> number) {
  return {asWords(name), {number ? std::to_string(*number) : ""}, Align::right, name, number};
}

Field switchField(const std::string &name, std::optional<bool> on) {
  Cell cell = on ? Cell{*on ? "on" : "off"} : Cell();
  return {asWords(name), std::move(cell), Align::left, name, on};
}

Field answerField(const std::string &name, bool yes) {
  return {asWords(name), {yes ? "yes" : "no"}, Align::left, name, yes};
}

Field textField(const std::string &name, const std::string &text) {
  return shrinking({asWords(name), {printable(text)}, Align::left, name, text});
}

Field wordField(const std::string &name, const std::string &word, Style style) {
  return {asWords(name), {word, style}, Align::left, name, word};
}

Field forPeople(const std::string &heading, Cell cell) { return {heading, std::move(cell)}; }

Field forPrograms(const std::string &member, Json value) { return {"", {}, Align::left, member, std::move(value)}; }

Field whole(Field field) {
  field.can_shrink = false;
  return field;
}

Field shrinking(Field field) {
  field.can_shrink = true;
  return field;
}

Field headed(const std::string &heading, Field field) {
  field.heading = heading;
  return field;
}

Field absentIfEmpty(Field field) {
  if (field.cell.text.empty()) field.value = Json();
  return field;
}

Fields &Fields::add(Field field) {
  fields_.push_back(std::move(field));
  return *this;
}

std::string Fields::text(bool colour) const {
  const std::size_t width = labelWidth(fields_);
  std::string text;
  for (const Field &field : fields_) {
    if (!isShown(field)) continue;
    const Cell cell = orNone(field.cell, "none");
    std::string label = field.heading;
    label.resize(width, ' ');
    text += label + styled(cell.text, cell.style, colour) + '\n';
  }
  return text;
}

Json Fields::addTo(Json object) const {
  for (const Field &field : fields_) {
    if (!field.member.empty()) object.set(field.member, field.value);
  }
  return object;
}

std::string tableText(const FieldRows &rows, bool colour, std::size_t width) {
  if (rows.empty()) return "";
  std::vector<Column> columns;
  for (const Field &field : rows.front().all()) {
    if (isShown(field)) columns.push_back({upperCase(field.heading), field.align, field.can_shrink});
  }
  Table table(columns);
  for (const Fields &row : rows) {
    std::vector<Cell> cells;
    for (const Field &field : row.all()) {
      if (isShown(field)) cells.push_back(orNone(field.cell, "-"));
    }
    table.addRow(std::move(cells));
  }
  return table.text(colour, width);
}

Json listJson(const FieldRows &rows) {
  Json list = Json::array();
  for (const Fields &row : rows) list.append(row.addTo(Json::object()));
  return list;
}

std::string recordOutput(const Fields &fields, bool json) {
  return json ? fields.addTo(Json::document()).text() : fields.text(outputTakesColour());
}

std::string listOutput(const std::string &name, const FieldRows &rows, bool json) {
  return json ? Json::document().set(name, listJson(rows)).text() : tableText(rows, outputTakesColour(), outputWidth());
}

}  // namespace usbdevctl
