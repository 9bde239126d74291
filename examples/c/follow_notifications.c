/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/*
 * Prints the change notifications of the library, as the manager receives them: follow_notifications [COUNT]
 * With COUNT, it ends after so many. Only one program on a host can listen.
 */
#include <arpa/inet.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

#include "number.h"

struct notification {
  char magic[16];
  char header[16];
  int32_t profile, video_node, audio_node, flag, event, target;
};

/* Returns a socket, or -1. */
static int listenAsManager(void) {
  const struct sockaddr_in address = {
      .sin_family = AF_INET, .sin_port = htons(10171), .sin_addr.s_addr = htonl(INADDR_LOOPBACK)};
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (sock >= 0 && bind(sock, (const struct sockaddr *)&address, sizeof address) == 0) return sock;
  perror("follow_notifications");
  if (sock >= 0) close(sock);
  return -1;
}

/* Waits for a notification, and drops whatever else arrives; returns 0 if nothing can be received. */
static int receive(int sock, struct notification *received) {
  char datagram[sizeof *received + 1]; /* the byte too many shows a longer one */
  ssize_t size = 0;
  while ((size = recv(sock, datagram, sizeof datagram, 0)) >= 0) {
    if (size != (ssize_t)sizeof *received) continue;
    memcpy(received, datagram, sizeof *received);
    if (memcmp(received->magic, "ORDA_VLM2_CFCG_N", sizeof received->magic) == 0) return 1;
  }
  perror("follow_notifications");
  return 0;
}

/* Prints so many notifications, or all of them for -1; returns the exit status. */
static int follow(int sock, int count) {
  struct notification it;
  printf("listening\n");
  fflush(stdout);
  for (int left = count; left != 0; left -= left > 0 ? 1 : 0) {
    if (!receive(sock, &it)) return 1;
    printf("event %d  profile %d  video %d  audio %d\n", it.event, it.profile, it.video_node, it.audio_node);
    fflush(stdout);
  }
  return 0;
}

int main(int argc, char **argv) {
  int count = -1;
  if (argc > 2 || (argc == 2 && !readNumber(argv[1], &count))) {
    fprintf(stderr, "usage: follow_notifications [COUNT]\n");
    return 2;
  }
  const int sock = listenAsManager();
  if (sock < 0) return 1;
  const int status = follow(sock, count);
  close(sock);
  return status;
}
