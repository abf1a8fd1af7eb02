#include "tests/unit/diag/OutputPipe.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>

OutputPipe::OutputPipe(Kind p_eKind) {
    std::fflush(stdout);
    int nEnds[2] = {-1, -1};
    const int nMade = Kind::Packets == p_eKind ? socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, nEnds)
                                               : pipe2(nEnds, O_CLOEXEC);
    m_nSaved = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (0 != nMade || -1 == m_nSaved || -1 == dup2(nEnds[1], STDOUT_FILENO)) {
        throw std::runtime_error("cannot lead standard output elsewhere");
    }
    m_nReading = nEnds[0];
    close(nEnds[1]);
}

OutputPipe::~OutputPipe() {
    restore();
    closeReadingEnd();
}

void OutputPipe::restore() {
    if (-1 != m_nSaved) {
        std::fflush(stdout);
        dup2(m_nSaved, STDOUT_FILENO);
        close(m_nSaved);
        m_nSaved = -1;
    }
}

std::string OutputPipe::next(std::size_t p_nMost) {
    std::string strText(p_nMost, '\0');
    ssize_t nRead = -1;
    do {
        nRead = read(m_nReading, strText.data(), strText.size());
    } while (-1 == nRead && EINTR == errno);
    strText.resize(nRead > 0 ? static_cast<std::size_t>(nRead) : 0);
    return strText;
}

std::string OutputPipe::rest() {
    std::string strAll;
    for (std::string strPiece = next(); !strPiece.empty(); strPiece = next()) {
        strAll += strPiece;
    }
    return strAll;
}

void OutputPipe::closeReadingEnd() {
    if (-1 != m_nReading) {
        close(m_nReading);
        m_nReading = -1;
    }
}
