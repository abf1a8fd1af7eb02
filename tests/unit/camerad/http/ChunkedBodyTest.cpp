#include "apps/camerad/http/ChunkedBody.h"

#include "apps/camerad/http/RequestHead.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using camerad::ChunkedBody;
using camerad::HttpRefusal;

constexpr std::size_t kLimit = 20;

// The body, or status and type of the refusal, or "incomplete". Fed in pieces of that size.
std::string bodyOf(const std::string& p_strBytes, std::size_t p_nPiece) {
    ChunkedBody body(kLimit);
    std::string waiting;
    try {
        for (std::size_t at = 0; at < p_strBytes.size(); at += p_nPiece) {
            waiting += p_strBytes.substr(at, p_nPiece);
            body.take(waiting);
        }
    } catch (const HttpRefusal& refusal) {
        return std::to_string(refusal.status()) + " " + refusal.type();
    }
    return body.isComplete() ? body.body() + "|" + waiting : "incomplete";
}

struct Row {
    std::string strBytes;
    std::string strResult;  // behind the bar what is left for the next request
};

TEST(ChunkedBody, PutsPiecesTogether) {
    const std::vector<Row> rows = {
        {"0\r\n\r\n", "|"},
        {"3\r\nabc\r\n0\r\n\r\n", "abc|"},
        {"3\r\nabc\r\n02\r\nde\r\n0\r\n\r\n", "abcde|"},
        {"A\r\n0123456789\r\na\r\n0123456789\r\n0\r\n\r\n", "01234567890123456789|"},
        {"3;name=value\r\nabc\r\n0;last\r\n\r\n", "abc|"},
        {"3\r\nabc\r\n0\r\nTrailer: x\r\nOther: y\r\n\r\n", "abc|"},
        {"2\r\n\r\n\r\n0\r\n\r\n", "\r\n|"},
    };
    for (const Row& row : rows) {
        for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{1000}}) {
            EXPECT_EQ(bodyOf(row.strBytes, piece), row.strResult) << row.strBytes << " by " << piece;
        }
    }
}

TEST(ChunkedBody, LeavesTheNextRequestAlone) {
    EXPECT_EQ(bodyOf("3\r\nabc\r\n0\r\n\r\nGET /", 1000), "abc|GET /");
}

TEST(ChunkedBody, RefusesEverythingElse) {
    const std::vector<Row> rows = {
        {"\r\n", "400 bad-body"},
        {"x\r\n", "400 bad-body"},
        {"-1\r\n", "400 bad-body"},
        {"+1\r\n", "400 bad-body"},
        {" 1\r\n", "400 bad-body"},
        {"0x1\r\n", "400 bad-body"},
        {"1 \r\n", "400 bad-body"},
        {"1\n", "400 bad-body"},
        {"1\r\r\n", "400 bad-body"},
        {"000000001\r\n", "400 bad-body"},
        {"3\r\nabcd\r\n", "400 bad-body"},
        {"3\r\nabc\n", "400 bad-body"},
        {"1;" + std::string(300, 'x') + "\r\n", "400 bad-body"},
        {"15\r\n", "413 too-large"},
        {"A\r\n0123456789\r\nB\r\n", "413 too-large"},
        {"FFFFFFFF\r\n", "413 too-large"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(bodyOf(row.strBytes, 1), row.strResult) << row.strBytes;
        EXPECT_EQ(bodyOf(row.strBytes, 1000), row.strResult) << row.strBytes;
    }
}

TEST(ChunkedBody, EveryCutIsIncomplete) {
    const std::string whole = "3;x=y\r\nabc\r\n2\r\nde\r\n0\r\nTrailer: x\r\n\r\n";
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(bodyOf(whole.substr(0, size), 1), "incomplete") << size;
    }
}

TEST(ChunkedBody, FieldsBehindItDoNotGoOnForEver) {
    std::string endless = "0\r\n";
    for (int i = 0; i < 1000; ++i) {
        endless += "Trailer: x\r\n";
    }
    EXPECT_EQ(bodyOf(endless, 1), "400 bad-body");
}

}  // namespace
