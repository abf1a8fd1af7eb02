#include "apps/camerad/http/RequestHead.h"

#include "apps/camerad/http/Status.h"
#include "apps/shared/Text.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace camerad {

namespace {

constexpr std::size_t kMostFields = 100;
constexpr std::size_t kMostQueryWords = 64;
constexpr std::size_t kLongestMethod = 32;
constexpr std::size_t kLongestHost = 255;
constexpr std::size_t kLongestLength = 18;  // digits; fits into 64 bits
constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7F;
constexpr int kHexLetter = 10;  // value of the digit A
constexpr int kHexBase = 16;

[[noreturn]] void refuse(const std::string& p_strType, const std::string& p_strDetail) {
    throw HttpRefusal(kBadRequest, p_strType, p_strDetail);
}

bool isControl(char p_cByte) {
    const auto byte = static_cast<unsigned char>(p_cByte);
    return byte < kFirstPrintable || kDelete == byte;
}

bool isDigit(char p_cByte) {
    return p_cByte >= '0' && p_cByte <= '9';
}

char smallLetter(char p_cByte) {
    return p_cByte >= 'A' && p_cByte <= 'Z' ? static_cast<char>(p_cByte - 'A' + 'a') : p_cByte;
}

bool isTokenByte(char p_cByte) {
    const char small = smallLetter(p_cByte);
    return (small >= 'a' && small <= 'z') || isDigit(p_cByte) ||
           ('\0' != p_cByte && nullptr != std::strchr("!#$%&'*+-.^_`|~", p_cByte));
}

bool isToken(const std::string& p_strText) {
    return !p_strText.empty() && std::all_of(p_strText.begin(), p_strText.end(), isTokenByte);
}

int hexDigit(char p_cByte) {
    const char small = smallLetter(p_cByte);
    if (isDigit(p_cByte)) {
        return p_cByte - '0';
    }
    return small >= 'a' && small <= 'f' ? small - 'a' + kHexLetter : -1;
}

// %41 is A. p_bForm: a plus is a blank.
std::string decoded(const std::string& p_strText, bool p_bForm) {
    std::string result;
    for (std::size_t i = 0; i < p_strText.size(); ++i) {
        char byte = p_strText[i];
        if ('+' == byte && p_bForm) {
            byte = ' ';
        } else if ('%' == byte) {
            const int high = i + 2 < p_strText.size() ? hexDigit(p_strText[i + 1]) : -1;
            const int low = i + 2 < p_strText.size() ? hexDigit(p_strText[i + 2]) : -1;
            if (high < 0 || low < 0) {
                refuse("bad-target", "a % in the address is not followed by two hexadecimal digits");
            }
            byte = static_cast<char>(high * kHexBase + low);
            i += 2;
        }
        if (isControl(byte)) {
            refuse("bad-target", "the address holds a control character");
        }
        result += byte;
    }
    if (!isUtf8(result)) {
        refuse("bad-target", "the address is not valid UTF-8");
    }
    return result;
}

std::string readPath(const std::string& p_strRaw) {
    std::string lower = apps::lowerCase(p_strRaw);
    if (std::string::npos != lower.find("%2f")) {
        refuse("bad-target", "a slash inside a part of the path cannot be sent, not even as %2F");
    }
    std::string path = decoded(p_strRaw, false);
    std::size_t begin = 1;
    for (std::size_t end = 0; std::string::npos != end; begin = end + 1) {
        end = path.find('/', begin);
        const std::string segment = path.substr(begin, std::string::npos == end ? end : end - begin);
        if ("." == segment || ".." == segment) {
            refuse("bad-target", "the path holds . or .. as one of its parts: ask for the path that it leads to");
        }
    }
    return path;
}

std::multimap<std::string, std::string> readQuery(const std::string& p_strRaw) {
    std::multimap<std::string, std::string> query;
    std::size_t begin = 0;
    for (std::size_t end = 0; std::string::npos != end; begin = end + 1) {
        end = p_strRaw.find('&', begin);
        const std::string word = p_strRaw.substr(begin, std::string::npos == end ? end : end - begin);
        if (word.empty()) {
            continue;
        }
        if (query.size() >= kMostQueryWords) {
            refuse("bad-target", "the address has more than " + std::to_string(kMostQueryWords) + " query parameters");
        }
        const std::size_t equals = word.find('=');
        query.emplace(decoded(word.substr(0, equals), true),
                      std::string::npos == equals ? "" : decoded(word.substr(equals + 1), true));
    }
    return query;
}

// The name in "camera:8080" or "[::1]:8080".
std::string readHost(const std::string& p_strRaw) {
    const std::string text = apps::lowerCase(p_strRaw);
    const bool bracketed = !text.empty() && '[' == text.front();
    const std::size_t bracket = text.find(']');
    const std::size_t end = bracketed ? (std::string::npos == bracket ? bracket : bracket + 1) : text.find(':');
    std::string name = text.substr(0, end);
    const std::string port = std::string::npos == end ? "" : text.substr(end);
    if (bracketed && name.size() > 2 && ']' == name.back()) {
        name = name.substr(1, name.size() - 2);
    } else if (bracketed) {
        refuse("bad-host", "the Host header has no name between its brackets");
    }
    if (!bracketed && !name.empty() && '.' == name.back()) {
        name.pop_back();
    }
    const bool goodName = !name.empty() && name.size() <= kLongestHost &&
                          std::all_of(name.begin(), name.end(), [bracketed](char p_cByte) {
                              return (p_cByte >= 'a' && p_cByte <= 'z') || isDigit(p_cByte) || '.' == p_cByte ||
                                     '-' == p_cByte || '_' == p_cByte || (bracketed && ':' == p_cByte);
                          });
    const bool goodPort = port.empty() || (':' == port.front() && port.size() <= sizeof(":65535") - 1 &&
                                           std::all_of(port.begin() + 1, port.end(), isDigit));
    if (!goodName || !goodPort) {
        refuse("bad-host", "the Host header names no host");
    }
    return name;
}

void readTarget(const std::string& p_strTarget, std::size_t p_nPathBytes, RequestHead& p_stHead) {
    std::string target = p_strTarget;
    for (const char byte : target) {
        if (isControl(byte) || ' ' == byte || '#' == byte || static_cast<unsigned char>(byte) > kDelete) {
            refuse("bad-target", "the address holds a byte that has to be sent as %XX");
        }
    }
    // A client that takes the camera for a proxy names it in the target; that name goes before the Host header.
    for (const char* const scheme : {"http://", "https://"}) {
        const std::size_t length = std::strlen(scheme);
        if (apps::lowerCase(target.substr(0, length)) == scheme) {
            const std::size_t end = target.find_first_of("/?", length);
            p_stHead.strHost = readHost(target.substr(length, std::string::npos == end ? end : end - length));
            target = std::string::npos == end ? "/" : target.substr(end);
            if ('?' == target.front()) {
                target.insert(0, "/");
            }
            break;
        }
    }
    if ("*" == target && "OPTIONS" == p_stHead.strMethod) {
        p_stHead.strPath = "*";
        return;
    }
    if (target.empty() || '/' != target.front()) {
        refuse("bad-target", "the address does not begin with a slash");
    }
    const std::size_t question = target.find('?');
    const std::string path = target.substr(0, question);
    if (path.size() > p_nPathBytes) {
        throw HttpRefusal(kPathTooLong, "path-too-long",
                          "the path is longer than " + std::to_string(p_nPathBytes) + " bytes");
    }
    p_stHead.strPath = readPath(path);
    if (std::string::npos != question) {
        p_stHead.mapQuery = readQuery(target.substr(question + 1));
    }
}

void readFirstLine(const std::string& p_strLine, std::size_t p_nPathBytes, RequestHead& p_stHead) {
    const std::size_t one = p_strLine.find(' ');
    const std::size_t two = std::string::npos == one ? one : p_strLine.find(' ', one + 1);
    if (std::string::npos == two) {
        refuse("bad-request", "the first line is not: method, address, version");
    }
    p_stHead.strMethod = p_strLine.substr(0, one);
    const std::string version = p_strLine.substr(two + 1);
    if (!isToken(p_stHead.strMethod) || p_stHead.strMethod.size() > kLongestMethod) {
        refuse("bad-request", "the first line begins with no method");
    }
    if (0 != version.compare(0, sizeof("HTTP/") - 1, "HTTP/")) {
        refuse("bad-request", "the first line does not end with the version of HTTP");
    }
    if ("HTTP/1.1" != version && "HTTP/1.0" != version) {
        throw HttpRefusal(kNoSuchVersion, "no-such-version", "this server speaks HTTP/1.1 and HTTP/1.0");
    }
    p_stHead.bOldProtocol = "HTTP/1.0" == version;
    readTarget(p_strLine.substr(one + 1, two - one - 1), p_nPathBytes, p_stHead);
}

std::string withoutBlanks(const std::string& p_strText) {
    const std::size_t first = p_strText.find_first_not_of(" \t");
    return std::string::npos == first ? "" : p_strText.substr(first, p_strText.find_last_not_of(" \t") - first + 1);
}

void readField(const std::string& p_strLine, RequestHead& p_stHead) {
    if (' ' == p_strLine.front() || '\t' == p_strLine.front()) {
        refuse("bad-header", "a header field goes on in the next line, which nobody does any more");
    }
    const std::size_t colon = p_strLine.find(':');
    const std::string name = p_strLine.substr(0, colon);
    if (std::string::npos == colon || !isToken(name)) {
        refuse("bad-header", "a line of the header is not: name, colon, value");
    }
    const std::string value = withoutBlanks(p_strLine.substr(colon + 1));
    if (std::any_of(value.begin(), value.end(), [](char p_cByte) { return isControl(p_cByte) && '\t' != p_cByte; })) {
        refuse("bad-header", "the header field " + name + " holds a control character");
    }
    if (p_stHead.mapHeaders.size() >= kMostFields) {
        throw HttpRefusal(kFieldsTooLarge, "header-too-large",
                          "the header has more than " + std::to_string(kMostFields) + " fields");
    }
    p_stHead.mapHeaders.emplace(apps::lowerCase(name), value);
}

// The words of a list that may stand in several fields, in small letters.
std::vector<std::string> listOf(const RequestHead& p_stHead, const std::string& p_strName) {
    std::vector<std::string> words;
    const auto fields = p_stHead.mapHeaders.equal_range(p_strName);
    for (auto field = fields.first; field != fields.second; ++field) {
        std::size_t begin = 0;
        for (std::size_t end = 0; std::string::npos != end; begin = end + 1) {
            end = field->second.find(',', begin);
            words.push_back(apps::lowerCase(
                withoutBlanks(field->second.substr(begin, std::string::npos == end ? end : end - begin))));
        }
    }
    return words;
}

bool has(const RequestHead& p_stHead, const std::string& p_strName) {
    return 0 != p_stHead.mapHeaders.count(p_strName);
}

std::string valueOf(const RequestHead& p_stHead, const std::string& p_strName) {
    const auto found = p_stHead.mapHeaders.find(p_strName);
    return p_stHead.mapHeaders.end() == found ? "" : found->second;
}

void readLength(RequestHead& p_stHead) {
    if (has(p_stHead, "transfer-encoding")) {
        if (has(p_stHead, "content-length")) {
            refuse("bad-length", "Content-Length and Transfer-Encoding contradict each other: send one of them");
        }
        if (p_stHead.bOldProtocol) {
            refuse("bad-length", "HTTP/1.0 has no Transfer-Encoding");
        }
        if (listOf(p_stHead, "transfer-encoding") != std::vector<std::string>{"chunked"}) {
            throw HttpRefusal(kNoSuchEncoding, "no-such-encoding", "the only Transfer-Encoding taken is chunked");
        }
        p_stHead.bChunked = true;
        return;
    }
    if (!has(p_stHead, "content-length")) {
        return;
    }
    const std::string length = valueOf(p_stHead, "content-length");
    if (length.empty() || length.size() > kLongestLength || !std::all_of(length.begin(), length.end(), isDigit)) {
        refuse("bad-length", "Content-Length is not a number of bytes");
    }
    for (const char digit : length) {
        p_stHead.nLength = p_stHead.nLength * 10 + static_cast<std::uint64_t>(digit - '0');
    }
}

// Fields of which two would leave open which one counts.
const char* const kSingle[] = {"host",
                               "content-length",
                               "transfer-encoding",
                               "content-type",
                               "content-encoding",
                               "expect",
                               "authorization",
                               "origin",
                               "sec-fetch-site",
                               "x-csrf-token",
                               "range",
                               "x-client-id",
                               "last-event-id",
                               "if-none-match"};

void readFields(RequestHead& p_stHead) {
    for (const char* const name : kSingle) {
        if (p_stHead.mapHeaders.count(name) > 1) {
            refuse("bad-header", std::string("the header field ") + name + " is there twice");
        }
    }
    if (!has(p_stHead, "host")) {
        refuse("bad-host", "the request has no Host header");
    }
    const std::string host = readHost(valueOf(p_stHead, "host"));
    if (p_stHead.strHost.empty()) {
        p_stHead.strHost = host;
    }
    readLength(p_stHead);
    if (has(p_stHead, "expect")) {
        if (apps::lowerCase(valueOf(p_stHead, "expect")) != "100-continue") {
            throw HttpRefusal(kBadExpectation, "bad-expectation", "the only Expect taken is 100-continue");
        }
        p_stHead.bExpectsContinue = !p_stHead.bOldProtocol;
    }
    const std::vector<std::string> connection = listOf(p_stHead, "connection");
    const auto says = [&connection](const char* p_szWord) {
        return connection.end() != std::find(connection.begin(), connection.end(), p_szWord);
    };
    p_stHead.bClose = says("close") || (p_stHead.bOldProtocol && !says("keep-alive"));
}

}  // namespace

