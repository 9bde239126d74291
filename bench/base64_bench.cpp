// Base64 of one kilobyte, by the library and by OpenSSL.
#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <usbdev/web.h>

#include <cstring>

namespace {

constexpr int kBytes = 1024;
constexpr int kCharacters = 1368;

struct Kilobyte {
  Kilobyte() {
    for (int i = 0; i < kBytes; ++i) bytes[i] = static_cast<unsigned char>(i * 167 + i / 256);
    EVP_EncodeBlock(text, bytes, kBytes);
  }

  unsigned char bytes[kBytes] = {};
  unsigned char text[kCharacters + 1] = {};
};

const Kilobyte kilobyte;
unsigned char out[kCharacters + 1];

void encode(benchmark::State &state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(Base64enc(kilobyte.bytes, kBytes, reinterpret_cast<char *>(out)));
    benchmark::ClobberMemory();
  }
  if (std::memcmp(out, kilobyte.text, sizeof out) != 0) state.SkipWithError("encoded wrongly");
}
BENCHMARK(encode);

void encodeByOpenssl(benchmark::State &state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(EVP_EncodeBlock(out, kilobyte.bytes, kBytes));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(encodeByOpenssl);

void decode(benchmark::State &state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(Base64dec(reinterpret_cast<const char *>(kilobyte.text), out));
    benchmark::ClobberMemory();
  }
  if (std::memcmp(out, kilobyte.bytes, kBytes) != 0) state.SkipWithError("decoded wrongly");
}
BENCHMARK(decode);

void decodeByOpenssl(benchmark::State &state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(EVP_DecodeBlock(out, kilobyte.text, kCharacters));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(decodeByOpenssl);

}  // namespace
