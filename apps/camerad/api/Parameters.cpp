// Channels, their parameters and the documents that describe them.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/host/Views.h"
#include "apps/camerad/http/Problem.h"
#include "apps/shared/KeyNames.h"

#include <algorithm>
#include <map>

namespace camerad {

namespace {

using nlohmann::json;

constexpr std::size_t kMostChanges = 256;  // in one request

json problemOf(const Refusal& p_objRefusal, u32 p_nKey) {
    json document = problemDocument(p_objRefusal);
    document["key"] = p_nKey;
    return document;
}

HttpResponse problemAnswer(const Refusal& p_objRefusal, u32 p_nKey) {
    HttpResponse response = problemResponse(p_objRefusal);  // for its status and headers
    response.strBody = problemOf(p_objRefusal, p_nKey).dump(-1, ' ', false, json::error_handler_t::replace);
    return response;
}

// What a channel knows of a key without asking the camera.
std::optional<ParameterValue> knownValue(const ParameterValues& p_stValues, u32 p_nKey) {
    const auto at = std::find_if(p_stValues.vecValues.begin(), p_stValues.vecValues.end(),
                                 [p_nKey](const ParameterValue& p_stValue) { return p_stValue.nKey == p_nKey; });
    return p_stValues.vecValues.end() == at ? std::nullopt : std::optional<ParameterValue>(*at);
}

json channelView(ChannelHost& p_objChannel) {
    const ChannelView view = p_objChannel.view();
    json result = toJson(view);
    if (!view.strProblem.empty()) {
        result["problem"] = view.strProblem;
    }
    return result;
}

HttpResponse channels(Api& p_stApi, const HttpRequest&) {
    json list = json::array();
    for (const int channel : p_stApi.objHost.channels()) {
        list.push_back(channelView(p_stApi.objHost.channel(channel)));
    }
    return jsonAnswer({{"channels", std::move(list)}});
}

// The keys of the query "keys=34,brightness".
std::vector<u32> keysOfList(const std::string& p_strList) {
    std::vector<u32> vecKeys;
    for (std::size_t start = 0; start <= p_strList.size();) {
        const std::size_t end = std::min(p_strList.find(',', start), p_strList.size());
        vecKeys.push_back(keyOfText(p_strList.substr(start, end - start)));
        start = end + 1;
    }
    return vecKeys;
}

HttpResponse parameters(Api& p_stApi, const HttpRequest& p_stRequest) {
    knownQuery(p_stRequest, {"keys"});
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    const ParameterValues values = channel.values();
    json list = json::array();
    if (0 == p_stRequest.mapQuery.count("keys")) {
        for (const ParameterValue& value : values.vecValues) {
            list.push_back(toJson(value));
        }
    } else {
        for (const u32 key : keysOfList(p_stRequest.query("keys"))) {
            const std::optional<ParameterValue> value = knownValue(values, key);
            if (!value) {
                return problemAnswer(Refusal(Refusal::Kind::NotFound, "unknown-parameter",
                                             "No scheme of this channel holds " + apps::describeKey(key) +
                                                 "; ask for it alone by .../parameters/" + std::to_string(key) + "."),
                                     key);
            }
            list.push_back(toJson(*value));
        }
    }
    return jsonAnswer({{"channel", channel.number()},
                       {"scheme", values.nScheme},
                       {"revision", values.nRevision},
                       {"parameters", std::move(list)}});
}

// One parameter's refusal names its key.
HttpResponse withKey(u32 p_nKey, const std::function<HttpResponse()>& p_fnDo) {
    try {
        return p_fnDo();
    } catch (const Refusal& refusal) {
        return problemAnswer(refusal, p_nKey);
    }
}

HttpResponse parameter(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    const u32 key = keyOf(p_stRequest);
    return withKey(key, [&] { return jsonAnswer(toJson(channel.value(key))); });
}

HttpResponse putParameter(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    const u32 key = keyOf(p_stRequest);
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    fields.need("value");
    const std::optional<int> value = fields.integer("value");
    const std::optional<bool> record = fields.flag("record");
    objBody.finish();

    return withKey(key, [&] {
        const std::vector<ChangeResult> vecResults =
            channel.change({{key, *value}}, record.value_or(true), actorOf(p_stRequest));
        const ChangeResult& result = vecResults.at(0);
        if (result.refusal) {
            throw Refusal(*result.refusal);
        }
        if (const std::optional<ParameterValue> known = knownValue(channel.values(), key)) {
            return jsonAnswer(toJson(*known));
        }
        ParameterValue done;  // of what no scheme holds, a button for instance, there is no more to tell
        done.nKey = key;
        done.strName = apps::nameOfKey(key);
        done.nValue = result.nValue;
        return jsonAnswer(toJson(done));
    });
}

HttpResponse patchParameters(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    fields.need("parameters");
    std::vector<Change> vecChanges;
    for (FieldReader& item : fields.list("parameters", kMostChanges)) {
        item.need("key");
        item.need("value");
        const std::optional<u32> key = item.key("key");
        const std::optional<int> value = item.integer("value");
        item.refuseUnknown();
        vecChanges.push_back({key.value_or(0), value.value_or(0)});
    }
    const std::optional<bool> record = fields.flag("record");
    objBody.finish();

    const std::vector<ChangeResult> vecResults =
        channel.change(vecChanges, record.value_or(true), actorOf(p_stRequest));
    const ParameterValues values = channel.values();
    json results = json::array();
    for (const ChangeResult& result : vecResults) {
        json view = {{"key", result.nKey}, {"ok", !result.refusal}};
        if (!result.refusal) {
            view["value"] = result.nValue;
        } else {
            if (const std::optional<ParameterValue> known = knownValue(values, result.nKey)) {
                view["value"] = known->nValue;
            }
            view["problem"] = problemOf(*result.refusal, result.nKey);
        }
        results.push_back(std::move(view));
    }
    // Who has heard of a later change must not take these values for newer ones.
    return jsonAnswer({{"scheme", vecResults.empty() ? values.nScheme : vecResults.front().nScheme},
                       {"revision", vecResults.empty() ? values.nRevision : vecResults.front().nRevision},
                       {"results", std::move(results)}});
}

HttpResponse metadata(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    // The revision first: a change between the two makes the reader ask once more, not once too seldom.
    const std::uint64_t revision = channel.revision();
    json document = toJson(*channel.style());
    document["channel"] = channel.number();
    document["revision"] = revision;
    return jsonAnswer(document);
}

HttpResponse styleDocument(Api& p_stApi, const HttpRequest& p_stRequest) {
    HttpResponse response;
    response.strBody = channelOf(p_stApi, p_stRequest).styleDocument();
    response.strType = "application/xml";
    return response;
}

}  // namespace

void addParameterRoutes(Router& p_objRouter, Api& p_stApi) {
    const auto add = [&](const char* p_szMethod, const std::string& p_strPattern, std::size_t p_nBody,
                         HttpResponse (*p_pHandler)(Api&, const HttpRequest&)) {
        addRoute(p_objRouter, p_szMethod, "/api/v1/channels" + p_strPattern,
                 std::string("GET") == p_szMethod ? Access::Viewer : Access::Admin, p_nBody,
                 [&p_stApi, p_pHandler](const HttpRequest& p_stRequest) { return p_pHandler(p_stApi, p_stRequest); });
    };
    add("GET", "", kNoBody, channels);
    add("GET", "/{channel}", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        return jsonAnswer(channelView(channelOf(p_stOwn, p_stRequest)));
    });
    add("GET", "/{channel}/parameters", kNoBody, parameters);
    add("PATCH", "/{channel}/parameters", kListBody, patchParameters);
    add("GET", "/{channel}/parameters/{key}", kNoBody, parameter);
    add("PUT", "/{channel}/parameters/{key}", kSmallBody, putParameter);
    add("POST", "/{channel}/parameters/{key}/default", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        ChannelHost& channel = channelOf(p_stOwn, p_stRequest);
        const u32 key = keyOf(p_stRequest);
        return withKey(key, [&] { return jsonAnswer(toJson(channel.setToDefault(key, actorOf(p_stRequest)))); });
    });
    add("POST", "/{channel}/parameters/{key}/restore", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        ChannelHost& channel = channelOf(p_stOwn, p_stRequest);
        const u32 key = keyOf(p_stRequest);
        return withKey(key, [&] { return jsonAnswer(toJson(channel.restore(key, actorOf(p_stRequest)))); });
    });
    add("GET", "/{channel}/metadata", kNoBody, metadata);
    add("GET", "/{channel}/style", kNoBody, styleDocument);
}

}  // namespace camerad
