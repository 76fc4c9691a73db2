#pragma once

#include "platform/LockOrder.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

// What clang's thread-safety analysis is to check; nothing for other compilers.
#if defined(__clang__)
#define KESTO_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define KESTO_THREAD_ANNOTATION(attribute)
#endif

/// A class whose objects are locks.
#define KESTO_CAPABILITY(name) KESTO_THREAD_ANNOTATION(capability(name))
/// A class whose objects hold a lock while they live.
#define KESTO_SCOPED_CAPABILITY KESTO_THREAD_ANNOTATION(scoped_lockable)
/// A member that is used only with the lock held; or what a pointer member points to.
#define KESTO_GUARDED_BY(lock) KESTO_THREAD_ANNOTATION(guarded_by(lock))
#define KESTO_PT_GUARDED_BY(lock) KESTO_THREAD_ANNOTATION(pt_guarded_by(lock))
/// The order of two locks that one thread may hold together.
#define KESTO_ACQUIRED_BEFORE(...) KESTO_THREAD_ANNOTATION(acquired_before(__VA_ARGS__))
#define KESTO_ACQUIRED_AFTER(...) KESTO_THREAD_ANNOTATION(acquired_after(__VA_ARGS__))
/// A function whose caller holds the locks, or must not hold them.
#define KESTO_REQUIRES(...) KESTO_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define KESTO_EXCLUDES(...) KESTO_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
/// A function that takes locks, leaves them, or takes them when it returns `result`.
#define KESTO_ACQUIRE(...) KESTO_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define KESTO_RELEASE(...) KESTO_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define KESTO_TRY_ACQUIRE(result, ...) KESTO_THREAD_ANNOTATION(try_acquire_capability(result, ##__VA_ARGS__))
/// A function that gives a reference to a lock.
#define KESTO_RETURN_CAPABILITY(lock) KESTO_THREAD_ANNOTATION(lock_returned(lock))
/// A function that the analysis cannot follow; say why beside it.
#define KESTO_NO_THREAD_SAFETY_ANALYSIS KESTO_THREAD_ANNOTATION(no_thread_safety_analysis)

/// The standard mutex, under a name that annotations can speak of. With a rank it aborts in builds that check
/// the order of locks, when a thread takes it out of its place.
class KESTO_CAPABILITY("mutex") Mutex : public std::mutex, public RankedLock {
public:
    constexpr Mutex() = default;
    constexpr explicit Mutex(const LockRank& rank)
        : RankedLock(rank) {}

    void lock() KESTO_ACQUIRE() {
        willTake(Reentry::Refused);
        std::mutex::lock();
    }
    void unlock() KESTO_RELEASE() {
        willLeave();
        std::mutex::unlock();
    }
    bool try_lock() KESTO_TRY_ACQUIRE(true) {
        const bool taken = std::mutex::try_lock();
        if (taken)
            wasFree();
        return taken;
    }
};

/// Holds a `Mutex` for a scope.
class KESTO_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) KESTO_ACQUIRE(mutex)
        : rank(mutex)
        , held(mutex) {}
    ~MutexLock() KESTO_RELEASE() {}
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    /// For condition variables. Wait in a `while` loop: the analysis takes a predicate for unlocked code.
    std::unique_lock<std::mutex>& native() {
        rank.willWait();
        return held;
    }

private:
    // Stays while a wait lets go of the mutex: the thread takes no other lock then.
    [[no_unique_address]] HeldRank rank;
    std::unique_lock<std::mutex> held;
};

/// For contracts that need re-entry, and only those. The analysis knows one level: between functions of one
/// class that take it, keep pairs `X()` and `XLocked()`.
class KESTO_CAPABILITY("mutex") RecursiveMutex : public std::recursive_mutex, public RankedLock {
public:
    RecursiveMutex() = default;
    explicit RecursiveMutex(const LockRank& rank)
        : RankedLock(rank) {}

    void lock() KESTO_ACQUIRE() {
        willTake(Reentry::Allowed);
        std::recursive_mutex::lock();
    }
    void unlock() KESTO_RELEASE() {
        willLeave();
        std::recursive_mutex::unlock();
    }
    bool try_lock() KESTO_TRY_ACQUIRE(true) {
        const bool taken = std::recursive_mutex::try_lock();
        if (taken)
            wasFree();
        return taken;
    }
};

/// Holds a `RecursiveMutex` for a scope.
class KESTO_SCOPED_CAPABILITY RecursiveMutexLock {
public:
    explicit RecursiveMutexLock(RecursiveMutex& mutex) KESTO_ACQUIRE(mutex)
        : held(mutex) {}
    ~RecursiveMutexLock() KESTO_RELEASE() {}
    RecursiveMutexLock(const RecursiveMutexLock&) = delete;
    RecursiveMutexLock& operator=(const RecursiveMutexLock&) = delete;

private:
    std::lock_guard<RecursiveMutex> held;
};

/// What a signalled `Event` does when a wait ends: `Automatic` forgets the signal, so that each `set` lets
/// one wait through; `Manual` keeps it until `reset`.
enum class EventReset { Automatic, Manual };

/// A signal that is remembered until somebody waits for it; not signalled at first. Signals do not add up.
/// Any thread. It may be destroyed as soon as the last wait has returned, also while that `set` still
/// returns.
class Event {
public:
    explicit Event(EventReset afterWait)
        : resetting(afterWait) {}

    void set() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        signalled = true;
        // With the lock held: a waiter that destroys the event cannot go on before this is done with it.
        if (resetting == EventReset::Automatic)
            changed.notify_one();
        else
            changed.notify_all();
    }

    void reset() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        signalled = false;
    }

    void wait() KESTO_EXCLUDES(lock) {
        MutexLock held(lock);
        while (!signalled)
            changed.wait(held.native());
        endWaitLocked();
    }

    /// False when nothing was signalled in that time. Nothing or less than that: looks without waiting.
    bool waitFor(std::chrono::nanoseconds duration) KESTO_EXCLUDES(lock) {
        const auto deadline = deadlineAfter(duration);
        MutexLock held(lock);
        while (!signalled) {
            if (changed.wait_until(held.native(), deadline) == std::cv_status::timeout && !signalled)
                return false;
        }
        endWaitLocked();
        return true;
    }

private:
    using Clock = std::chrono::steady_clock;

    static Clock::time_point deadlineAfter(std::chrono::nanoseconds duration) {
        const auto now = Clock::now();
        return duration < Clock::time_point::max() - now ? now + duration : Clock::time_point::max();
    }

    void endWaitLocked() KESTO_REQUIRES(lock) { signalled = resetting == EventReset::Manual; }

    const EventReset resetting;
    Mutex lock;
    std::condition_variable changed;
    bool signalled KESTO_GUARDED_BY(lock) = false;
};
