// Sends answers, by means of httplib.
//
// What a client sends is read and checked here (RequestHead, ChunkedBody) before httplib hears of it: httplib is handed a
// request of our own writing, which has nothing of the client's in it, and finds its way by a pattern that no byte from
// outside can reach. Status line, header, HEAD, pieces of a stream and the end of a body are httplib's.
//
// Threads: one Answerer serves many connections at a time, each with an exchange of its own.
#pragma once

#include "apps/camerad/http/Http.h"
#include "apps/camerad/http/Wire.h"

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>

namespace camerad {

// One answer on its way.
struct Exchange {
    Wire& objWire;
    const std::atomic<bool>& bStopping;
    const std::chrono::milliseconds nWriteTime;
    const std::function<HttpResponse()> fnAnswer;         // asked once; does not throw
    const std::function<void(const std::string&)> fnLog;  // of a stream that fails
    bool bHead = false;                                   // only the head is wanted
    bool bOldProtocol = false;                            // the client knows no pieces
    bool bClose = false;                                  // this is the last answer of the connection; out: likewise
    std::string strTransportSecurity;                     // the header of that name, where it is due
    bool bLate = false;                                   // out: the client took too long to take the answer
    int nStatus = 0;                                      // out
};

class Answerer : private httplib::Server {
public:
    Answerer();
    // False when the answer could not be sent to its end; the connection has to be closed then.
    bool answer(Exchange& p_stExchange);
    // Streams end after what they are about to write.
    void close() { svr_sock_ = INVALID_SOCKET; }
};

}  // namespace camerad
