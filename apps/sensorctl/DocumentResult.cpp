#include "apps/sensorctl/DocumentResult.h"

#include "apps/sensorctl/Shared.h"

namespace sensorctl {

Result documentResult(const std::string& p_strText) {
    const Json data = {{"bytes", p_strText.size()}, {"document", p_strText}};
    if (p_strText.empty()) {
        return Result::failed("the document is empty", data);
    }
    return {true, "", data, linesOf(p_strText)};
}

}  // namespace sensorctl
