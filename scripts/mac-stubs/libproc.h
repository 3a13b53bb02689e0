#pragma once

// Just enough of a Mac for scripts/check-mac, written here: what the program uses, as Apple
// documents it, and nothing else. A Mac's compiler never reads these files.

#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif
int proc_listallpids(void *buffer, int buffersize);
int proc_listchildpids(pid_t ppid, void *buffer, int buffersize);
#ifdef __cplusplus
}
#endif
