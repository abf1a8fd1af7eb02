// The description of this interface: for programs as it is written, for people as a page.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/DescriptionPage.h"
#include "apps/camerad/api/Embedded.h"

namespace camerad {

namespace {

// What the page needs, which is a style, and nothing else.
const char kPolicy[] =
    "default-src 'none'; style-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

}  // namespace

void addDescriptionRoutes(Router& p_objRouter, Api&) {
    addRoute(p_objRouter, "GET", "/api/v1/openapi.json", Access::Viewer, kNoBody, [](const HttpRequest&) {
        HttpResponse response;
        response.strBody = openapiText();
        return response;
    });
    addRoute(p_objRouter, "GET", "/api", Access::Viewer, kNoBody,
             [page = descriptionPage(nlohmann::json::parse(openapiText()))](const HttpRequest&) {
                 HttpResponse response;
                 response.strType = "text/html; charset=utf-8";
                 response.strBody = page;
                 response.vecHeaders = {{"Content-Security-Policy", kPolicy}};
                 return response;
             });
    addRoute(p_objRouter, "GET", "/api/description.css", Access::Viewer, kNoBody, [](const HttpRequest&) {
        HttpResponse response;
        response.strType = "text/css; charset=utf-8";
        response.strBody = descriptionStyle();
        return response;
    });
}

}  // namespace camerad
