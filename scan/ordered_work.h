// ordered_work.h - work in several threads whose results come out in the order in which it was taken.
//
// The threads do all of it: each in turn takes a batch of tasks from the source, and works on it while the others take and
// work. The caller's thread receives what is done. So the source, which is cheap, needs no thread of its own, and the
// bytes that come out are the same for any number of threads. Where the system gives fewer threads than were asked for,
// those that there are do all of it; where it gives none, the caller's does.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

// What is to be done. Task is what a batch consists of; a batch uses the tasks of an earlier one again. Worker is what each
// thread has for itself.
template <typename Task, typename Worker>
struct OrderedSteps {
    // Fills tasks from the first on and returns how many, at most as many as there are; 0: nothing is left, and it is not
    // called again. Called by one thread at a time.
    std::function<std::size_t(std::vector<Task>& tasks)> take;
    std::function<std::unique_ptr<Worker>()> makeWorker;  // called in the worker's thread
    std::function<void(Worker& worker, Task& task)> work;
    std::function<std::size_t(const Task& task)> weigh;  // what it takes of the weight below; empty: none takes any
    // Both in the caller's thread: settle for each task soon after it is done, in any order; deliver for each task behind
    // that, in the order in which they were taken.
    std::function<void(Task& task)> settle;
    std::function<void(Task& task)> deliver;
    std::function<void()> idle;  // in the caller's thread, some times a second
};

struct OrderedLimits {
    unsigned threads = 1;         // at least 1
    std::size_t batchTasks = 64;  // most tasks of a batch, at least 1
    std::size_t batches = 8;      // most batches under way, done and not delivered ones among them
    // Nothing more is taken while the tasks of batches under way weigh this or more together. At least one is under way.
    std::size_t weight = SIZE_MAX;
};

template <typename Task, typename Worker>
class OrderedWork {
 public:
    OrderedWork(const OrderedSteps<Task, Worker>& steps, const OrderedLimits& limits)
        : steps_(steps),
          limits_(limits),
          mostThreads_(limits.threads),
          batches_(std::max<std::size_t>(limits.batches, 1)) {}

    // Runs until nothing is left and all is delivered. The first exception of any step ends it, and is thrown here.
    void Run() {
        std::unique_lock lock(mutex_);
        if (!StartThread()) {
            lock.unlock();
            return RunAlone();
        }
        try {
            while (!IsOver()) {
                DeliverWhatIsDone(lock);
                lock.unlock();
                steps_.idle();
                lock.lock();
                WaitForNews(lock);
            }
        } catch (...) {
            if (!lock.owns_lock()) lock.lock();  // a step fails while it is open
            NoteFailure();
        }
        stopped_ = true;
        room_.notify_all();
        lock.unlock();
        for (std::thread& thread : threads_) thread.join();
        if (failure_ != nullptr) std::rethrow_exception(failure_);
    }

 private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds longestWait{100};  // between two calls of idle, when nothing comes
    // What is done sooner takes one thread.
    static constexpr std::chrono::milliseconds secondThreadTime{1};
    // The caller's thread is woken when a part of the batches under way is done, or as much time has gone by: to be woken
    // for each batch costs more than to deliver it.
    static constexpr std::size_t partToTell = 3;
    // What is done in slow batches is told as often as this. What is in front of a task that takes long is found without
    // being told of.
    static constexpr std::chrono::milliseconds handOverTime{20};

    struct Batch {
        std::vector<Task> tasks;
        std::size_t count = 0;              // tasks that were taken
        std::size_t weight = 0;             // of these
        std::atomic<std::size_t> done = 0;  // of them, from the first on; then settled, then delivered
        std::size_t settled = 0;
        std::size_t delivered = 0;
    };

    Batch& BatchOf(std::uint64_t number) { return batches_[static_cast<std::size_t>(number % batches_.size())]; }

    bool IsOver() const { return failure_ != nullptr || (running_ == 0 && delivered_ == taken_); }

    bool HasNews() const { return hasNews_ || IsOver(); }

    bool HasRoom() const {
        return taken_ == delivered_ || (taken_ - delivered_ < batches_.size() && weight_ < limits_.weight);
    }

    std::size_t WeightOf(const Batch& batch) const {
        std::size_t weight = 0;
        for (std::size_t index = 0; steps_.weigh && index < batch.count; ++index) {
            weight += steps_.weigh(batch.tasks[index]);
        }
        return weight;
    }

    void NoteFailure() {
        if (failure_ == nullptr) failure_ = std::current_exception();
    }

    // Returns false where the system gives no more: a limit of processes, or of memory, which a stack takes.
    bool StartThread() {
        try {
            threads_.emplace_back([this] { RunThread(); });
        } catch (const std::system_error&) {
            return false;
        }
        ++running_;  // the thread waits for the mutex to take its count away
        return true;
    }

    // One thread more, if there are fewer; after a failure no other is tried.
    void StartThreadUpTo(std::size_t threads) {
        if (threads_.size() < threads && !stopped_ && !StartThread()) mostThreads_ = threads_.size();
    }

    void RunAlone() {
        const std::unique_ptr<Worker> worker = steps_.makeWorker();
        std::vector<Task>& tasks = BatchOf(0).tasks;
        while (true) {
            GrowBatch(tasks);
            const std::size_t count = steps_.take(tasks);
            if (count == 0) return;
            for (std::size_t index = 0; index < count; ++index) {
                steps_.work(*worker, tasks[index]);
                steps_.settle(tasks[index]);
                steps_.deliver(tasks[index]);
                steps_.idle();
            }
        }
    }

