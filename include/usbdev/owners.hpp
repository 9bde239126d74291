/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * Owners of what the library opens for its caller: each closes it at the end of its life, and can be moved.
 */
#ifndef USBDEV_OWNERS_HPP
#define USBDEV_OWNERS_HPP

#include <sys/shm.h>
#include <usbdev/hostinfo.h>
#include <usbdev/web.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <usbdev/values.hpp>
#include <utility>

namespace usbdev {

/** The attached segment of the time-out counters; detaches it at the end. */
class TimeoutCounters {
 public:
  /** vl_create_log_shm() and vl_attach_log_shm() */
  static Result<TimeoutCounters> attach() {
    Address address(vl_attach_log_shm(vl_create_log_shm()));
    if (!address) return Result<TimeoutCounters>::failure(-1);
    return TimeoutCounters(std::move(address));
  }

  std::span<const std::uint32_t, 4> values() const {
    return std::span<const std::uint32_t, 4>(static_cast<const std::uint32_t *>(address_.get()), 4);
  }
  /** vl_log_shm_init() */
  void clear() { vl_log_shm_init(address_.get()); }

 private:
  struct Detach {
    void operator()(void *address) const { shmdt(address); }
  };
  using Address = std::unique_ptr<void, Detach>;

  explicit TimeoutCounters(Address address) : address_(std::move(address)) {}
  Address address_;
};

/** A connection to TCP port 80 of a host; closes its socket with http_close() at the end. */
class Connection {
 public:
  /** http_open() */
  static Result<Connection> open(std::string_view host) {
    int socket = kNone;
    const int result = http_open(&socket, Argument<kNameSize>(host).get());
    if (result != 0) return Result<Connection>::failure(result);
    return Connection(socket);
  }
  /** Owns a socket that is open already. */
  explicit Connection(int socket) : socket_(socket) {}
  Connection(const Connection &) = delete;
  Connection &operator=(const Connection &) = delete;
  Connection(Connection &&other) noexcept : socket_(std::exchange(other.socket_, kNone)) {}
  /** Closes its former socket. */
  Connection &operator=(Connection &&other) noexcept {
    Connection taken(std::move(other));
    std::swap(socket_, taken.socket_);
    return *this;
  }
  ~Connection() { http_close(socket_); }

  int socket() const { return socket_; }

  /** http_send_cmd() */
  Status request(std::string_view host, std::string_view path, std::string_view user, std::string_view password) const {
    return Status(http_send_cmd(socket_, Argument<kNameSize>(host).get(), Argument<kPathSize>(path).get(),
                                Argument<kSecretSize>(user).get(), Argument<kSecretSize>(password).get()));
  }
  /** http_skip_nvr_http_header() */
  Status skipHead() const {
    const int result = http_skip_nvr_http_header(socket_);
    return Status(result == 1 ? 0 : result == 0 ? -1 : result);
  }
  /** http_read_line() */
  Result<std::string_view> readLine(std::span<char> buffer) const {
    return received(buffer, http_read_line(socket_, buffer.data(), static_cast<int>(buffer.size())));
  }
  /** socket_read(); one byte of the buffer is for the terminating zero. */
  Result<std::string_view> receive(std::span<char> buffer) const {
    if (buffer.empty()) return Result<std::string_view>::failure(-1);
    return received(buffer, socket_read(socket_, buffer.data(), static_cast<int>(buffer.size() - 1)));
  }

 private:
  static constexpr int kNone = -1;
  static constexpr std::size_t kPathSize = 2048;

  static Result<std::string_view> received(std::span<char> buffer, int count) {
    if (count < 0) return Result<std::string_view>::failure(count);
    return std::string_view(buffer.data(), static_cast<std::size_t>(count));
  }

  int socket_;
};

/** A login session at a host; logs out at the end. Of logins and logouts only one may run at a time in a process. */
class Session {
 public:
  /** nas_auth() */
  static Result<Session> logIn(const NasServer &server) {
    Session session(server);
    const int result = nas_auth(&server, session.id_.buffer());
    if (result != 0) return Result<Session>::failure(result);
    session.is_open_ = true;
    return session;
  }
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;
  Session(Session &&other) noexcept
      : server_(other.server_), id_(other.id_), is_open_(std::exchange(other.is_open_, false)) {}
  /** Ends its former session. */
  Session &operator=(Session &&other) noexcept {
    Session taken(std::move(other));
    std::swap(server_, taken.server_);
    std::swap(id_, taken.id_);
    std::swap(is_open_, taken.is_open_);
    return *this;
  }
  ~Session() {
    if (is_open_) nas_logout(&server_, id_.buffer());
  }

  std::string_view id() const { return id_.view(); }
  /** nas_sid_auth() */
  bool isValid() { return nas_sid_auth(&server_, id_.buffer()) == 0; }

 private:
  explicit Session(const NasServer &server) : server_(server) {}

  NasServer server_;
  Text<128> id_;
  bool is_open_ = false;
};

}  // namespace usbdev

#endif
