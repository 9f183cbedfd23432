// Preloaded: one call of this program's own into the C library fails, as on a machine that has run out of something.
//
//     KEL_FAILING_PROGRAM=kelctl KEL_FAILING_CALL=read:3 LD_PRELOAD=libfailing-calls.so kelctl ...
//
// The third read() of kelctl fails. Calls count that its own code makes, its libraries and the C++ library for it; not those of the
// tracer, whose threads call when they like, nor those within the C library. With KEL_FAILING_COUNTS, the name of a file, what was called
// how often is written there at the end: "read 12". Children by fork() go on counting; other programs are left alone.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <link.h>
#include <stdatomic.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

struct entry {
    const char *name;
    void *next;
    atomic_int calls;
    int fails; // this call of them; 0: none
};

// Where the code is whose calls count.
static struct {
    uintptr_t begin, end;
} ours[64];
static int our_count;

static bool is_ours(const char *path)
{
    const char *slash = strrchr(path, '/');
    const char *name = slash ? slash + 1 : path;
    return *name == '\0' || !strncmp(name, "libkel-", 7) || !strncmp(name, "libstdc++", 9); // "": the program
}

static int note_code(struct dl_phdr_info *object, size_t size, void *unused)
{
    (void)size, (void)unused;
    for (int i = 0; i < object->dlpi_phnum && is_ours(object->dlpi_name); ++i) {
        const ElfW(Phdr) *part = &object->dlpi_phdr[i];
        if (part->p_type == PT_LOAD && part->p_flags & PF_X && our_count < (int)(sizeof ours / sizeof *ours)) {
            ours[our_count].begin = object->dlpi_addr + part->p_vaddr;
            ours[our_count++].end = object->dlpi_addr + part->p_vaddr + part->p_memsz;
        }
    }
    return 0;
}

static bool calls_from_ours(const void *caller)
{
    for (int i = 0; i < our_count; ++i)
        if ((uintptr_t)caller >= ours[i].begin && (uintptr_t)caller < ours[i].end)
            return true;
    return false;
}

static atomic_bool active;

static bool is_due(struct entry *of, const void *caller)
{
    return active && calls_from_ours(caller) && atomic_fetch_add(&of->calls, 1) + 1 == of->fails;
}

#define CALLER __builtin_extract_return_addr(__builtin_return_address(0))

// Each row: what a failing call returns and the number of its error.
#define CALLS(CALL)                                                                                                    \
    CALL(int, accept4, (int a, void *b, void *c, int d), (a, b, c, d), -1, EMFILE)                                     \
    CALL(int, bind, (int a, const void *b, unsigned c), (a, b, c), -1, EACCES)                                         \
    CALL(int, chmod, (const char *a, unsigned b), (a, b), -1, EROFS)                                                   \
    CALL(int, connect, (int a, const void *b, unsigned c), (a, b, c), -1, EACCES)                                      \
    CALL(void *, dlopen, (const char *a, int b), (a, b), NULL, ENOMEM)                                                 \
    CALL(int, epoll_create1, (int a), (a), -1, EMFILE)                                                                 \
    CALL(int, epoll_ctl, (int a, int b, int c, void *d), (a, b, c, d), -1, ENOSPC)                                     \
    CALL(int, eventfd, (unsigned a, int b), (a, b), -1, EMFILE)                                                        \
    CALL(int, fchmod, (int a, unsigned b), (a, b), -1, EROFS)                                                          \
    CALL(int, fcntl, (int a, int b, void *c), (a, b, c), -1, EINVAL)                                                   \
    CALL(int, fflush, (FILE * a), (a), EOF, ENOSPC)                                                                    \
    CALL(int, flock, (int a, int b), (a, b), -1, ENOLCK)                                                               \
    CALL(FILE *, fopen, (const char *a, const char *b), (a, b), NULL, EMFILE)                                          \
    CALL(int, fork, (void), (), -1, EAGAIN)                                                                            \
    CALL(int, fstat, (int a, void *b), (a, b), -1, EIO)                                                                \
    CALL(int, ftruncate, (int a, long b), (a, b), -1, EIO)                                                             \
    CALL(int, getsockopt, (int a, int b, int c, void *d, void *e), (a, b, c, d, e), -1, ENOBUFS)                       \
    CALL(int, listen, (int a, int b), (a, b), -1, EOPNOTSUPP)                                                          \
    CALL(long, lseek, (int a, long b, int c), (a, b, c), -1, ESPIPE)                                                   \
    CALL(int, lstat, (const char *a, void *b), (a, b), -1, EACCES)                                                     \
    CALL(int, memfd_create, (const char *a, unsigned b), (a, b), -1, EMFILE)                                           \
    CALL(int, mkdir, (const char *a, unsigned b), (a, b), -1, ENOSPC)                                                  \
    CALL(int, open, (const char *a, int b, unsigned c), (a, b, c), -1, EMFILE)                                         \
    CALL(FILE *, open_memstream, (char **a, size_t *b), (a, b), NULL, ENOMEM)                                          \
    CALL(void *, opendir, (const char *a), (a), NULL, EMFILE)                                                          \
    CALL(int, pipe2, (int *a, int b), (a, b), -1, EMFILE)                                                              \
    CALL(int, poll, (void *a, unsigned long b, int c), (a, b, c), -1, ENOMEM)                                          \
    CALL(int, pthread_create, (void *a, const void *b, void *c, void *d), (a, b, c, d), EAGAIN, EAGAIN)                \
    CALL(long, pwrite, (int a, const void *b, size_t c, long d), (a, b, c, d), -1, ENOSPC)                             \
    CALL(long, read, (int a, void *b, size_t c), (a, b, c), -1, EIO)                                                   \
    CALL(long, recv, (int a, void *b, size_t c, int d), (a, b, c, d), -1, ECONNRESET)                                  \
    CALL(int, rename, (const char *a, const char *b), (a, b), -1, EROFS)                                               \
    CALL(long, send, (int a, const void *b, size_t c, int d), (a, b, c, d), -1, ECONNRESET)                            \
    CALL(int, setsockopt, (int a, int b, int c, const void *d, unsigned e), (a, b, c, d, e), -1, ENOBUFS)              \
    CALL(int, socket, (int a, int b, int c), (a, b, c), -1, EMFILE)                                                    \
    CALL(int, stat, (const char *a, void *b), (a, b), -1, EACCES)                                                      \
    CALL(int, timerfd_create, (int a, int b), (a, b), -1, EMFILE)                                                      \
    CALL(int, timerfd_settime, (int a, int b, const void *c, void *d), (a, b, c, d), -1, ECANCELED)                    \
    CALL(int, unlink, (const char *a), (a), -1, EROFS)                                                                 \
    CALL(long, write, (int a, const void *b, size_t c), (a, b, c), -1, ENOSPC)                                         \
    CALL(long, writev, (int a, const void *b, int c), (a, b, c), -1, ENOSPC)