    // Batches grow, so that the first results come at once.
    void GrowBatch(std::vector<Task>& tasks) {
        batchTasks_ = std::clamp<std::size_t>(batchTasks_ * 2, 1, limits_.batchTasks);
        tasks.resize(batchTasks_);
    }

    void RunThread() {
        try {
            const std::unique_ptr<Worker> worker = steps_.makeWorker();
            while (Batch* const batch = TakeBatch()) WorkOn(*worker, *batch);
        } catch (...) {
            const std::lock_guard lock(mutex_);
            NoteFailure();
        }
        const std::lock_guard lock(mutex_);
        --running_;
        Tell();
    }

    // A first task that takes long is no reason for the others to wait.
    void WaitForNews(std::unique_lock<std::mutex>& lock) {
        if (HasNews()) return;
        const std::size_t threads = std::min<std::size_t>(mostThreads_, 2);
        const bool mayStart = threads_.size() < threads;
        const std::cv_status status = news_.wait_for(lock, mayStart ? secondThreadTime : longestWait);
        if (status == std::cv_status::timeout && !IsOver()) StartThreadUpTo(threads);
    }

    // The next batch, or null when there is none. A thread more is started when this one has its work and there was more
    // in front of it.
    Batch* TakeBatch() {
        const std::lock_guard turn(source_);
        {
            std::unique_lock lock(mutex_);
            room_.wait(lock, [this] { return stopped_ || HasRoom(); });
            if (stopped_ || exhausted_ || failure_ != nullptr) return nullptr;
        }
        Batch& batch = BatchOf(taken_);  // nobody else changes taken_, nor looks at a batch that is not taken
        GrowBatch(batch.tasks);
        batch.count = steps_.take(batch.tasks);
        batch.weight = WeightOf(batch);
        batch.settled = batch.delivered = 0;
        batch.done.store(0, std::memory_order_relaxed);
        const std::lock_guard lock(mutex_);
        exhausted_ = batch.count == 0;
        if (exhausted_) return nullptr;
        weight_ += batch.weight;
        if (taken_++ > 0) StartThreadUpTo(mostThreads_);
        return &batch;
    }

    void WorkOn(Worker& worker, Batch& batch) {
        Clock::time_point told = Clock::now();
        const std::size_t count = batch.count;
        for (std::size_t index = 0; index < count; ++index) {
            steps_.work(worker, batch.tasks[index]);
            const Clock::time_point now = Clock::now();
            const bool isLast = index + 1 == count;
            if (!isLast) batch.done.store(index + 1, std::memory_order_release);
            if (!isLast && now - told < handOverTime) continue;
            told = now;
            const std::lock_guard lock(mutex_);
            batch.done.store(index + 1, std::memory_order_release);  // the last: it may be another batch from here on
            TellOfWork(now, isLast);
            if (stopped_) return;
        }
    }

    // While tasks are taken one by one somebody may wait for each, and while there is no room other threads do.
    void TellOfWork(Clock::time_point now, bool batchIsDone) {
        if (batchIsDone) ++untold_;
        const bool canWait = limits_.batchTasks > 1 && HasRoom() && untold_ * partToTell < batches_.size();
        if (canWait && now - told_ < handOverTime) return;
        told_ = now;
        untold_ = 0;
        Tell();
    }

    void Tell() {
        hasNews_ = true;
        news_.notify_one();
    }

    // Settles all that is done, and delivers what no earlier task is in front of. Unlocks while it does.
    void DeliverWhatIsDone(std::unique_lock<std::mutex>& lock) {
        hasNews_ = false;
        for (std::uint64_t number = delivered_; number < taken_; ++number) {
            Batch& batch = BatchOf(number);
            const std::size_t done = batch.done.load(std::memory_order_acquire);
            lock.unlock();
            for (; batch.settled < done; ++batch.settled) steps_.settle(batch.tasks[batch.settled]);
            if (number == delivered_) {
                for (; batch.delivered < done; ++batch.delivered) steps_.deliver(batch.tasks[batch.delivered]);
            }
            lock.lock();
            if (number == delivered_ && batch.delivered == batch.count) {
                ++delivered_;
                weight_ -= batch.weight;
                room_.notify_one();
            }
        }
    }

    const OrderedSteps<Task, Worker>& steps_;
    const OrderedLimits limits_;
    std::size_t mostThreads_;  // that there can be, as far as is known
    std::mutex source_;        // whose turn it is to take; locked in front of mutex_
    std::mutex mutex_;         // all below
    std::condition_variable news_;
    std::condition_variable room_;
    std::vector<Batch> batches_;  // a ring, by number
    std::vector<std::thread> threads_;
    std::uint64_t taken_ = 0;      // batches
    std::uint64_t delivered_ = 0;  // batches
    std::size_t weight_ = 0;       // of the batches between these two
    std::size_t batchTasks_ = 0;   // of the last batch
    unsigned running_ = 0;         // threads
    bool exhausted_ = false;
    bool stopped_ = false;
    bool hasNews_ = false;
    std::size_t untold_ = 0;    // batches that were done since the caller's thread was told
    Clock::time_point told_{};  // when that was
    std::exception_ptr failure_;
};
