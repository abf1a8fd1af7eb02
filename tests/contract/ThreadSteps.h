// Steps that one thread takes and another waits for.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// Opens once; whoever passes waits until then.
class Gate {
public:
    void open() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_bOpen = true;
        m_changed.notify_all();
    }
    void pass() {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_bOpen) {
            m_changed.wait(lock);
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_bOpen = false;
};

// What happened, in order.
class Story {
public:
    void add(const std::string& p_strWhat) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_vecWhat.push_back(p_strWhat);
    }
    std::vector<std::string> told() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_vecWhat;
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_vecWhat;
};

// Lets other threads run for a while: one that ought to be blocked gets the chance to show that it is not. A test never
// needs it to pass.
inline void letOthersRun() {
    for (int i = 0; i < 2000; ++i) {
        std::this_thread::yield();
    }
}
