// Refusals as problem documents (RFC 9457): "application/problem+json" with type, title, status and detail.
//
// Functions without state.
#pragma once

#include "apps/camerad/host/Refusal.h"
#include "apps/camerad/http/Http.h"

#include <nlohmann/json.hpp>

#include <string>

namespace camerad {

int statusOf(Refusal::Kind p_eKind);

// type is "/problems/" + p_strType, title the type in words.
nlohmann::json problemDocument(int p_nStatus, const std::string& p_strType, const std::string& p_strDetail);
nlohmann::json problemDocument(const Refusal& p_objRefusal);
HttpResponse problemResponse(int p_nStatus, const std::string& p_strType, const std::string& p_strDetail);
HttpResponse problemResponse(const Refusal& p_objRefusal);  // with Retry-After where there is one

}  // namespace camerad
