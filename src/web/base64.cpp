#include <usbdev/web.h>

#include <cstring>

namespace usbdev {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
constexpr unsigned kPad = 64;
constexpr unsigned char kOutside = 255;
constexpr int kGroup = 4;

struct DecodingTable {
  unsigned char values[256];
};

constexpr DecodingTable makeDecodingTable() {
  DecodingTable table{};
  for (unsigned char &value : table.values) value = kOutside;
  for (unsigned char i = 0; i < kPad; ++i) table.values[static_cast<unsigned char>(kAlphabet[i])] = i;
  return table;
}

constexpr DecodingTable kDecoding = makeDecodingTable();

char *encodeGroup(unsigned bits, char *out) {
  out[0] = kAlphabet[bits >> 18 & 63U];
  out[1] = kAlphabet[bits >> 12 & 63U];
  out[2] = kAlphabet[bits >> 6 & 63U];
  out[3] = kAlphabet[bits & 63U];
  return out + kGroup;
}

char *encodeRest(const unsigned char *in, int length, char *out) {
  if (length < 1) return out;
  char *const end = encodeGroup(static_cast<unsigned>(in[0]) << 16 | (length > 1 ? in[1] * 256U : 0U), out);
  end[-1] = kAlphabet[kPad];
  if (length == 1) end[-2] = kAlphabet[kPad];
  return end;
}

bool isEnd(char c) { return c == '\0' || c == '='; }

unsigned placed(char c, int position) {
  return static_cast<unsigned>(kDecoding.values[static_cast<unsigned char>(c)]) << (18 - 6 * position);
}

/// Characters outside the alphabet are not looked for: each spoils its group.
unsigned char *decodeGroup(const char *in, int held, unsigned char *out) {
  unsigned bits = 0;
  for (int i = 0; i < held; ++i) bits |= placed(in[i], i);
  for (int i = 0; i < held - 1; ++i) *out++ = static_cast<unsigned char>(bits >> (16 - 8 * i));
  return out;
}

}  // namespace
}  // namespace usbdev

int Base64enc(const unsigned char *in, int len, char *out) {
  if (out == nullptr || (in == nullptr && len > 0)) return 0;
  char *end = out;
  for (; len >= 3; len -= 3, in += 3) {
    end = usbdev::encodeGroup(static_cast<unsigned>(in[0]) << 16 | static_cast<unsigned>(in[1]) << 8 | in[2], end);
  }
  end = usbdev::encodeRest(in, len, end);
  *end = '\0';
  return static_cast<int>(end - out);
}

char *Base64encs(const char *in, char *out) {
  if (in == nullptr) return out;
  Base64enc(reinterpret_cast<const unsigned char *>(in), static_cast<int>(std::strlen(in)), out);
  return out;
}

int Base64dec(const char *in, unsigned char *out) {
  if (in == nullptr || out == nullptr) return 0;
  unsigned char *end = out;
  int held = usbdev::kGroup;
  for (; held == usbdev::kGroup; in += usbdev::kGroup) {
    held = 0;
    while (held < usbdev::kGroup && !usbdev::isEnd(in[held])) ++held;
    end = usbdev::decodeGroup(in, held, end);
  }
  *end = '\0';
  return static_cast<int>(end - out);
}

char *Base64decs(const char *in, char *out) {
  Base64dec(in, reinterpret_cast<unsigned char *>(out));
  return out;
}
