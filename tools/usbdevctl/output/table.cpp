// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr char kGap[] = "  ";
constexpr std::size_t kGapWidth = sizeof kGap - 1;
constexpr std::size_t kLeastWidth = 4;  // of a column that shrinks

std::string aligned(const Cell &cell, Align align, std::size_t width, bool colour) {
  const std::string fitting = cutToWidth(cell.text, width);
  const std::string padding(width - displayWidth(fitting), ' ');
  const std::string text = styled(fitting, cell.style, colour);
  return align == Align::right ? padding + text : text + padding;
}

/// Takes from the widest column that may be narrower until a line fits, or none may.
void narrow(std::vector<std::size_t> &widths, const std::vector<std::size_t> &least, std::size_t line_width) {
  std::size_t line = std::accumulate(widths.begin(), widths.end(), kGapWidth * (widths.size() - 1));
  for (; line > line_width; --line) {
    std::size_t *widest = nullptr;
    for (std::size_t column = 0; column < widths.size(); ++column) {
      if (widths[column] > least[column] && (widest == nullptr || widths[column] > *widest)) widest = &widths[column];
    }
    if (widest == nullptr) return;
    --*widest;
  }
}

void cutTrailingBlanks(std::string &line) { line.erase(line.find_last_not_of(' ') + 1); }

}  // namespace

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

void Table::addRow(std::vector<Cell> cells) {
  cells.resize(columns_.size());
  rows_.push_back(std::move(cells));
}

std::size_t Table::widthOf(std::size_t column) const {
  std::size_t width = displayWidth(columns_[column].heading);
  for (const auto &row : rows_) width = std::max(width, displayWidth(row[column].text));
  return width;
}

std::string Table::line(const std::vector<Cell> &cells, const std::vector<std::size_t> &widths, bool colour) const {
  std::string result;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (column > 0) result += kGap;
    result += aligned(cells[column], columns_[column].align, widths[column], colour);
  }
  cutTrailingBlanks(result);
  return result + '\n';
}

std::size_t Table::leastWidthOf(std::size_t column) const {
  std::size_t width = 0;
  for (const auto &row : rows_) width = std::max(width, displayWidth(row[column].text));
  // A number is never cut.
  return columns_[column].align == Align::right ? width : std::min(kLeastWidth, widthOf(column));
}

std::vector<std::size_t> Table::widthsWithin(std::size_t width) const {
  std::vector<std::size_t> widths;
  std::vector<std::size_t> under_headings;
  std::vector<std::size_t> least;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const std::size_t heading = std::max(kLeastWidth, displayWidth(columns_[column].heading));
    widths.push_back(widthOf(column));
    under_headings.push_back(columns_[column].can_shrink ? heading : widths.back());
    least.push_back(leastWidthOf(column));
  }
  narrow(widths, under_headings, width);
  narrow(widths, least, width);
  return widths;
}

std::string Table::text(bool colour, std::size_t width) const {
  const std::vector<std::size_t> widths = widthsWithin(width);
  std::vector<Cell> headings;
  for (const Column &column : columns_) headings.push_back({column.heading, Style::heading});
  std::string result = line(headings, widths, colour);
  for (const auto &row : rows_) result += line(row, widths, colour);
  return result;
}

}  // namespace usbdevctl
