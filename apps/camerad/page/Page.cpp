#include "apps/camerad/page/Page.h"

#include "apps/camerad/http/Problem.h"
#include "apps/shared/Text.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace camerad {

const char kPagePolicy[] =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob: data:; connect-src 'self'; "
    "manifest-src 'self'; base-uri 'none'; form-action 'self'; frame-ancestors 'none'";

namespace {

constexpr char kIndex[] = "index.html";
constexpr int kNotModified = 304;
constexpr int kNotAcceptable = 406;
// Thousandths: a quality has at most three digits behind its point.
constexpr int kFullQuality = 1000;

std::string trimmed(std::string_view p_strText) {
    const auto isBlank = [](char p_cByte) { return ' ' == p_cByte || '\t' == p_cByte; };
    while (!p_strText.empty() && isBlank(p_strText.front())) {
        p_strText.remove_prefix(1);
    }
    while (!p_strText.empty() && isBlank(p_strText.back())) {
        p_strText.remove_suffix(1);
    }
    return std::string(p_strText);
}

// What stands between the marks.
std::vector<std::string> partsOf(const std::string& p_strText, char p_cMark) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = p_strText.find(p_cMark); std::string::npos != end; end = p_strText.find(p_cMark, begin)) {
        parts.push_back(trimmed(std::string_view(p_strText).substr(begin, end - begin)));
        begin = end + 1;
    }
    parts.push_back(trimmed(std::string_view(p_strText).substr(begin)));
    return parts;
}

// "0.25" is 250. One that cannot be read counts as none: the client does not get what it may not want.
int qualityOf(const std::string& p_strDigits) {
    const bool isWhole = "1" == p_strDigits || 0 == p_strDigits.rfind("1.", 0);
    const std::string behindPoint = p_strDigits.size() > 2 ? p_strDigits.substr(2) : "";
    const auto isDigit = [](char p_cByte) { return 0 != std::isdigit(static_cast<unsigned char>(p_cByte)); };
    if (isWhole || 0 != p_strDigits.rfind("0.", 0) || behindPoint.size() > 3 ||
        !std::all_of(behindPoint.begin(), behindPoint.end(), isDigit)) {
        return isWhole ? kFullQuality : 0;
    }
    return std::stoi((behindPoint + "000").substr(0, 3));
}

int qualityAmong(const std::vector<std::string>& p_vecParameters) {
    for (const std::string& parameter : p_vecParameters) {
        const std::string word = apps::lowerCase(parameter);
        if (0 == word.rfind("q=", 0)) {
            return qualityOf(word.substr(2));
        }
    }
    return kFullQuality;
}

struct Taken {
    std::optional<int> packed, plain, others;
};

Taken readAcceptEncoding(const std::string& p_strHeader) {
    Taken taken;
    for (const std::string& element : partsOf(p_strHeader, ',')) {
        const std::vector<std::string> words = partsOf(element, ';');
        const std::string coding = apps::lowerCase(words.front());
        const int quality = qualityAmong({words.begin() + 1, words.end()});
        if ("gzip" == coding || "x-gzip" == coding) {
            taken.packed = quality;
        } else if ("identity" == coding) {
            taken.plain = quality;
        } else if ("*" == coding) {
            taken.others = quality;
        }
    }
    return taken;
}

// Every header line of that name; they count as one list.
std::string allOf(const HttpRequest& p_stRequest, const std::string& p_strName) {
    std::string text;
    const auto range = p_stRequest.mapHeaders.equal_range(p_strName);
    for (auto it = range.first; it != range.second; ++it) {
        text += (text.empty() ? "" : ",") + it->second;
    }
    return text;
}

}  // namespace

Encoding encodingFor(const std::string& p_strAcceptEncoding) {
    const Taken taken = readAcceptEncoding(p_strAcceptEncoding);
    const int packed = taken.packed.value_or(taken.others.value_or(0));
    // What is not named is always taken plain, unless the client says that it takes nothing but what it names.
    const bool isPlainTaken = 0 != taken.plain.value_or(taken.others.value_or(kFullQuality));
    if (packed > 0 && (!isPlainTaken || packed >= taken.plain.value_or(0))) {
        return Encoding::Packed;
    }
    return isPlainTaken ? Encoding::Plain : Encoding::Neither;
}

bool isTagAmong(const std::string& p_strIfNoneMatch, const std::string& p_strTag) {
    // Our tags hold no comma, so a tag that does is none of ours, in however many parts.
    const std::vector<std::string> tags = partsOf(p_strIfNoneMatch, ',');
    return std::any_of(tags.begin(), tags.end(), [&p_strTag](const std::string& p_strOne) {
        const std::string quoted = 0 == p_strOne.rfind("W/", 0) ? p_strOne.substr(2) : p_strOne;
        return "*" == p_strOne || "\"" + p_strTag + "\"" == quoted;
    });
}

HttpResponse servePageFile(const PageFile& p_stFile, const HttpRequest& p_stRequest) {
    const Encoding encoding = encodingFor(allOf(p_stRequest, "accept-encoding"));
    if (Encoding::Neither == encoding) {
        return problemResponse(kNotAcceptable, "not-acceptable",
                               "The files of the page come plain or packed by gzip; the request takes neither.");
    }
    const bool isPacked = Encoding::Packed == encoding;
    // Each representation has a tag of its own; a cache must not hand one out for the other.
    const std::string tag = std::string(p_stFile.szTag) + (isPacked ? "-gzip" : "");
    HttpResponse response;
    response.strType = p_stFile.szType;
    response.vecHeaders = {{"ETag", "\"" + tag + "\""},
                           {"Cache-Control", "no-cache"},
                           {"Vary", "Accept-Encoding"},
                           {"Content-Security-Policy", kPagePolicy}};
    if (isTagAmong(allOf(p_stRequest, "if-none-match"), tag)) {
        response.nStatus = kNotModified;
        return response;
    }
    if (isPacked) {
        response.vecHeaders.emplace_back("Content-Encoding", "gzip");
    }
    response.strBody = (isPacked ? p_stFile.stPacked : p_stFile.stPlain).text();
    return response;
}

void addPage(Router& p_objRouter) {
    for (const PageFile& file : pageFiles()) {
        Route route;
        route.strMethod = "GET";
        route.strPattern = std::string("/") + file.szName;
        route.eAccess = Access::Everybody;
        route.fnHandler = [&file](const HttpRequest& p_stRequest) { return servePageFile(file, p_stRequest); };
        if (std::string_view(kIndex) == file.szName) {
            Route start = route;
            start.strPattern = "/";
            p_objRouter.add(std::move(start));
        }
        p_objRouter.add(std::move(route));
    }
}

}  // namespace camerad
