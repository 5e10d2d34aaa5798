// Work in several threads: every task once, in order, within the window, and failures of each step.
#include "scan/ordered_work.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <numeric>
#include <set>
#include <stdexcept>

namespace {

std::atomic<int> threadsLeft = 1000000;  // that the system gives

}  // namespace

// Stands in front of that of the system.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument) {
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return threadsLeft-- > 0 ? create(thread, attributes, start, argument) : EAGAIN;
}

namespace {

struct Task {
    int number = 0;
    int result = 0;
    int settled = 0;
};

struct Worker {
    int tasks = 0;
};

// Squares the numbers below a count, and notes all that happens.
struct Squares {
    int count;
    int taken = 0;
    std::atomic<int> workers = 0;
    std::atomic<int> takers = 0;
    std::vector<std::size_t> batches;
    std::vector<int> settled;
    std::vector<int> delivered;
    std::vector<int> results;
    OrderedSteps<Task, Worker> steps;

    explicit Squares(int numbers) : count(numbers) {
        steps.take = [this](std::vector<Task>& tasks) { return Take(tasks); };
        steps.makeWorker = [this] {
            ++workers;
            return std::make_unique<Worker>();
        };
        steps.work = [](Worker&, Task& task) { task.result = task.number * task.number; };
        steps.settle = [this](Task& task) {
            ++task.settled;
            settled.push_back(task.number);
        };
        steps.deliver = [this](Task& task) {
            EXPECT_EQ(task.settled, 1) << task.number;
            delivered.push_back(task.number);
            results.push_back(task.result);
        };
        steps.idle = [] {};
    }

    std::size_t Take(std::vector<Task>& tasks) {
        EXPECT_EQ(++takers, 1) << "two threads take at the same time";
        std::size_t size = 0;
        for (; size < tasks.size() && taken < count; ++size) tasks[size] = {taken++, 0, 0};
        batches.push_back(size);
        --takers;
        return size;
    }

    void Run(const OrderedLimits& limits) { OrderedWork<Task, Worker>(steps, limits).Run(); }

