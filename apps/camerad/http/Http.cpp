#include "apps/camerad/http/Http.h"

namespace camerad {

namespace {

std::string firstOf(const std::multimap<std::string, std::string>& p_mapWords, const std::string& p_strName,
                    const std::string& p_strOther) {
    const auto found = p_mapWords.lower_bound(p_strName);
    return p_mapWords.end() == found || found->first != p_strName ? p_strOther : found->second;
}

}  // namespace

std::string HttpRequest::header(const std::string& p_strName, const std::string& p_strOther) const {
    return firstOf(mapHeaders, p_strName, p_strOther);
}

std::string HttpRequest::query(const std::string& p_strName, const std::string& p_strOther) const {
    return firstOf(mapQuery, p_strName, p_strOther);
}

}  // namespace camerad
