#include "platform/GThread.h"

#include "platform/linux/ClockThread.h"
#include "platform/linux/StderrLine.h"

#include <pthread.h>

#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace {

// What a run calls; shared by the object and its runs, never changed.
struct Job {
    GThread::Body body;
    std::string name;
    GThread::Body start;
    GThread::Body exit;
};

// One run, from start to the end of its thread. The clock knows it before its thread exists, so that a held clock never
// moves between the two.
struct Run {
    std::shared_ptr<const Job> job;
    platform::ClockThread clock;
    std::atomic<bool> going{true};

    explicit Run(std::shared_ptr<const Job> p_pJob) : job(std::move(p_pJob)) {}
};

// The run and the object that the calling thread works for; null on other threads, the object also once it is gone.
thread_local Run* t_pRun = nullptr;
thread_local const void* t_pObject = nullptr;

constexpr std::size_t kNameLength = 15;  // what the system keeps of a thread's name

// False when the function threw.
bool call(const GThread::Body& p_fnFunction, const char* p_szPart, const std::string& p_strName) {
    std::string strWhat = "something that is no std::exception";
    try {
        p_fnFunction();
        return true;
    } catch (const std::exception& error) {
        strWhat = error.what();
    } catch (...) {
    }
    platform::stderrLine("GThread " + p_strName + ": the run ends, its " + p_szPart + " function threw: " + strWhat);
    return false;
}

void runThread(const std::shared_ptr<Run>& p_pRun, const void* p_pObject) {
    const Job& job = *p_pRun->job;
    pthread_setname_np(pthread_self(), job.name.substr(0, kNameLength).c_str());
    t_pRun = p_pRun.get();
    t_pObject = p_pObject;
    p_pRun->clock.adopt();

    bool bGoOn = call(job.start, "start", job.name);
    while (bGoOn && !p_pRun->clock.stopRequested()) {
        bGoOn = call(job.body, "body", job.name);
        p_pRun->clock.bodyReturned();
    }
    call(job.exit, "exit", job.name);

    t_pRun = nullptr;
    t_pObject = nullptr;
    p_pRun->going = false;
    p_pRun->clock.end();
}

}  // namespace

struct GThread::State {
    std::shared_ptr<const Job> job;

    std::mutex turn;     // held through start and stop; guards the thread
    std::thread thread;  // of the last run

    mutable std::mutex runLock;  // guards the pointer
    std::shared_ptr<Run> run;    // the last run

    std::shared_ptr<Run> lastRun() const {
        const std::lock_guard<std::mutex> guard(runLock);
        return run;
    }
    bool ownThreadCalls() const { return this == t_pObject; }
};

GThread::GThread(Body p_fnBody, const std::string& p_strName, Body p_fnStart, Body p_fnExit)
    : m_pState(std::make_unique<State>()) {
    m_pState->job = std::make_shared<const Job>(Job{std::move(p_fnBody), p_strName,
                                                    p_fnStart ? std::move(p_fnStart) : &emptyFunction,
                                                    p_fnExit ? std::move(p_fnExit) : &emptyFunction});
}

GThread::~GThread() {
    if (!stop()) {
        // The run destroys its own object: it cannot wait for itself and goes on to its end alone.
        m_pState->thread.detach();
        t_pObject = nullptr;
    }
}

bool GThread::start() {
    if (m_pState->ownThreadCalls()) {
        return false;
    }
    const std::lock_guard<std::mutex> guard(m_pState->turn);
    if (isRunning()) {
        return false;
    }
    if (m_pState->thread.joinable()) {
        m_pState->thread.join();
    }
    try {
        auto pRun = std::make_shared<Run>(m_pState->job);
        m_pState->thread = std::thread(runThread, pRun, m_pState.get());
        const std::lock_guard<std::mutex> runGuard(m_pState->runLock);
        m_pState->run = std::move(pRun);
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

bool GThread::stop() {
    if (m_pState->ownThreadCalls()) {
        t_pRun->clock.requestStop();
        return false;
    }
    const std::lock_guard<std::mutex> guard(m_pState->turn);
    if (m_pState->thread.joinable()) {
        m_pState->lastRun()->clock.requestStop();
        m_pState->thread.join();
    }
    return true;
}

bool GThread::isRunning() const {
    const std::shared_ptr<Run> pRun = m_pState->lastRun();
    return nullptr != pRun && pRun->going;
}

int GThread::emptyFunction() {
    return 0;
}
