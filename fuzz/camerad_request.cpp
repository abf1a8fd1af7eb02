// What a client sends to the HTTP server: the head of a request, and a body in pieces.
//
// 1. The first byte says how many bytes of the rest come at a time; the rest is what a connection brings.
// 2. Find the end of the head, read it, and put the body together from what is behind it.
// 3. A head is refused with a status, a type and a sentence, or everything in it is decoded text: no control characters,
//    valid UTF-8, no path that leads upwards. A body is the same however many bytes come at a time, and keeps its limit.
#include "apps/camerad/http/ChunkedBody.h"
#include "apps/camerad/http/RequestHead.h"
#include "fuzz/support/Fuzz.h"

#include <algorithm>

namespace {

constexpr std::size_t kPathBytes = 64;
constexpr std::size_t kBodyBytes = 100;

void checkRefusal(const camerad::HttpRefusal& p_objRefusal) {
    FUZZ_CHECK(p_objRefusal.status() >= 400 && p_objRefusal.status() < 600);
    FUZZ_CHECK(!p_objRefusal.type().empty());
    FUZZ_CHECK('\0' != *p_objRefusal.what());
}

void checkText(const std::string& p_strText) {
    FUZZ_CHECK(camerad::isUtf8(p_strText));
    FUZZ_CHECK(std::none_of(p_strText.begin(), p_strText.end(), [](char p_cByte) {
        return static_cast<unsigned char>(p_cByte) < 0x20 || 0x7F == p_cByte;
    }));
}

void checkHead(const std::string& p_strHead) {
    try {
        const camerad::RequestHead head = camerad::readRequestHead(p_strHead, kPathBytes);
        FUZZ_CHECK(!head.strMethod.empty());
        FUZZ_CHECK(!head.strHost.empty());
        FUZZ_CHECK("*" == head.strPath || '/' == head.strPath.front());
        FUZZ_CHECK(std::string::npos == (head.strPath + "/").find("/../"));
        FUZZ_CHECK(!head.bChunked || 0 == head.nLength);
        checkText(head.strPath);
        for (const auto& [name, value] : head.mapQuery) {
            checkText(name);
            checkText(value);
        }
        for (const auto& [name, value] : head.mapHeaders) {
            FUZZ_CHECK(!name.empty());
            FUZZ_CHECK(std::string::npos == value.find_first_of("\r\n"));
        }
    } catch (const camerad::HttpRefusal& refusal) {
        checkRefusal(refusal);
    }
}

// The body and what is behind it, or status and type of the refusal, or nothing while it is not complete.
std::string bodyOf(const std::string& p_strBytes, std::size_t p_nPiece) {
    camerad::ChunkedBody body(kBodyBytes);
    std::string waiting;
    try {
        for (std::size_t at = 0; at < p_strBytes.size(); at += p_nPiece) {
            waiting += p_strBytes.substr(at, p_nPiece);
            body.take(waiting);
        }
    } catch (const camerad::HttpRefusal& refusal) {
        checkRefusal(refusal);
        return std::to_string(refusal.status()) + refusal.type();
    }
    FUZZ_CHECK(body.body().size() <= kBodyBytes);
    FUZZ_CHECK(body.isComplete() || waiting.empty());
    return body.isComplete() ? body.body() + "|" + waiting : "";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    fuzz::Input input(p_pData, p_nSize);
    const std::size_t piece = input.byte() % 16U + 1;
    const std::string bytes = input.rest();
    const std::size_t end = camerad::endOfHead(bytes);
    checkHead(bytes.substr(0, end));
    const std::string behind = std::string::npos == end ? bytes : bytes.substr(end);
    FUZZ_CHECK(bodyOf(behind, piece) == bodyOf(behind, behind.size() + 1));
    return 0;
}
