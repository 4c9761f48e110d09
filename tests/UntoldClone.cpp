// Hides Qt's child processes from the race detector. Qt starts them with a clone() that shares our
// memory; GCC 12's detector treats that as a fork, updates the child's state in the parent's
// records, and then no longer sees the parent's locks. This clone() replaces the detector's and
// calls the system.

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
