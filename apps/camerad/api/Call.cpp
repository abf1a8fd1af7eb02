#include "apps/camerad/api/Call.h"

#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/http/Problem.h"
#include "apps/camerad/http/Status.h"
#include "apps/shared/CommandError.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/NearestMatch.h"
#include "apps/shared/Number.h"
#include "apps/shared/Text.h"

#include <algorithm>

namespace camerad {

namespace {

constexpr std::size_t kLongestMark = 40;  // of a client

bool isMarkLetter(char p_cLetter) {
    return ('a' <= p_cLetter && p_cLetter <= 'z') || ('A' <= p_cLetter && p_cLetter <= 'Z') ||
           ('0' <= p_cLetter && p_cLetter <= '9') || '_' == p_cLetter || '-' == p_cLetter;
}

}  // namespace

HttpResponse jsonAnswer(const nlohmann::json& p_objValue, int p_nStatus) {
    HttpResponse response;
    response.nStatus = p_nStatus;
    response.strBody = p_objValue.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return response;
}

HttpResponse noContent() {
    HttpResponse response;
    response.nStatus = kNoContent;
    response.strType.clear();
    return response;
}

Actor actorOf(const HttpRequest& p_stRequest) {
    Actor actor{p_stRequest.stIdentity.strName, p_stRequest.header("x-client-id")};
    const bool fits = actor.strOrigin.size() <= kLongestMark &&
                      std::all_of(actor.strOrigin.begin(), actor.strOrigin.end(), isMarkLetter);
    if (!fits) {
        throw ProblemAnswer(problemResponse(kBadRequest, "bad-client-id",
                                            "X-Client-Id must be up to 40 letters, digits, \"_\" and \"-\"."));
    }
    return actor;
}

std::int64_t numberOf(const std::string& p_strText, const std::string& p_strWhat, std::int64_t p_nMin,
                      std::int64_t p_nMax, Refusal::Kind p_eKind) {
    try {
        return apps::parseNumber(p_strText, p_strWhat.c_str(), p_nMin, p_nMax);
    } catch (const apps::CommandError&) {
        throw Refusal(p_eKind, Refusal::Kind::NotFound == p_eKind ? "not-found" : "bad-value",
                      p_strWhat + " must be a whole number from " + std::to_string(p_nMin) + " to " +
                          std::to_string(p_nMax) + ", not " + quotedText(p_strText) + ".");
    }
}

ChannelHost& channelOf(Api& p_stApi, const HttpRequest& p_stRequest) {
    const std::string text = p_stRequest.mapPath.at("channel");
    for (const int channel : p_stApi.objHost.channels()) {
        if (std::to_string(channel) == text) {
            return p_stApi.objHost.channel(channel);
        }
    }
    std::vector<std::string> vecChannels;
    for (const int channel : p_stApi.objHost.channels()) {
        vecChannels.push_back(std::to_string(channel));
    }
    throw Refusal(
        Refusal::Kind::NotFound, "unknown-channel",
        "There is no channel " + quotedText(text) + "; this camera has " + apps::join(vecChannels, ", ") + ".");
}

u32 keyOfText(const std::string& p_strText) {
    try {
        return apps::parseKey(p_strText);
    } catch (const apps::CommandError&) {
        std::vector<std::string> vecNames;
        for (const apps::KeyName& row : apps::keyNames()) {
            vecNames.push_back(apps::shortNameOfKey(row.nKey));
        }
        const std::string nearest = apps::didYouMean(apps::nearestMatch(p_strText, vecNames));
        throw Refusal(Refusal::Kind::NotFound, "unknown-parameter",
                      "There is no parameter " + quotedText(p_strText) + (nearest.empty() ? "." : nearest));
    }
}

u32 keyOf(const HttpRequest& p_stRequest) {
    return keyOfText(p_stRequest.mapPath.at("key"));
}

void knownQuery(const HttpRequest& p_stRequest, const std::vector<std::string>& p_vecNames) {
    for (const auto& [name, value] : p_stRequest.mapQuery) {
        if (p_vecNames.end() == std::find(p_vecNames.begin(), p_vecNames.end(), name)) {
            const std::string nearest = apps::didYouMean(apps::nearestMatch(name, p_vecNames));
            throw Refusal(Refusal::Kind::BadValue, "bad-value",
                          "There is no query parameter " + quotedText(name) + " here" +
                              (nearest.empty() ? "; there are " + apps::join(p_vecNames, ", ") + "." : nearest));
        }
        if (p_stRequest.mapQuery.count(name) > 1) {
            throw Refusal(Refusal::Kind::BadValue, "bad-value",
                          "The query parameter " + quotedText(name) + " stands there twice; send it once.");
        }
    }
}

void addRoute(Router& p_objRouter, const std::string& p_strMethod, const std::string& p_strPattern, Access p_eAccess,
              std::size_t p_nBodyLimit, HttpHandler p_fnHandler) {
    Route route;
    route.strMethod = p_strMethod;
    route.strPattern = p_strPattern;
    route.eAccess = p_eAccess;
    // Many clients send {} where there is nothing to say.
    const bool empty = kNoBody == p_nBodyLimit && "POST" == p_strMethod;
    route.nBodyLimit = empty ? kSmallBody : p_nBodyLimit;
    route.fnHandler = [empty, handler = std::move(p_fnHandler)](const HttpRequest& p_stRequest) {
        try {
            if (empty && !p_stRequest.strBody.empty()) {
                BodyReader(p_stRequest).finish();
            }
            return handler(p_stRequest);
        } catch (const ProblemAnswer& problem) {
            return problem.response();
        }
    };
    p_objRouter.add(std::move(route));
}

void addRoutes(Router& p_objRouter, Api& p_stApi) {
    addSessionRoutes(p_objRouter, p_stApi);
    addParameterRoutes(p_objRouter, p_stApi);
    addSchemeRoutes(p_objRouter, p_stApi);
    addKeepingRoutes(p_objRouter, p_stApi);
    addLensRoutes(p_objRouter, p_stApi);
    addSceneRoutes(p_objRouter, p_stApi);
    addLogRoutes(p_objRouter, p_stApi);
    addEventRoutes(p_objRouter, p_stApi);
    addPictureRoutes(p_objRouter, p_stApi);
    addMetricsRoutes(p_objRouter, p_stApi);
    addDescriptionRoutes(p_objRouter, p_stApi);
}

}  // namespace camerad
