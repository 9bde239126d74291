/*
 * Values as they stand in the file: ordinary text as itself, and what XML cannot carry or readers trim (control
 * characters, line ends, bytes that are not UTF-8, blanks at either end) as \xHH, so that every value comes back byte
 * for byte. A backslash is written \x5c; a backslash without x and two digits behind it is read as itself.
 */
#ifndef HOST_LIB_VLXMLCFG_READABLE_TEXT_H
#define HOST_LIB_VLXMLCFG_READABLE_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace xmlcfg {

/* A caller's buffer, filled as far as it goes; the length is that of the whole text. */
struct BoundedText {
  char *buffer;
  std::size_t size;
  std::size_t length = 0;

  BoundedText(char *to_fill, std::size_t room) : buffer(to_fill), size(room) {}

  void append(char byte) {
    if (length < size) buffer[length] = byte;
    ++length;
  }
};

std::string to_readable(std::string_view value);

/* Appends the value that the text stands for. Takes no memory: a value can always be read. */
void append_from_readable(std::string_view text, BoundedText &value);

}  // namespace xmlcfg

#endif
