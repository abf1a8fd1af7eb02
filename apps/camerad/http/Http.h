// Requests and answers as the routes of camerad see them.
//
// Values. Nothing here knows which HTTP library carries them.
#pragma once

#include "apps/camerad/access/Identity.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace camerad {

struct HttpRequest {
    std::string strMethod;  // GET, HEAD (answered as GET without a body), POST, PUT, PATCH, DELETE
    std::string strPath;    // decoded, without the query
    std::multimap<std::string, std::string> mapQuery;
    std::multimap<std::string, std::string> mapHeaders;  // names in small letters
    std::map<std::string, std::string> mapPath;          // what stands for {name} in the route
    std::string strBody;
    std::string strRemote;  // address of the client
    bool bSecure = false;   // over TLS
    Identity stIdentity;    // nobody on a public route without credentials

    // The first of that name (small letters), or the other text.
    std::string header(const std::string& p_strName, const std::string& p_strOther = "") const;
    std::string query(const std::string& p_strName, const std::string& p_strOther = "") const;
};

// Where a stream writes to.
class HttpSink {
public:
    virtual ~HttpSink() = default;
    // Blocks until the bytes are with the system, at most for the server's write time. False: the client is gone, or too
    // slow, or the server stops; the stream has to end.
    virtual bool write(const std::string& p_strBytes) = 0;
    // False when the client is gone or the server stops, as far as that is known without writing.
    virtual bool isOpen() const = 0;
};

struct HttpResponse {
    int nStatus = 200;
    std::string strType = "application/json";
    std::string strBody;
    std::vector<std::pair<std::string, std::string>> vecHeaders;
    // When there is one, the body is what it writes; it runs on the connection's thread until it returns, after the head
    // has been sent. It counts as a stream for the limits.
    std::function<void(HttpSink&)> fnStream;
};

using HttpHandler = std::function<HttpResponse(const HttpRequest&)>;

// Who may call a route.
enum class Access { Everybody, Viewer, Admin };

struct Route {
    std::string strMethod;
    std::string strPattern;  // "/api/v1/channels/{channel}/parameters/{key}"; {name} is one segment
    Access eAccess = Access::Viewer;
    std::size_t nBodyLimit = 0;  // bytes; more are refused with 413
    HttpHandler fnHandler;       // may throw Refusal
    // false: a cookie that comes with the request proves nothing by itself and needs no proof of the same origin (login)
    bool bNeedsProof = true;
};

}  // namespace camerad
