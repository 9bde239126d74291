// A login by the library, and the same bytes exchanged over bare sockets in the same calls: what does the library add?
// The second that a login waits before it ends its session passes on neither side, and nobody is asked for the port.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/web.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using Request = std::vector<std::string>;

constexpr char kReply[] =
    "HTTP/1.0 200 OK\r\nContent-Type: text/xml\r\n\r\n<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<DocRoot>"
    "<authPassed><![CDATA[1]]></authPassed><authSid><![CDATA[a1b2c3d4]]></authSid></DocRoot>\n";

std::vector<Request> noted;  // what the library sent, a request for each connection
bool noting = false;
int server_port = 0;

template <typename Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

sockaddr_in loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port));
  return address;
}

/// Answers every request with the same reply.
class Service {
 public:
  Service() : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    bind(listener_, reinterpret_cast<sockaddr *>(&address), size);
    listen(listener_, 8);
    getsockname(listener_, reinterpret_cast<sockaddr *>(&address), &size);
    server_port = ntohs(address.sin_port);
    thread_ = std::thread([this] { run(); });
  }
  ~Service() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }
  Service(const Service &) = delete;
  Service &operator=(const Service &) = delete;

 private:
  void run() const {
    for (int peer = accept(listener_, nullptr, nullptr); peer >= 0; peer = accept(listener_, nullptr, nullptr)) {
      std::string request;
      char part[512];
      while (request.find("\r\n\r\n") == std::string::npos) {
        const ssize_t got = recv(peer, part, sizeof part, 0);
        if (got <= 0) break;
        request.append(part, static_cast<std::size_t>(got));
      }
      static_cast<void>(write(peer, kReply, sizeof kReply - 1) == 0);  // the peer reads, or the login fails
      close(peer);
    }
  }

  int listener_;
  std::thread thread_;
};

/// The library tells of each login on standard output, which belongs to the figures.
class Silence {
 public:
  Silence() : output_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
  }
  ~Silence() {
    std::fflush(stdout);
    dup2(output_, STDOUT_FILENO);
    close(output_);
  }
  Silence(const Silence &) = delete;
  Silence &operator=(const Silence &) = delete;

 private:
  int output_;
};

bool logIn() { return vl_auth("admin", "password") == 0; }

void exchangeBarely() {
  for (const Request &request : noted) {
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(server_port);
    connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    for (const std::string &line : request) send(connection, line.data(), line.size(), MSG_NOSIGNAL);
    char byte = 0;
    while (read(connection, &byte, 1) == 1) benchmark::DoNotOptimize(byte);
    close(connection);
  }
}

template <typename Step>
double seconds(Step step) {
  const auto start = std::chrono::steady_clock::now();
  step();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void login(benchmark::State &state) {
  const Silence silence;
  const Service service;
  noting = true;
  const bool accepted = logIn();
  noting = false;
  if (!accepted || noted.size() != 2) {
    state.SkipWithError("the login was not accepted");
    return;
  }
  std::vector<double> library;
  std::vector<double> bare;
  for (auto _ : state) {
    library.push_back(seconds(logIn));
    bare.push_back(seconds(exchangeBarely));
    state.SetIterationTime(library.back());
  }
  state.counters["library_us"] = 1e6 * median(library);
  state.counters["bare_us"] = 1e6 * median(bare);
  state.counters["ratio"] = median(library) / median(bare);
}
BENCHMARK(login)->UseManualTime()->Iterations(3000)->Unit(benchmark::kMicrosecond);

}  // namespace

extern "C" {

ssize_t send(int descriptor, const void *bytes, size_t size, int flags) {
  static auto *const actual = real<ssize_t(int, const void *, size_t, int)>("send");
  if (noting) {
    std::string line(static_cast<const char *>(bytes), size);
    if (line.compare(0, 4, "GET ") == 0) noted.emplace_back();
    noted.back().push_back(std::move(line));
  }
  return actual(descriptor, bytes, size, flags);
}

std::FILE *popen(const char *, const char *) {
  static char port[8];
  std::snprintf(port, sizeof port, "%d\n", server_port);
  return fmemopen(port, std::strlen(port), "r");
}

int pclose(std::FILE *stream) { return std::fclose(stream); }

unsigned sleep(unsigned) { return 0; }
}