bool isUtf8(const std::string& p_strText) {
    constexpr unsigned kLastOfOne = 0x7F;
    constexpr unsigned kLast = 0x10FFFF;
    constexpr unsigned kFirstSurrogate = 0xD800;
    constexpr unsigned kLastSurrogate = 0xDFFF;
    constexpr unsigned kNextMask = 0xC0;
    constexpr unsigned kNextMark = 0x80;
    constexpr unsigned kNextBits = 0x3F;
    struct Lead {
        unsigned nMask, nMark, nFollow, nFirst;
    };
    constexpr Lead kLeads[] = {{0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};
    for (std::size_t i = 0; i < p_strText.size(); ++i) {
        const unsigned byte = static_cast<unsigned char>(p_strText[i]);
        if (byte <= kLastOfOne) {
            continue;
        }
        const auto* const lead = std::find_if(std::begin(kLeads), std::end(kLeads), [byte](const Lead& p_stLead) {
            return (byte & p_stLead.nMask) == p_stLead.nMark;
        });
        if (std::end(kLeads) == lead || p_strText.size() - i <= lead->nFollow) {
            return false;
        }
        unsigned code = byte & ~lead->nMask & 0xFFU;
        for (unsigned n = 0; n < lead->nFollow; ++n) {
            const unsigned next = static_cast<unsigned char>(p_strText[++i]);
            if ((next & kNextMask) != kNextMark) {
                return false;
            }
            code = code << 6U | (next & kNextBits);
        }
        if (code < lead->nFirst || code > kLast || (code >= kFirstSurrogate && code <= kLastSurrogate)) {
            return false;
        }
    }
    return true;
}

std::size_t endOfHead(const std::string& p_strBytes) {
    const std::size_t found = p_strBytes.find("\r\n\r\n");
    return std::string::npos == found ? found : found + 4;
}

RequestHead readRequestHead(const std::string& p_strBytes, std::size_t p_nPathBytes) {
    RequestHead head;
    bool first = true;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = p_strBytes.find("\r\n", begin);
        if (std::string::npos == end) {
            refuse("bad-request", "the header ends in the middle");
        }
        const std::string line = p_strBytes.substr(begin, end - begin);
        begin = end + 2;
        if (std::string::npos != line.find_first_of(std::string("\r\n\0", 3))) {
            refuse("bad-request", "a line of the header does not end with carriage return and line feed");
        }
        if (line.empty()) {
            break;
        }
        if (first) {
            readFirstLine(line, p_nPathBytes, head);
        } else {
            readField(line, head);
        }
        first = false;
    }
    if (first) {
        refuse("bad-request", "the request has no first line");
    }
    readFields(head);
    return head;
}

}  // namespace camerad