#define ENTRY(type, function, parameters, arguments, failure, number)                                                  \
    static struct entry entry_of_##function = {.name = #function};                                                     \
    type function parameters                                                                                           \
    {                                                                                                                  \
        if (is_due(&entry_of_##function, CALLER)) {                                                                    \
            errno = number;                                                                                            \
            return failure;                                                                                            \
        }                                                                                                              \
        if (!entry_of_##function.next)                                                                                 \
            entry_of_##function.next = dlsym(RTLD_NEXT, #function);                                                    \
        return ((type(*) parameters)entry_of_##function.next)arguments;                                                \
    }
CALLS(ENTRY)

// What is written through a stream is known to have failed when the stream is flushed; ferror() tells as well.
static struct entry entry_of_fwrite = {.name = "fwrite"};
size_t fwrite(const void *octets, size_t size, size_t count, FILE *to)
{
    if (is_due(&entry_of_fwrite, CALLER)) {
        to->_flags |= 0x20; // _IO_ERR_SEEN
        errno = ENOSPC;
        return 0;
    }
    return fwrite_unlocked(octets, size, count, to);
}

// Operator new, where this project's own code calls it: within the C++ library a failure may end the process.
__attribute__((weak)) void _ZSt17__throw_bad_allocv(void);
static struct entry entry_of_new = {.name = "new"};
void *_Znwm(size_t size)
{
    void *const memory = is_due(&entry_of_new, CALLER) ? NULL : malloc(size);
    if (!memory)
        _ZSt17__throw_bad_allocv();
    return memory;
}

static void write_counts(void);

// The program that takes the place of this one counts nothing.
static struct entry entry_of_execvp = {.name = "execvp"};
int execvp(const char *file, char *const *arguments)
{
    if (is_due(&entry_of_execvp, CALLER)) {
        errno = EACCES;
        return -1;
    }
    write_counts();
    return ((int (*)(const char *, char *const *))entry_of_execvp.next)(file, arguments);
}

#define ADDRESS(type, function, parameters, arguments, failure, number) &entry_of_##function,
static struct entry *const entries[] = {CALLS(ADDRESS) & entry_of_fwrite, &entry_of_new, &entry_of_execvp};
enum { entry_count = sizeof entries / sizeof *entries };

static pid_t counted_process;

static const char *value_of(char *const *environment, const char *name)
{
    const size_t length = strlen(name);
    for (; *environment; ++environment)
        if (!strncmp(*environment, name, length) && (*environment)[length] == '=')
            return *environment + length + 1;
    return NULL;
}

// Linked to run before all others (-z initfirst), and before the C library knows its environment.
__attribute__((constructor)) static void begin(int count, char **arguments, char **environment)
{
    (void)count;
    // Now: a thread of the tracer that asked the loader later would wait for the one that loads it.
    for (int i = 0; i < entry_count; ++i)
        entries[i]->next = dlsym(RTLD_NEXT, entries[i]->name);
    const char *program = value_of(environment, "KEL_FAILING_PROGRAM");
    const char *slash = strrchr(arguments[0], '/');
    if (!program || strcmp(program, slash ? slash + 1 : arguments[0]) != 0)
        return;
    counted_process = getpid();
    const char *call = value_of(environment, "KEL_FAILING_CALL");
    const char *colon = call ? strchr(call, ':') : NULL;
    for (int i = 0; colon && i < entry_count; ++i)
        if (strlen(entries[i]->name) == (size_t)(colon - call) &&
            !strncmp(entries[i]->name, call, (size_t)(colon - call)))
            entries[i]->fails = atoi(colon + 1);
    dl_iterate_phdr(note_code, NULL);
    active = true;
}

static void write_counts(void)
{
    const char *file = getenv("KEL_FAILING_COUNTS");
    FILE *out = file && counted_process == getpid() ? fopen(file, "we") : NULL;
    for (int i = 0; out && i < entry_count; ++i)
        if (entries[i]->calls > 0)
            fprintf(out, "%s %d\n", entries[i]->name, entries[i]->calls);
    if (out)
        fclose(out);
}

__attribute__((destructor)) static void end(void)
{
    active = false;
    write_counts();
}
