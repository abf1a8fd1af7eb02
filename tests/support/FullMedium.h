// A medium that takes no file longer than so many bytes, for as long as the object lives: a longer write comes out short.
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <stdexcept>

class FullMedium {
public:
    explicit FullMedium(rlim_t p_nBytes) : m_pfnOld(std::signal(SIGXFSZ, SIG_IGN)) {
        rlimit stFull = {};
        if (0 == getrlimit(RLIMIT_FSIZE, &m_stOld)) {
            stFull = m_stOld;
            stFull.rlim_cur = p_nBytes;
        }
        if (0 != setrlimit(RLIMIT_FSIZE, &stFull)) {
            throw std::runtime_error("cannot limit the size of files");
        }
    }
    ~FullMedium() {
        setrlimit(RLIMIT_FSIZE, &m_stOld);
        std::signal(SIGXFSZ, m_pfnOld);
    }
    FullMedium(const FullMedium&) = delete;
    FullMedium& operator=(const FullMedium&) = delete;

private:
    void (*m_pfnOld)(int);
    rlimit m_stOld = {};
};
