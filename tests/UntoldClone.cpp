// Keeps the race detector's hands off Qt's child processes. Qt starts them by a clone() that shares
// our memory; the detector (GCC 12's) takes that for a fork, does its bookkeeping for the child in
// what are the parent's own records, and from then on no longer sees the parent's locks. The
// libraries' clone() is this one, which goes straight to the system's.

#include <sched.h>

#include <cstdarg>

extern "C" {

int systemClone(int (*function)(void*), void* stack, int flags, void* argument,
                ...) __asm__("__clone");

int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    std::va_list rest;
    va_start(rest, argument);
    void* const parentId = va_arg(rest, void*);
    void* const threadStorage = va_arg(rest, void*);
    void* const childId = va_arg(rest, void*);
    va_end(rest);
    return systemClone(function, stack, flags, argument, parentId, threadStorage, childId);
}
}
