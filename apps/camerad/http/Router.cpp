#include "apps/camerad/http/Router.h"

#include <set>
#include <stdexcept>

namespace camerad {

namespace {

using Segments = std::vector<std::string>;

// Between the slashes: "/" has one empty segment, "/a/b" has two.
Segments segmentsOf(const std::string& p_strPath) {
    Segments segments;
    std::size_t begin = 1;
    for (std::size_t end = 0; std::string::npos != end; begin = end + 1) {
        end = p_strPath.find('/', begin);
        segments.push_back(p_strPath.substr(begin, std::string::npos == end ? end : end - begin));
    }
    return segments;
}

bool isName(const std::string& p_strSegment) {
    return p_strSegment.size() > 2 && '{' == p_strSegment.front() && '}' == p_strSegment.back();
}

std::string nameOf(const std::string& p_strSegment) {
    return p_strSegment.substr(1, p_strSegment.size() - 2);
}

bool matches(const Segments& p_vecPattern, const Segments& p_vecPath) {
    if (p_vecPattern.size() != p_vecPath.size()) {
        return false;
    }
    for (std::size_t i = 0; i < p_vecPattern.size(); ++i) {
        if (isName(p_vecPattern[i]) ? p_vecPath[i].empty() : p_vecPattern[i] != p_vecPath[i]) {
            return false;
        }
    }
    return true;
}

// Whether the first of two patterns that match the same path is the more exact one: it has the first fixed segment where
// the other has a name.
bool isCloser(const Segments& p_vecOne, const Segments& p_vecOther) {
    for (std::size_t i = 0; i < p_vecOne.size(); ++i) {
        if (isName(p_vecOne[i]) != isName(p_vecOther[i])) {
            return !isName(p_vecOne[i]);
        }
    }
    return false;
}

// Whether two patterns stand for the same paths.
bool areSame(const Segments& p_vecOne, const Segments& p_vecOther) {
    if (p_vecOne.size() != p_vecOther.size()) {
        return false;
    }
    for (std::size_t i = 0; i < p_vecOne.size(); ++i) {
        if (isName(p_vecOne[i]) != isName(p_vecOther[i]) || (!isName(p_vecOne[i]) && p_vecOne[i] != p_vecOther[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace

void Router::add(Route p_stRoute) {
    if (p_stRoute.strPattern.empty() || '/' != p_stRoute.strPattern.front() || !p_stRoute.fnHandler) {
        throw std::logic_error("no route: " + p_stRoute.strMethod + " " + p_stRoute.strPattern);
    }
    Segments segments = segmentsOf(p_stRoute.strPattern);
    for (std::size_t i = 0; i < m_vecRoutes.size(); ++i) {
        if (m_vecRoutes[i].strMethod == p_stRoute.strMethod && areSame(m_vecSegments[i], segments)) {
            throw std::logic_error("two routes for " + p_stRoute.strMethod + " " + p_stRoute.strPattern);
        }
    }
    m_vecRoutes.push_back(std::move(p_stRoute));
    m_vecSegments.push_back(std::move(segments));
}

Router::Found Router::find(const std::string& p_strMethod, const std::string& p_strPath) const {
    Found found;
    if (p_strPath.empty() || '/' != p_strPath.front()) {
        return found;
    }
    const Segments path = segmentsOf(p_strPath);
    const std::size_t none = m_vecRoutes.size();
    std::size_t best = none;
    std::size_t bestOfGet = none;
    std::set<std::string> allowed;
    for (std::size_t i = 0; i < m_vecRoutes.size(); ++i) {
        if (!matches(m_vecSegments[i], path)) {
            continue;
        }
        const std::string& method = m_vecRoutes[i].strMethod;
        allowed.insert(method);
        if ("GET" == method) {
            allowed.insert("HEAD");
            if (none == bestOfGet || isCloser(m_vecSegments[i], m_vecSegments[bestOfGet])) {
                bestOfGet = i;
            }
        }
        if (method == p_strMethod && (none == best || isCloser(m_vecSegments[i], m_vecSegments[best]))) {
            best = i;
        }
    }
    if (none == best && "HEAD" == p_strMethod) {
        best = bestOfGet;
    }
    found.vecAllowed.assign(allowed.begin(), allowed.end());
    if (none != best) {
        found.pRoute = &m_vecRoutes[best];
        for (std::size_t i = 0; i < path.size(); ++i) {
            if (isName(m_vecSegments[best][i])) {
                found.mapPath[nameOf(m_vecSegments[best][i])] = path[i];
            }
        }
    }
    return found;
}

}  // namespace camerad
