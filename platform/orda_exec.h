/*
 * The host's command execution. The library that carries it differs between hosts, so a caller refers to it weakly and
 * runs the program itself where no loaded library defines it.
 */
#ifndef PLATFORM_ORDA_EXEC_H
#define PLATFORM_ORDA_EXEC_H

#ifdef __cplusplus
extern "C" {
#endif

/* Runs a program without a shell and waits for it: three zeros, the program's path, its arguments, a null. Returns its
 * exit status. */
int orda_exec(int reserved1, int reserved2, int reserved3, const char *program, ...);

#ifdef __cplusplus
}
#endif

#endif
