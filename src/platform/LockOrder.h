#pragma once

#include "platform/LockRanks.h"

#if defined(KESTO_CHECK_LOCK_ORDER)
#include "platform/Export.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#endif

/// Whether the thread that holds a lock may take it again.
enum class Reentry { Refused, Allowed };

// One decision for all that is linked together, since checked locks are larger: the build of the library
// defines this, and its package tells it to others.
#if defined(KESTO_CHECK_LOCK_ORDER)

/// The ranked locks that one thread holds or waits for. What breaks their order ends the process, with a
/// message on the error stream.
class KESTO_EXPORT HeldLocks {
public:
    void check(const void* lock, const LockRank& rank, Reentry reentry) const {
        if (isHeld(lock)) {
            if (reentry == Reentry::Refused)
                refuse(rank, "is taken again by the thread that holds it:", rank);
            return;
        }
        for (std::size_t index = checkedFrom; index < count; ++index)
            checkAgainst(held[index].rank, rank);
    }

    void add(const void* lock, const LockRank& rank) {
        if (count == held.size())
            refuse(rank, "is more than a thread's record of locks can take, after", held.back().rank);
        held[count++] = {lock, rank};
    }

    void remove(const void* lock) {
        std::size_t index = count - 1;
        while (held[index].lock != lock)
            --index;
        for (--count; index < count; ++index)
            held[index] = held[index + 1];
    }

    /// A wait lets go of the lock and takes it again while all others stay held.
    void checkWait(const void* lock, const LockRank& rank) const {
        if (held[count - 1].lock != lock)
            refuse(rank, "is waited with under a lock that was taken later,", held[count - 1].rank);
    }

    /// Leaves what is held now out of the checks, until `checkFrom` gets what this returns.
    std::size_t leaveOutHeld() {
        const std::size_t former = checkedFrom;
        checkedFrom = count;
        return former;
    }
    void checkFrom(std::size_t index) { checkedFrom = index; }

private:
    struct Held {
        const void* lock;
        LockRank rank;
    };

    bool isHeld(const void* lock) const {
        for (std::size_t index = 0; index < count; ++index) {
            if (held[index].lock == lock)
                return true;
        }
        return false;
    }

    static void checkAgainst(const LockRank& outer, const LockRank& inner) {
        if (outer.place > inner.place)
            refuse(inner, "must be taken before the lock that is held,", outer);
        if (outer.place == inner.place)
            refuse(inner, "must never be held together with", outer);
    }

    [[noreturn]] static void refuse(const LockRank& taken, const char* reason, const LockRank& other) {
        std::fprintf(stderr, "Lock order: %s %s %s\n", taken.name, reason, other.name);
        std::abort();
    }

    std::array<Held, 32> held{};
    std::size_t count = 0;
    std::size_t checkedFrom = 0;
};

/// One for each thread, whichever libraries take its locks.
KESTO_EXPORT inline constinit thread_local HeldLocks heldLocks;

/// What a lock knows of its place.
class RankedLock {
protected:
    friend class HeldRank;

    constexpr RankedLock() = default;
    constexpr explicit RankedLock(const LockRank& rank)
        : ownRank(rank) {}

    /// Before the lock is taken, so that an order that may hang is told instead.
    void willTake(Reentry reentry) const {
        if (!isRanked())
            return;
        heldLocks.check(this, ownRank, reentry);
        heldLocks.add(this, ownRank);
    }
    /// Without a check: taking a lock that is free can't hang.
    void wasFree() const {
        if (isRanked())
            heldLocks.add(this, ownRank);
    }
    /// Before the lock is left: it may be gone as soon as others can take it.
    void willLeave() const {
        if (isRanked())
            heldLocks.remove(this);
    }

private:
    bool isRanked() const { return ownRank.name != nullptr; }

    LockRank ownRank{0, nullptr};
};

/// Records for its scope that a lock is held; made before the lock is taken.
class HeldRank {
public:
    explicit HeldRank(const RankedLock& taken)
        : lock(taken.isRanked() ? &taken : nullptr) {
        taken.willTake(Reentry::Refused);
    }
    ~HeldRank() {
        if (lock)
            heldLocks.remove(lock);
    }
    HeldRank(const HeldRank&) = delete;
    HeldRank& operator=(const HeldRank&) = delete;

    void willWait() const {
        if (lock)
            heldLocks.checkWait(lock, lock->ownRank);
    }

private:
    const RankedLock* const lock; // null without a rank; may be gone at the end
};

/// For a scope that runs a caller's code with locks held. That may use any object of the library, so the
/// locks held so far do not count against those that it takes.
class CallbackUnderLocks {
public:
    CallbackUnderLocks()
        : former(heldLocks.leaveOutHeld()) {}
    ~CallbackUnderLocks() { heldLocks.checkFrom(former); }
    CallbackUnderLocks(const CallbackUnderLocks&) = delete;
    CallbackUnderLocks& operator=(const CallbackUnderLocks&) = delete;

private:
    const std::size_t former;
};

#else

class RankedLock {
protected:
    constexpr RankedLock() = default;
    constexpr explicit RankedLock(const LockRank& /*rank*/) {}

    void willTake(Reentry /*reentry*/) const {}
    void wasFree() const {}
    void willLeave() const {}
};

class HeldRank {
public:
    explicit HeldRank(const RankedLock& /*taken*/) {}

    void willWait() const {}
};

class CallbackUnderLocks {
public:
    CallbackUnderLocks() {}
};

#endif
