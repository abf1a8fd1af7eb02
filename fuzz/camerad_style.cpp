// What camerad makes of a style document.
//
// 1. The input is a document. Read it, or be refused as a document that cannot be used.
// 2. What was read can be written as JSON, and every recorded key is found again.
// 3. Each parameter is asked about values around its limits: an objection, when there is one, is a sentence.
#include "apps/camerad/host/Refusal.h"
#include "apps/camerad/host/Style.h"
#include "fuzz/support/Fuzz.h"

namespace {

void askAround(const camerad::StyleItem& p_stItem, long long p_nValue) {
    for (long long nOffset = -1; nOffset <= 1; ++nOffset) {
        const auto objection = p_stItem.objection(p_nValue + nOffset);
        FUZZ_CHECK(!objection || !objection->empty());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    camerad::Style style;
    try {
        style = camerad::parseStyleDocument(fuzz::Input(p_pData, p_nSize).rest());
    } catch (const camerad::Refusal& objRefusal) {
        FUZZ_CHECK("style-document" == objRefusal.type());
        return 0;
    }
    FUZZ_CHECK(!toJson(style).dump().empty());  // throws for a text that is no UTF-8
    for (const u32 nKey : style.recordedKeys()) {
        const camerad::StyleItem* const pItem = style.find(nKey);
        FUZZ_CHECK(nullptr != pItem);
        askAround(*pItem, 0);
        askAround(*pItem, pItem->min.value_or(INT32_MIN));
        askAround(*pItem, pItem->max.value_or(INT32_MAX));
    }
    return 0;
}
