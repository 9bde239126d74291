#include "output/table.h"

#include <algorithm>
#include <utility>

#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr char kGap[] = "  ";

std::string aligned(const Cell &cell, Align align, std::size_t width, bool colour) {
  const std::string padding(width - displayWidth(cell.text), ' ');
  const std::string text = styled(cell.text, cell.style, colour);
  return align == Align::right ? padding + text : text + padding;
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

std::string Table::text(bool colour) const {
  std::vector<std::size_t> widths;
  std::vector<Cell> headings;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    widths.push_back(widthOf(column));
    headings.push_back({columns_[column].heading, Style::heading});
  }
  std::string result = line(headings, widths, colour);
  for (const auto &row : rows_) result += line(row, widths, colour);
  return result;
}

}  // namespace usbdevctl
