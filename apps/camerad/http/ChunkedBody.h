// A body that tells its length piece by piece, put together strictly and within a limit.
//
// One thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace camerad {

class ChunkedBody {
public:
    explicit ChunkedBody(std::size_t p_nLimit) : m_nLimit(p_nLimit) {}

    // Takes bytes from the front of what has come, up to the end of the body, and removes them. Throws HttpRefusal for what
    // is no such body, is longer than the limit, or consists of little but its own framing.
    void take(std::string& p_strBytes);
    bool isComplete() const { return State::End == m_eState; }
    const std::string& body() const { return m_strBody; }

private:
    enum class State { Size, Data, DataEnd, Trailer, End };

    void takeByte(char p_cByte);
    void takeLine();

    const std::size_t m_nLimit;
    State m_eState = State::Size;
    std::string m_strLine;       // the line so far, without its end
    std::uint64_t m_nLeft = 0;   // bytes of the piece that are to come
    std::size_t m_nFraming = 0;  // bytes that were no data
    std::string m_strBody;
};

}  // namespace camerad
