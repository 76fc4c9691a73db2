#include "platform/CommandQueueThread.h"

#include "platform/KestoRenderLib.h"
#include "platform/Threading.h"

#include <pthread.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <stdexcept>
#include <thread>
#include <utility>

namespace KestoRenderLib {

namespace {

constexpr std::size_t longestThreadName = 15; // pthread_setname_np refuses longer ones

void nameThisThread(const std::string& name) {
    if (!name.empty())
        (void)pthread_setname_np(pthread_self(),
                                 name.substr(0, longestThreadName).c_str()); // diagnostics only
}

} // namespace

class CommandQueueThread::Queue {
public:
    Queue(std::string threadName, std::function<void()> atStart, std::function<void()> atEnd)
        : name(std::move(threadName))
        , threadStarted(std::move(atStart))
        , threadEnding(std::move(atEnd)) {}
    ~Queue();
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    void start() KESTO_EXCLUDES(lock);
    void push(const std::function<void()>& command, std::size_t limit) KESTO_EXCLUDES(lock);
    void waitUntilIdle() KESTO_EXCLUDES(lock);

private:
    void startLocked() KESTO_REQUIRES(lock);
    bool isOwnThreadLocked() const KESTO_REQUIRES(lock) {
        return thread.get_id() == std::this_thread::get_id();
    }
    void dropCommandsAndEnd() KESTO_EXCLUDES(lock);

    void run() KESTO_EXCLUDES(lock);
    void runCommands() KESTO_EXCLUDES(lock);
    std::function<void()> takeCommand() KESTO_EXCLUDES(lock);
    void tellFinished() KESTO_EXCLUDES(lock);

    const std::string name;
    const std::function<void()> threadStarted;
    const std::function<void()> threadEnding;

    Mutex lock{LockRanks::commandQueue}; // never held while a command runs or is destroyed
    std::condition_variable pushedOrEnding;
    std::condition_variable takenOrFinished;
    std::deque<std::function<void()>> commands KESTO_GUARDED_BY(lock);
    bool running KESTO_GUARDED_BY(lock) = false; // from the take until the command is destroyed
    bool ending KESTO_GUARDED_BY(lock) = false;
    std::thread thread KESTO_GUARDED_BY(lock);
};

CommandQueueThread::Queue::~Queue() {
    dropCommandsAndEnd();
    if (thread.joinable())
        thread.join();
}

void CommandQueueThread::Queue::start() {
    const MutexLock held(lock);
    startLocked();
}

void CommandQueueThread::Queue::push(const std::function<void()>& command, std::size_t limit) {
    MutexLock held(lock);
    if (!thread.joinable())
        startLocked();
    while (commands.size() >= std::max<std::size_t>(limit, 1) && !isOwnThreadLocked())
        takenOrFinished.wait(held.native());
    commands.push_back(command);
    pushedOrEnding.notify_one();
}

void CommandQueueThread::Queue::waitUntilIdle() {
    MutexLock held(lock);
    if (isOwnThreadLocked())
        throw KestoRenderLibException("A command can't wait until its own queue is finished");
    while (running || !commands.empty())
        takenOrFinished.wait(held.native());
}

void CommandQueueThread::Queue::startLocked() {
    thread = std::thread([this] { run(); });
}

void CommandQueueThread::Queue::dropCommandsAndEnd() {
    std::deque<std::function<void()>> dropped; // destroyed without the lock
    const MutexLock held(lock);
    dropped.swap(commands);
    ending = true;
    pushedOrEnding.notify_one();
}

void CommandQueueThread::Queue::run() {
    nameThisThread(name);
    if (threadStarted)
        threadStarted();
    runCommands();
    if (threadEnding)
        threadEnding();
}

void CommandQueueThread::Queue::runCommands() {
    while (auto command = takeCommand()) {
        command();
        command = nullptr;
        tellFinished();
    }
}

/// Empty when the thread is to end.
std::function<void()> CommandQueueThread::Queue::takeCommand() {
    MutexLock held(lock);
    while (commands.empty() && !ending)
        pushedOrEnding.wait(held.native());
    if (ending)
        return nullptr; // what the last command pushed is dropped, too
    auto command = std::move(commands.front());
    commands.pop_front();
    running = true;
    takenOrFinished.notify_all();
    return command;
}

void CommandQueueThread::Queue::tellFinished() {
    const MutexLock held(lock);
    running = false;
    takenOrFinished.notify_all();
}

CommandQueueThread::CommandQueueThread(const std::string& name, std::function<void()> threadStarted,
                                       std::function<void()> threadEnding, bool startAtOnce)
    : queue(std::make_unique<Queue>(name, std::move(threadStarted), std::move(threadEnding))) {
    if (startAtOnce)
        queue->start();
}

CommandQueueThread::~CommandQueueThread() = default;

void CommandQueueThread::pushCommand(const std::function<void()>& command, std::size_t limit) {
    if (!command)
        throw std::invalid_argument("CommandQueueThread::pushCommand: a command cannot be empty");
    queue->push(command, limit);
}

void CommandQueueThread::waitUntilAllCommandsAreFinished() {
    queue->waitUntilIdle();
}

} // namespace KestoRenderLib
