// What stands in front of the simulated camera: scene, clock, faults, power.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/host/Views.h"
#include "apps/camerad/http/Problem.h"
#include "apps/camerad/http/Status.h"

namespace camerad {

namespace {

using nlohmann::json;

constexpr std::size_t kMostFaultBytes = 1024;
constexpr std::size_t kMostTimeBytes = 32;
constexpr int kMostSpeed = 7200;  // simulated seconds a second

HttpResponse patchScene(Api& p_stApi, const HttpRequest& p_stRequest) {
    // Which fields there are, and what they take, the camera itself says.
    const BodyReader objBody(p_stRequest);
    p_stApi.objHost.changeScene(objBody.value(), actorOf(p_stRequest));
    return jsonAnswer(p_stApi.objHost.scene());
}

HttpResponse putClock(Api& p_stApi, const HttpRequest& p_stRequest) {
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    fields.need("simulated");
    const std::optional<bool> simulated = fields.flag("simulated");
    const std::optional<std::string> time = fields.text("time", kMostTimeBytes);
    const std::optional<int> speed = fields.integer("speed", 0, kMostSpeed);
    if (simulated && !*simulated && time) {
        fields.wrong("time", "The machine's own time cannot be set; only a simulated clock takes a time.");
    }
    if (simulated && !*simulated && speed && 1 != *speed) {
        fields.wrong("speed", "The machine's own time has speed 1; only a simulated clock takes another.");
    }
    objBody.finish();
    const ClockView before = p_stApi.objHost.clock();
    p_stApi.objHost.setClock(*simulated, time.value_or(""),
                             speed.value_or(*simulated && before.bSimulated ? before.nSpeed : 1), actorOf(p_stRequest));
    return jsonAnswer(toJson(p_stApi.objHost.clock()));
}

HttpResponse addFault(Api& p_stApi, const HttpRequest& p_stRequest) {
    BodyReader objBody(p_stRequest);
    objBody.fields().need("text");
    const std::optional<std::string> text = objBody.fields().text("text", kMostFaultBytes);
    objBody.finish();
    const int id = p_stApi.objHost.addFault(*text, actorOf(p_stRequest));
    const json list = p_stApi.objHost.faults();
    for (const json& fault : list.at("faults")) {
        if (fault.at("id") == id) {
            return jsonAnswer(fault, kCreated);
        }
    }
    // Somebody else took it away again meanwhile.
    return jsonAnswer({{"id", id}, {"text", *text}, {"matched", 0}, {"acted", 0}}, kCreated);
}

HttpResponse removeFault(Api& p_stApi, const HttpRequest& p_stRequest) {
    const auto id =
        static_cast<int>(numberOf(p_stRequest.mapPath.at("id"), "The fault", 1, INT32_MAX, Refusal::Kind::NotFound));
    p_stApi.objHost.removeFault(id, actorOf(p_stRequest));
    return noContent();
}

}  // namespace

void addSceneRoutes(Router& p_objRouter, Api& p_stApi) {
    const auto add = [&](const char* p_szMethod, const char* p_szPattern, std::size_t p_nBody,
                         HttpResponse (*p_pHandler)(Api&, const HttpRequest&)) {
        addRoute(p_objRouter, p_szMethod, std::string("/api/v1/") + p_szPattern,
                 std::string("GET") == p_szMethod ? Access::Viewer : Access::Admin, p_nBody,
                 [&p_stApi, p_pHandler](const HttpRequest& p_stRequest) { return p_pHandler(p_stApi, p_stRequest); });
    };
    add("GET", "scene", kNoBody, [](Api& p_stOwn, const HttpRequest&) { return jsonAnswer(p_stOwn.objHost.scene()); });
    add("PATCH", "scene", kSmallBody, patchScene);
    add("GET", "clock", kNoBody,
        [](Api& p_stOwn, const HttpRequest&) { return jsonAnswer(toJson(p_stOwn.objHost.clock())); });
    add("PUT", "clock", kSmallBody, putClock);
    add("GET", "faults", kNoBody,
        [](Api& p_stOwn, const HttpRequest&) { return jsonAnswer(p_stOwn.objHost.faults()); });
    add("POST", "faults", kSmallBody, addFault);
    add("DELETE", "faults", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        p_stOwn.objHost.clearFaults(actorOf(p_stRequest));
        return noContent();
    });
    add("DELETE", "faults/{id}", kNoBody, removeFault);
    add("POST", "power-cycle", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        p_stOwn.objHost.powerCycle(actorOf(p_stRequest));
        return noContent();
    });
}

}  // namespace camerad
