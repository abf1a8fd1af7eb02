// Finds the route of a request.
//
// Filled before the server starts; then read by many threads. A path is compared segment by segment; a fixed segment wins
// over {name}. Nothing here is a regular expression.
#pragma once

#include "apps/camerad/http/Http.h"

#include <string>
#include <vector>

namespace camerad {

class Router {
public:
    // Throws std::logic_error for a pattern that is none and for a route that is there already.
    void add(Route p_stRoute);
    const std::vector<Route>& routes() const { return m_vecRoutes; }

    struct Found {
        const Route* pRoute = nullptr;               // null: see vecAllowed
        std::map<std::string, std::string> mapPath;  // of the route's {names}
        std::vector<std::string> vecAllowed;         // methods that the path has; empty: there is no such path
    };
    // HEAD finds the route of GET where there is none of its own. The path begins with a slash; {name} stands for a segment
    // that is not empty.
    Found find(const std::string& p_strMethod, const std::string& p_strPath) const;

private:
    std::vector<Route> m_vecRoutes;
    std::vector<std::vector<std::string>> m_vecSegments;  // of the route with the same index
};

}  // namespace camerad
