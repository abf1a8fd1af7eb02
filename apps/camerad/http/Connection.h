// One connection, from its first byte to its last: requests one after the other, each phase with its deadline.
//
// One thread; the server may shut the socket down from another.
#pragma once

#include "apps/camerad/http/RequestHead.h"
#include "apps/camerad/http/Shared.h"
#include "apps/camerad/http/Wire.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace camerad {

class Connection {
public:
    // The socket is non-blocking and stays the caller's. Addresses as text.
    Connection(Shared& p_stShared, int p_nSocket, std::string p_strRemote, std::string p_strLocal);

    // Returns when there is nothing more to say; the socket may be closed then.
    void run();

private:
    struct Request {
        RequestHead stHead;
        HttpRequest stRequest;
        const Route* pRoute = nullptr;
        std::string strLabel = "unreadable";  // for the counters; never a client's own words
        std::optional<HttpResponse> refusal;  // instead of the route's answer
        bool bBodyTaken = true;               // all that belongs to the request has been read
    };

    bool openTls();
    bool waitForRequest();
    bool readHead(std::string& p_strHead);
    void route(Request& p_stRequest);
    void admit(Request& p_stRequest);
    void readBody(Request& p_stRequest);
    void receive(Request& p_stRequest, const std::string& p_strHead);
    bool send(Request& p_stRequest);
    HttpResponse handle(Request& p_stRequest, bool& p_bStream);
    void sendProblem(const HttpRefusal& p_objRefusal);
    Wire::Outcome more(std::size_t p_nMost, Deadline p_tDeadline);
    void linger();
    HttpResponse unauthorised(const Request& p_stRequest, HttpResponse p_stResponse) const;

    Shared& m_stShared;
    const ServerSettings& m_stSettings;
    const int m_nSocket;
    const std::string m_strRemote;
    const std::string m_strLocal;
    std::unique_ptr<Wire> m_pWire;
    std::string m_strIn;     // read and not yet used
    bool m_bBroken = false;  // the last answer could not be sent to its end
};

}  // namespace camerad
