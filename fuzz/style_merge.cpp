// The merge of a base style with a diversity document.
//
// 1. The input is a detail string, a base style and a diversity document, each ended by a zero byte; the documents go into
//    blocks of exactly their size.
// 2. Merge them. The result is a terminated text, the same that lies in the channel's file.
// 3. Merge the result with a diversity document that has nothing to say: it stays as it is. (When both documents are well
//    formed and without a declaration: the XML library prints what stands in a declaration as it is, and a quoted ">" in
//    there ends it the next time.)
#include "fuzz/support/Fuzz.h"
#include "sensor/style/StyleDocument.h"
#include "sensor/style/StyleMerge.h"

#include <cstdio>
#include <cstdlib>

namespace {

bool isWellFormed(const char* p_szText) {
    TiXmlDocument objDocument;
    return style::loadMem(objDocument, p_szText) && std::string::npos == std::string(p_szText).find("<?");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    constexpr int kChannel = 1;
    const TestRoot& root = fuzz::root();
    fuzz::Input input(p_pData, p_nSize);
    ModuleConfig stModule{};
    std::snprintf(stModule.szDetail, sizeof(stModule.szDetail), "%s", input.text().c_str());
    char* szStyle = fuzz::exactCopy(input.text());
    char* const szDiversity = fuzz::exactCopy(input.text());
    const bool bWellFormed = isWellFormed(szStyle) && isWellFormed(szDiversity);

    mergeStyle(kChannel, &stModule, &szStyle, szDiversity);
    FUZZ_CHECK(nullptr != szStyle);
    const std::string strMerged = szStyle;
    FUZZ_CHECK(strMerged == root.read("/tmp/merge_style_ch1.xml").c_str());

    char szNothing[] = "<none/>";
    mergeStyle(kChannel, &stModule, &szStyle, szNothing);
    FUZZ_CHECK(!bWellFormed || strMerged == szStyle);

    std::free(szDiversity);
    std::free(szStyle);
    return 0;
}