    void ExpectAllInOrder() const {
        std::vector<int> numbers(static_cast<std::size_t>(count));
        std::iota(numbers.begin(), numbers.end(), 0);
        EXPECT_EQ(delivered, numbers);
        for (int number = 0; number < count; ++number) {
            ASSERT_EQ(results[static_cast<std::size_t>(number)], number * number);
        }
        EXPECT_EQ(std::set<int>(settled.begin(), settled.end()), std::set<int>(numbers.begin(), numbers.end()));
        EXPECT_EQ(settled.size(), numbers.size());
    }
};

TEST(OrderedWork, DeliversAllInOrderForAnyNumberOfThreads) {
    for (const unsigned threads : {1U, 2U, 3U, 16U}) {
        for (const std::size_t window : {std::size_t{1}, std::size_t{2}, std::size_t{40}}) {
            Squares squares(5000);
            squares.Run({threads, 8, window});
            squares.ExpectAllInOrder();
        }
    }
}

TEST(OrderedWork, BatchesGrowFromOneTask) {
    Squares squares(20);
    squares.Run({1, 8, 4});
    EXPECT_EQ(squares.batches, (std::vector<std::size_t>{1, 2, 4, 8, 5, 0}));
    squares.ExpectAllInOrder();
}

TEST(OrderedWork, NothingToDo) {
    Squares squares(0);
    squares.Run({4, 8, 4});
    EXPECT_EQ(squares.batches, std::vector<std::size_t>{0});
    EXPECT_LE(squares.workers, 2);  // the second where the first is slow to say so
    squares.ExpectAllInOrder();
}

TEST(OrderedWork, StartsNoMoreThreadsThanThereAreBatchesAndOne) {
    Squares squares(1);
    squares.Run({16, 8, 40});
    EXPECT_LE(squares.workers, 2);
    squares.ExpectAllInOrder();
}

TEST(OrderedWork, SlowFirstTaskDoesNotHoldUpTheNext) {
    Squares squares(2);
    std::atomic<bool> secondIsDone = false;
    squares.steps.work = [&](Worker&, Task& task) {
        while (task.number == 0 && !secondIsDone) std::this_thread::yield();
        task.result = task.number * task.number;
        secondIsDone = secondIsDone || task.number == 1;
    };
    squares.Run({2, 8, 4});
    squares.ExpectAllInOrder();
    EXPECT_EQ(squares.workers, 2);
}

TEST(OrderedWork, NeverStartsMoreThreadsThanAllowed) {
    Squares squares(3000);
    squares.Run({3, 4, 40});
    EXPECT_LE(squares.workers, 3);
}

TEST(OrderedWork, GoesOnWithTheThreadsThatTheSystemGives) {
    for (const int given : {0, 1, 2, 3}) {
        threadsLeft = given;
        Squares squares(3000);
        squares.Run({16, 8, 40});
        threadsLeft = 1000000;
        EXPECT_GE(squares.workers, 1);
        EXPECT_LE(squares.workers, std::max(given, 1));
        squares.ExpectAllInOrder();
    }
}

TEST(OrderedWork, FailureWithoutAnyThread) {
    threadsLeft = 0;
    Squares working(1000);
    working.steps.work = [](Worker&, Task& task) {
        if (task.number == 500) throw std::runtime_error("no more");
    };
    EXPECT_THROW(working.Run({2, 8, 4}), std::runtime_error);
    threadsLeft = 1000000;
    EXPECT_EQ(working.delivered.size(), 500U);
}

TEST(OrderedWork, SlowTaskHoldsUpTheWindowAndWhatIsDoneBehindItIsSettled) {
    Squares squares(100);
    std::atomic<int> largest = 0;
    std::atomic<bool> go = false;
    squares.steps.work = [&](Worker&, Task& task) {
        int seen = largest;
        while (seen < task.number && !largest.compare_exchange_weak(seen, task.number)) continue;
        while (task.number == 0 && !go) std::this_thread::yield();
        task.result = task.number * task.number;
    };
    // The window holds the tasks 0 to 3: when 1 to 3 are settled nothing more is taken, and nothing is delivered.
    squares.steps.idle = [&] {
        if (go || squares.settled.size() < 3) return;
        EXPECT_EQ(squares.settled, (std::vector<int>{1, 2, 3}));
        EXPECT_TRUE(squares.delivered.empty());
        EXPECT_EQ(largest, 3);
        go = true;
    };
    squares.Run({2, 1, 4});
    squares.ExpectAllInOrder();
}

TEST(OrderedWork, NothingIsTakenWhileTheTasksUnderWayWeighEnough) {
    for (const int heaviest : {9, 10, 1000}) {  // below, at and above what may be under way
        Squares squares(60);
        std::atomic<int> weight = 0;
        std::atomic<int> largest = 0;
        const auto weigh = [=](const Task& task) { return task.number % 7 == 0 ? heaviest : 1; };
        squares.steps.weigh = [=](const Task& task) { return static_cast<std::size_t>(weigh(task)); };
        squares.steps.work = [&](Worker&, Task& task) {
            weight += weigh(task);
            largest = std::max(largest.load(), weight.load());
            task.result = task.number * task.number;
        };
        squares.steps.deliver = [&](Task& task) {
            weight -= weigh(task);
            squares.delivered.push_back(task.number);
            squares.results.push_back(task.result);
        };
        squares.Run({8, 1, 40, 10});
        squares.ExpectAllInOrder();
        EXPECT_LE(largest, 9 + heaviest);
        EXPECT_EQ(weight, 0);
    }
}

TEST(OrderedWork, SlowBatchIsHandedOverInPieces) {
    Squares squares(4);
    squares.taken = 0;
    squares.steps.take = [&](std::vector<Task>& tasks) {
        tasks.resize(4);
        std::size_t size = 0;
        for (; size < 4 && squares.taken < squares.count; ++size) tasks[size] = {squares.taken++, 0, 0};
        return size;
    };
    std::atomic<bool> firstDelivered = false;
    squares.steps.work = [&](Worker&, Task& task) {
        if (task.number == 0) std::this_thread::sleep_for(std::chrono::milliseconds(25));
        while (task.number == 3 && !firstDelivered) std::this_thread::yield();
        task.result = task.number * task.number;
    };
    squares.steps.idle = [&] { firstDelivered = !squares.delivered.empty(); };
    squares.Run({1, 4, 2});
    squares.ExpectAllInOrder();
}

TEST(OrderedWork, FailureOfAnyStepEndsTheRun) {
    const auto fail = [] { throw std::runtime_error("no more"); };
    Squares taking(1000);
    taking.steps.take = [&](std::vector<Task>&) -> std::size_t {
        fail();
        return 0;
    };
    EXPECT_THROW(taking.Run({2, 8, 4}), std::runtime_error);
    Squares making(1000);
    making.steps.makeWorker = [&]() -> std::unique_ptr<Worker> {
        fail();
        return nullptr;
    };
    EXPECT_THROW(making.Run({2, 8, 4}), std::runtime_error);
    Squares working(1000);
    working.steps.work = [&](Worker&, Task& task) {
        if (task.number == 500) fail();
    };
    EXPECT_THROW(working.Run({2, 8, 4}), std::runtime_error);
    Squares settling(1000);
    settling.steps.settle = [&](Task&) { fail(); };
    EXPECT_THROW(settling.Run({2, 8, 4}), std::runtime_error);
    Squares delivering(1000);
    delivering.steps.deliver = [&](Task&) { fail(); };
    EXPECT_THROW(delivering.Run({2, 8, 4}), std::runtime_error);
}

}  // namespace
