// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A table for people: one heading line, then one line a row, columns two blanks apart.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "output/output.h"

namespace usbdevctl {

enum class Align { left, right };

struct Column {
  std::string heading;
  Align align = Align::left;
  bool can_shrink = false;
};

/// A cell's text is already printable.
struct Cell {
  std::string text;
  Style style = Style::plain;
};

class Table {
 public:
  explicit Table(std::vector<Column> columns);

  /// Cells that a row lacks are empty.
  void addRow(std::vector<Cell> cells);

  /// Where a line would be longer than the width, the columns that can shrink do, the widest first, down to their
  /// headings; where that is not enough, all columns but those of numbers do, and headings are cut too.
  std::string text(bool colour, std::size_t width = kEndless) const;

 private:
  std::size_t widthOf(std::size_t column) const;
  std::size_t leastWidthOf(std::size_t column) const;
  std::vector<std::size_t> widthsWithin(std::size_t width) const;
  std::string line(const std::vector<Cell> &cells, const std::vector<std::size_t> &widths, bool colour) const;

  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace usbdevctl
