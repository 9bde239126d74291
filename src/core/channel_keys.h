// Every key of a channel in the configuration file: its path, what a missing key usually reads as, and the size that
// its text is read into. A reader whose default or size differs on purpose names it at the call.
#pragma once

namespace usbdev {

constexpr int kChannels = 10;
constexpr int kProfiles = 4;
constexpr int kNone = -1;          // no profile, no node, no conflict
constexpr int kUnsupported = 999;  // conflict mark of a device that cannot be used

/// Any other stored code is kept.
enum class Codec : int {
  h264 = 0,   // the camera's raw picture, encoded by the host
  mjpeg = 1,  // the camera's own
};

struct IntKey {
  const char *key;
  const char *sub_key;
  int usual_default;
};

struct CodecKey : IntKey {};

/// A text key: its path and how it is read.
struct TextPath {
  const char *key;
  const char *sub_key;
  const char *usual_default;
  int size;  // of the buffer that it is read into
};

/// A text key whose size the compiler knows.
template <int Size>
struct TextKey : TextPath {
  constexpr TextKey(const char *name, const char *sub_name, const char *otherwise = "")
      : TextPath{name, sub_name, otherwise, Size} {}

  /// The same key, read into a smaller buffer.
  template <int Smaller>
  constexpr TextKey<Smaller> cutTo() const {
    static_assert(Smaller < Size);
    return {key, sub_key, usual_default};
  }
};

// A key is named as in the file.
// NOLINTBEGIN(readability-identifier-naming)
namespace keys {

inline constexpr IntKey exists{"exists", nullptr, 0};
inline constexpr IntKey profile{"profile", nullptr, kNone};
inline constexpr TextKey<128> usbslot{"usbslot", nullptr};
inline constexpr TextKey<256> devname{"devname", nullptr};
inline constexpr IntKey slot_switch{"slot_switch", nullptr, -1};
inline constexpr IntKey conflictch{"conflictch", nullptr, kNone};
inline constexpr TextKey<128> createtime{"createtime", nullptr};
inline constexpr TextKey<256> profilename{"profilename", nullptr};
inline constexpr TextKey<64> hlspath{"hlspath", nullptr};
inline constexpr TextKey<16> vtag{"vtag", nullptr};

inline constexpr IntKey vnode{"video", "vnode", kNone};
inline constexpr IntKey venable{"video", "venable", 0};
inline constexpr CodecKey vcodec{{"video", "vcodec", static_cast<int>(Codec::mjpeg)}};
inline constexpr TextKey<16> cap{"video", "cap"};
inline constexpr TextKey<16> fetype{"video", "fetype"};
inline constexpr IntKey width{"video", "width", 1280};
inline constexpr IntKey height{"video", "height", 720};
inline constexpr TextKey<16> framerate{"video", "framerate", "30.00"};
inline constexpr IntKey osdenable{"video", "osdenable", 1};
inline constexpr IntKey flip{"video", "flip", 0};
inline constexpr IntKey mirror{"video", "mirror", 0};
inline constexpr IntKey spsstate{"video", "spsstate", 0};
inline constexpr IntKey ldspoutput{"video", "ldspoutput", 0};

inline constexpr IntKey anode{"audio", "anode", kNone};
inline constexpr TextKey<16> acap{"audio", "acap"};
inline constexpr IntKey aenable{"audio", "aenable", 1};
inline constexpr IntKey acodec{"audio", "acodec", 0};
inline constexpr IntKey samplerate{"audio", "samplerate", 8000};
inline constexpr IntKey channelno{"audio", "channelno", 1};
inline constexpr IntKey bitrate{"audio", "bitrate", 64000};
inline constexpr IntKey volume{"audio", "volume", 50};

inline constexpr IntKey shrenable{"sharelink", "shrenable", 0};
inline constexpr IntKey pwdenable{"sharelink", "pwdenable", 0};
inline constexpr TextKey<32> shrpwd{"sharelink", "shrpwd"};
inline constexpr TextKey<48> ssid{"sharelink", "ssid"};
inline constexpr TextKey<64> token{"sharelink", "token"};
inline constexpr TextKey<64> hash_string{"sharelink", "hash_string"};

}  // namespace keys
// NOLINTEND(readability-identifier-naming)
}  // namespace usbdev
