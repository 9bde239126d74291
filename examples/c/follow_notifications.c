/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/*
 * Prints the change notifications of the library, as the manager receives them: follow_notifications [COUNT]
 * With COUNT, it ends after so many. Only one program on a host can listen.
 */
#include <arpa/inet.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

struct notification {
  char magic[16];
  char header[16];
  int32_t profile, video_node, audio_node, flag, event, target;
};

static int listenAsManager(void) {
  const struct sockaddr_in address = {
      .sin_family = AF_INET, .sin_port = htons(10171), .sin_addr.s_addr = htonl(INADDR_LOOPBACK)};
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (sock >= 0 && bind(sock, (const struct sockaddr *)&address, sizeof address) == 0) return sock;
  perror("follow_notifications");
  if (sock >= 0) close(sock);
  return -1;
}

/* Waits for a datagram; returns 0 if it is not a notification. */
static int receive(int sock, struct notification *received) {
  char datagram[sizeof *received + 1]; /* the byte too many shows a longer one */
  if (recv(sock, datagram, sizeof datagram, 0) != (ssize_t)sizeof *received) return 0;
  memcpy(received, datagram, sizeof *received);
  return memcmp(received->magic, "ORDA_VLM2_CFCG_N", sizeof received->magic) == 0;
}

int main(int argc, char **argv) {
  long left = argc > 1 ? strtol(argv[1], NULL, 10) : -1;
  const int sock = listenAsManager();
  if (sock < 0) return 1;
  printf("listening\n");
  while (left != 0) {
    struct notification it;
    fflush(stdout);
    if (!receive(sock, &it)) continue;
    printf("event %d  profile %d  video %d  audio %d\n", it.event, it.profile, it.video_node, it.audio_node);
    if (left > 0) --left;
  }
  close(sock);
  return 0;
}
