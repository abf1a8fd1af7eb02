// One thread that does one thing after the other, for callers that wait for a bounded time.
//
// Waits are real time, never the camera's clock. What a caller hands over must own everything that it touches: when it
// takes too long it goes on without its caller.
//
// Threads: every function may be called from any thread but the worker's own; stop from one.
#pragma once

#include "apps/camerad/host/Refusal.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace camerad {

class Worker {
public:
    struct Settings {
        std::size_t nQueue = 64;               // jobs that wait, at most
        std::chrono::milliseconds nIdle{200};  // between two calls of the idle function
        std::string strName = "channel";       // for refusals: "channel 1"
    };

    // p_fnIdle is called between jobs. p_fnBusy tells which exclusive operation begins, and "" when it has ended; it is
    // called with the worker's lock and must not call the worker.
    Worker(const Settings& p_stSettings, std::function<void()> p_fnIdle,
           std::function<void(const std::string&)> p_fnBusy);
    ~Worker();  // as stop
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    using Clock = std::chrono::steady_clock;

    // Does the job on the worker and waits for it until the deadline. Throws what the job throws, and Refusal (Busy) when
    // the queue is full, an exclusive operation is going on, or the time is over.
    void run(std::function<void()> p_fnJob, Clock::time_point p_tUntil);

    // A job that has been handed over.
    class Ticket {
    public:
        // As run, from there on.
        void wait(Clock::time_point p_tUntil);
        // True when it is over, without waiting.
        bool isOver() const;

    private:
        friend class Worker;
        struct Job;
        Ticket(Worker& p_objWorker, std::shared_ptr<Job> p_pJob);
        Worker* m_pWorker;
        std::shared_ptr<Job> m_pJob;
    };
    // Hands over an operation from whose acceptance to whose end every other job is refused at once. With bKeep it stays so
    // after its end, until an operation of the same name that does not keep it.
    Ticket post(const std::string& p_strOperation, std::function<void()> p_fnJob, bool p_bKeep = false);

    // Hands over a job that nobody waits for. False when there is no room for it.
    bool postQuietly(std::function<void()> p_fnJob);

    // The exclusive operation that is going on, empty when none.
    std::string operation() const;

    // Takes back what waits, waits for the job that is being done, and ends the thread after a last job.
    void stop(std::function<void()> p_fnLast);

private:
    using Job = Ticket::Job;
    using Lock = std::unique_lock<std::mutex>;

    std::shared_ptr<Job> enqueue(std::function<void()> p_fnJob, const std::string& p_strOperation, bool p_bKeep);
    void body();
    void carryOut(Lock& p_objLock, const std::shared_ptr<Job>& p_pJob);
    void endOperation(const Job& p_stJob);  // with the lock
    [[noreturn]] void refuseBusy(const std::string& p_strWhy, int p_nSeconds) const;

    const Settings m_stSettings;
    const std::function<void()> m_fnIdle;
    const std::function<void(const std::string&)> m_fnBusy;

    mutable std::mutex m_mutex;  // guards everything below and the state of every job
    std::condition_variable m_condWork;
    std::condition_variable m_condDone;
    std::deque<std::shared_ptr<Job>> m_queJobs;
    std::string m_strOperation;
    bool m_bKept = false;      // the operation has ended, and still holds
    bool m_bToBeKept = false;  // it will hold when it has ended
    bool m_bStop = false;
    std::function<void()> m_fnLast;
    std::thread m_objThread;
};

}  // namespace camerad
