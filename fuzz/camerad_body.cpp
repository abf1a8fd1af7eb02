// What clients send to camerad as bodies: any bytes.
//
// 1. The input is one body. Read it strictly; what cannot be taken is refused as a problem document of status 400.
// 2. What was taken is what the JSON library reads too, and reads the same when it is written again.
// 3. Take fields out of it: every error has a place that is a JSON pointer, and a text.
#include "apps/camerad/api/StrictJson.h"
#include "fuzz/support/Fuzz.h"

using camerad::FieldReader;

namespace {

void readFields(FieldReader& p_objFields, int p_nDepth) {
    p_objFields.integer("value");
    p_objFields.integer("current", 0, 4);
    p_objFields.flag("record");
    p_objFields.text("name", 32);
    p_objFields.word("follow", {"nothing", "schedule", "day-night"});
    p_objFields.minute("start");
    p_objFields.key("key");
    p_objFields.need("confirm");
    if (p_nDepth > 0) {
        for (FieldReader& item : p_objFields.list("parameters", 256)) {
            readFields(item, p_nDepth - 1);
        }
        if (std::optional<FieldReader> window = p_objFields.object("window")) {
            readFields(*window, p_nDepth - 1);
        }
    }
    p_objFields.needAny();
    p_objFields.refuseUnknown();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    const std::string strBody = fuzz::Input(p_pData, p_nSize).rest();
    nlohmann::json value;
    try {
        value = camerad::parseStrictJson(strBody);
    } catch (const camerad::ProblemAnswer& problem) {
        FUZZ_CHECK(400 == problem.response().nStatus);
        FUZZ_CHECK(nlohmann::json::parse(problem.response().strBody).at("errors").size() == 1);
        return 0;
    }
    FUZZ_CHECK(nlohmann::json::parse(strBody) == value);
    FUZZ_CHECK(camerad::parseStrictJson(value.dump()) == value);
    if (!value.is_object()) {
        return 0;
    }
    camerad::FieldErrors vecErrors;
    FieldReader fields(value, "", vecErrors);
    readFields(fields, 2);
    for (const camerad::FieldError& error : vecErrors) {
        const nlohmann::json::json_pointer pointer(error.strPointer);
        FUZZ_CHECK(!error.strDetail.empty());
        FUZZ_CHECK(!nlohmann::json(error.strDetail).dump().empty());
    }
    return 0;
}
