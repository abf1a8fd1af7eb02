// The head of a request: its first line and its fields, read strictly.
//
// The bytes come from anybody. What two readers could understand differently is refused instead of guessed: bare line
// feeds, folded fields, lengths that are given twice, paths that hide a slash or a dot. What is left is a value in which
// everything is decoded once.
//
// Functions without state.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>

namespace camerad {

// Why a request gets no further: the answer's status, type and sentence.
class HttpRefusal : public std::runtime_error {
public:
    HttpRefusal(int p_nStatus, std::string p_strType, const std::string& p_strDetail)
        : std::runtime_error(p_strDetail), m_nStatus(p_nStatus), m_strType(std::move(p_strType)) {}

    int status() const { return m_nStatus; }
    const std::string& type() const { return m_strType; }

private:
    int m_nStatus;
    std::string m_strType;
};

struct RequestHead {
    std::string strMethod;                             // a token, not necessarily one that is known
    std::string strPath;                               // decoded: valid UTF-8, without control characters
    std::multimap<std::string, std::string> mapQuery;  // decoded likewise
    std::multimap<std::string, std::string>
        mapHeaders;                 // names in small letters, values without the blanks around them
    std::string strHost;            // asked for, in small letters, without port and brackets
    bool bOldProtocol = false;      // HTTP/1.0
    bool bClose = false;            // the client takes no further answer on this connection
    bool bExpectsContinue = false;  // it waits for our word before it sends the body
    bool bChunked = false;          // the body tells its length piece by piece
    std::uint64_t nLength = 0;      // of the body otherwise

    bool hasBody() const { return bChunked || nLength > 0; }
};

// p_strBytes: all of the head with the empty line at its end. Throws HttpRefusal; after that nothing can be read from the
// connection any more, as nobody knows where the next request begins.
RequestHead readRequestHead(const std::string& p_strBytes, std::size_t p_nPathBytes);

// Where the head ends: behind the empty line. npos as long as that has not come.
std::size_t endOfHead(const std::string& p_strBytes);

bool isUtf8(const std::string& p_strText);

}  // namespace camerad
