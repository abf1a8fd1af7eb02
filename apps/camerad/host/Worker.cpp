#include "apps/camerad/host/Worker.h"

#include <algorithm>

namespace camerad {

namespace {
constexpr int kTryAgainSoon = 1;   // second
constexpr int kTryAgainLater = 2;  // seconds; a reset takes about one
}  // namespace

struct Worker::Ticket::Job {
    enum class State { Waiting, Running, Over, TakenBack };

    std::function<void()> m_fnWork;
    std::string m_strOperation;  // empty for an ordinary job
    bool m_bKeep = false;
    bool m_bEndsKept = false;  // what was kept for it cannot go on without it
    State m_eState = State::Waiting;
    std::optional<Refusal> m_refusal;  // moved out by whoever waits for the job
};

Worker::Worker(const Settings& p_stSettings, std::function<void()> p_fnIdle,
               std::function<void(const std::string&)> p_fnBusy)
    : m_stSettings(p_stSettings), m_fnIdle(std::move(p_fnIdle)), m_fnBusy(std::move(p_fnBusy)) {
    m_objThread = std::thread([this] { body(); });
}

Worker::~Worker() {
    stop([] {});
}

void Worker::refuseBusy(const std::string& p_strWhy, int p_nSeconds) const {
    Refusal refusal(Refusal::Kind::Busy, "busy", m_stSettings.strName + " " + p_strWhy);
    refusal.retryAfter(p_nSeconds);
    throw Refusal(refusal);
}

std::shared_ptr<Worker::Job> Worker::enqueue(std::function<void()> p_fnJob, const std::string& p_strOperation,
                                             bool p_bKeep) {
    const auto pJob = std::make_shared<Job>();
    pJob->m_fnWork = std::move(p_fnJob);
    pJob->m_strOperation = p_strOperation;
    pJob->m_bKeep = p_bKeep;
    {
        const Lock lock(m_mutex);
        if (m_bStop) {
            refuseBusy("is being stopped", kTryAgainLater);
        }
        const bool bAmong = (m_bKept || m_bToBeKept) && !p_strOperation.empty() && p_strOperation == m_strOperation;
        if (!m_strOperation.empty() && !bAmong) {
            refuseBusy("is busy with a " + m_strOperation + "; try again in a moment", kTryAgainLater);
        }
        if (m_queJobs.size() >= m_stSettings.nQueue) {
            refuseBusy(
                "has " + std::to_string(m_stSettings.nQueue) + " requests waiting already; try again in a moment",
                kTryAgainSoon);
        }
        if (!p_strOperation.empty()) {
            pJob->m_bEndsKept = bAmong;
            m_strOperation = p_strOperation;
            m_bKept = false;
            m_bToBeKept = p_bKeep;
        }
        m_queJobs.push_back(pJob);
        if (!p_strOperation.empty()) {
            m_fnBusy(p_strOperation);
        }
    }
    m_condWork.notify_one();
    return pJob;
}

void Worker::run(std::function<void()> p_fnJob, Clock::time_point p_tUntil) {
    Ticket objTicket = post("", std::move(p_fnJob), false);
    objTicket.wait(p_tUntil);
}

Worker::Ticket Worker::post(const std::string& p_strOperation, std::function<void()> p_fnJob, bool p_bKeep) {
    return {*this, enqueue(std::move(p_fnJob), p_strOperation, p_bKeep)};
}

bool Worker::postQuietly(std::function<void()> p_fnJob) {
    try {
        enqueue(std::move(p_fnJob), "", false);
        return true;
    } catch (const Refusal&) {
        return false;
    }
}

std::string Worker::operation() const {
    const Lock lock(m_mutex);
    return m_strOperation;
}

Worker::Ticket::Ticket(Worker& p_objWorker, std::shared_ptr<Job> p_pJob)
    : m_pWorker(&p_objWorker), m_pJob(std::move(p_pJob)) {}

bool Worker::Ticket::isOver() const {
    const Lock lock(m_pWorker->m_mutex);
    return Job::State::Over == m_pJob->m_eState || Job::State::TakenBack == m_pJob->m_eState;
}

void Worker::Ticket::wait(Clock::time_point p_tUntil) {
    Worker& worker = *m_pWorker;
    Lock lock(worker.m_mutex);
    const auto isDone = [this] {
        return Job::State::Over == m_pJob->m_eState || Job::State::TakenBack == m_pJob->m_eState;
    };
    if (worker.m_condDone.wait_until(lock, p_tUntil, isDone)) {
        if (Job::State::TakenBack == m_pJob->m_eState) {
            worker.refuseBusy("is being stopped; nothing was done", kTryAgainLater);
        }
        if (m_pJob->m_refusal) {
            const Refusal refusal = std::move(*m_pJob->m_refusal);
            m_pJob->m_refusal.reset();
            throw Refusal(refusal);
        }
        return;
    }
    if (Job::State::Running == m_pJob->m_eState || m_pJob->m_bEndsKept) {
        worker.refuseBusy(
            "has begun and takes longer than usual; it goes on, so look again in a moment what came of it",
            kTryAgainLater);
    }
    m_pJob->m_eState = Job::State::TakenBack;
    worker.m_queJobs.erase(std::find(worker.m_queJobs.begin(), worker.m_queJobs.end(), m_pJob));
    worker.endOperation(*m_pJob);
    worker.refuseBusy("is still busy with what was asked before; nothing was done", kTryAgainLater);
}

void Worker::endOperation(const Job& p_stJob) {
    if (p_stJob.m_strOperation.empty()) {
        return;
    }
    m_bKept = p_stJob.m_bKeep && Job::State::Over == p_stJob.m_eState;
    if (!m_bKept) {
        m_strOperation.clear();
        m_fnBusy("");
    }
}

void Worker::carryOut(Lock& p_objLock, const std::shared_ptr<Job>& p_pJob) {
    p_pJob->m_eState = Job::State::Running;
    p_objLock.unlock();
    std::optional<Refusal> refusal;
    try {
        p_pJob->m_fnWork();
    } catch (Refusal& objRefusal) {
        refusal = std::move(objRefusal);
    } catch (const std::exception& objFailure) {
        refusal.emplace(Refusal::Kind::Failed, "internal", std::string("the camera failed: ") + objFailure.what());
    }
    p_pJob->m_fnWork = nullptr;
    p_objLock.lock();
    p_pJob->m_refusal = std::move(refusal);
    p_pJob->m_eState = Job::State::Over;
    endOperation(*p_pJob);
    m_condDone.notify_all();
}

void Worker::body() {
    Clock::time_point tLook = Clock::now() + m_stSettings.nIdle;
    Lock lock(m_mutex);
    while (!m_bStop) {
        m_condWork.wait_until(lock, tLook, [this] { return m_bStop || !m_queJobs.empty(); });
        if (!m_bStop && !m_queJobs.empty()) {
            const std::shared_ptr<Job> pJob = m_queJobs.front();
            m_queJobs.pop_front();
            carryOut(lock, pJob);
        }
        if (!m_bStop && Clock::now() >= tLook) {
            lock.unlock();
            m_fnIdle();
            lock.lock();
            tLook = Clock::now() + m_stSettings.nIdle;
        }
    }
    for (const std::shared_ptr<Job>& pJob : m_queJobs) {
        pJob->m_eState = Job::State::TakenBack;
    }
    m_queJobs.clear();
    m_condDone.notify_all();
    lock.unlock();
    m_fnLast();
}

void Worker::stop(std::function<void()> p_fnLast) {
    {
        const Lock lock(m_mutex);
        if (!m_bStop) {
            m_bStop = true;
            m_fnLast = std::move(p_fnLast);
        }
    }
    m_condWork.notify_one();
    if (m_objThread.joinable()) {
        m_objThread.join();
    }
}

}  // namespace camerad
